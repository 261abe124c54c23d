// Times as people read them.
#include "shared/time_text.h"

#include <algorithm>
#include <cstdio>

namespace host {

namespace {

constexpr long kTenthsPerSecond = 10;
constexpr long kSecondsPerMinute = 60;
constexpr double kRoundingSlack = 1e-6; ///< 2.3 seconds must not show as 2.2

long tenthsOf(double seconds) {
    return static_cast<long>(std::max(seconds, 0.0) * kTenthsPerSecond + kRoundingSlack);
}

} // namespace

std::string timeInSeconds(double seconds) {
    const long whole = tenthsOf(seconds) / kTenthsPerSecond;
    char text[32];
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / kSecondsPerMinute,
                  whole % kSecondsPerMinute);
    return text;
}

std::string timeWithTenths(double seconds) {
    return timeInSeconds(seconds) + "." + std::to_string(tenthsOf(seconds) % kTenthsPerSecond);
}

} // namespace host
