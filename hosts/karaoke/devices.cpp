// The MIDI outputs, and the choice of one.
#include "karaoke/devices.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>

#include "corvmo32_linux.h"
#include "karaoke/commands.h"
#include "karaoke/option_values.h"

namespace karaoke {

namespace {

constexpr UINT kMostOutputs = 32;
constexpr std::size_t kLongestName = 256;

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool isNumber(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::uint32_t chooseByNumber(const std::string& wanted, std::size_t count) {
    constexpr std::size_t kMostDigits = 4;
    if (wanted.size() > kMostDigits || std::stoul(wanted) >= count) {
        throw UsageError("--device: there is no output " + wanted + ", the last one is " +
                         std::to_string(count - 1) + "; 'karaoke devices' lists them");
    }
    return static_cast<std::uint32_t>(std::stoul(wanted));
}

} // namespace

std::vector<std::string> outputNames() {
    std::vector<std::string> names;
    const UINT count = std::min(corvmo_GetOutputCount(), kMostOutputs);
    for (UINT i = 0; i < count; ++i) {
        std::array<char, kLongestName> name{};
        corvmo_GetOutputName(i, name.data(), name.size());
        names.emplace_back(name.data());
    }
    return names;
}

std::uint32_t chooseOutput(const std::string& wanted, const std::vector<std::string>& names) {
    if (names.empty()) {
        throw UsageError("--device: the machine has no MIDI output");
    }
    if (isNumber(wanted)) {
        return chooseByNumber(wanted, names.size());
    }
    std::vector<std::uint32_t> matches;
    for (std::uint32_t i = 0; i < names.size(); ++i) {
        if (lowered(names[i]) == lowered(wanted)) {
            return i;
        }
        if (!wanted.empty() && lowered(names[i]).find(lowered(wanted)) != std::string::npos) {
            matches.push_back(i);
        }
    }
    if (matches.size() != 1) {
        const char* problem = matches.empty() ? "no output is" : "several outputs are";
        throw UsageError(std::string("--device: ") + problem + " named '" + wanted +
                         "'; 'karaoke devices' lists them");
    }
    return matches.front();
}

int runDevices() {
    const std::vector<std::string> names = outputNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::printf("%2zu  %s\n", i, names[i].c_str());
    }
    return 0;
}

} // namespace karaoke
