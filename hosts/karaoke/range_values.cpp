// The values of options that name places in a song.
#include "karaoke/range_values.h"

#include <limits>
#include <string_view>

#include "karaoke/option_values.h"
#include "shared/song_settings.h"

namespace karaoke {

namespace {

constexpr int kMostPasses = 32767;
constexpr std::string_view kBar = "bar";

std::vector<std::string> parts(const std::string& option, const std::string& text,
                               std::size_t wanted, const char* form) {
    std::vector<std::string> found(1);
    for (const char c : text) {
        if (c == ':') {
            found.emplace_back();
        } else {
            found.back() += c;
        }
    }
    if (found.size() != wanted) {
        throw UsageError(option + ": '" + text + "' is not of the form " + form);
    }
    return found;
}

SongPlace parseEnd(const std::string& option, const std::string& text) {
    return text.empty() ? SongPlace{} : parsePlace(option, text);
}

void checkOrder(const std::string& option, const std::string& text, const RangeWish& range) {
    const bool toTheEnd = !range.end.isBar && range.end.number == 0;
    if (!toTheEnd && range.start.isBar == range.end.isBar &&
        range.end.number <= range.start.number) {
        throw UsageError(option + ": '" + text + "' ends before it begins");
    }
}

float parsePercent(const std::string& option, const std::string& text) {
    return static_cast<float>(parseNumber(option, text, static_cast<double>(host::kSlowestPercent),
                                          static_cast<double>(host::kFastestPercent)));
}

} // namespace

SongPlace parsePlace(const std::string& option, const std::string& text) {
    constexpr int kHighest = std::numeric_limits<int>::max();
    if (text.starts_with(kBar)) {
        const int bar = parseWhole(option, text.substr(kBar.size()), 1, kHighest);
        return {true, static_cast<std::uint32_t>(bar)};
    }
    return {false, static_cast<std::uint32_t>(parseWhole(option, text, 0, kHighest))};
}

RangeWish parseLoop(const std::string& text) {
    const std::string option = "--loop";
    const std::vector<std::string> places = parts(option, text, 2, "A:B or A:BxN");
    const std::size_t times = places[1].rfind('x');
    RangeWish range{parsePlace(option, places[0]), parseEnd(option, places[1].substr(0, times)), 1};
    if (times != std::string::npos) {
        range.passes = parseWhole(option, places[1].substr(times + 1), 1, kMostPasses);
    }
    checkOrder(option, text, range);
    return range;
}

PracticeWish parsePractice(const std::string& text) {
    const std::string option = "--practice";
    const std::vector<std::string> values = parts(option, text, 5, "A:B:START:STEP:LIMIT");
    const PracticeWish practice{{parsePlace(option, values[0]), parseEnd(option, values[1]), 0},
                                parsePercent(option, values[2]),
                                parsePercent(option, values[3]),
                                parsePercent(option, values[4])};
    checkOrder(option, text, practice.range);
    if (practice.step <= 0 || practice.limit < practice.start) {
        throw UsageError(option + ": '" + text + "' does not become faster");
    }
    return practice;
}

} // namespace karaoke
