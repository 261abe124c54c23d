// Declares options with CLI11, their descriptions folded to fit beside their names.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace karaoke {

/// Columns in front of the descriptions.
inline constexpr std::size_t kHelpColumn = 26;

/// A description in lines that fit beside the options' names.
std::string folded(const std::string& text);

/// An option with one value, which the function checks.
template <typename Take>
CLI::Option* addValue(CLI::App& app, const std::string& name, const char* type,
                      const std::string& help, Take take) {
    return app.add_option_function<std::string>("--" + name, take, folded(help))->type_name(type);
}

/// An option that may be given several times.
template <typename Take>
void addRepeatable(CLI::App& app, const std::string& name, const char* type,
                   const std::string& help, Take take) {
    using Values = std::vector<std::string>;
    app.add_option_function<Values>(
           "--" + name,
           [take](const Values& values) {
               for (const std::string& value : values) {
                   take(value);
               }
           },
           folded(help))
        ->type_name(type)
        ->take_all()
        ->allow_extra_args(false);
}

} // namespace karaoke
