// Tempo as listeners name it: percent of the song's own speed.
#pragma once

#include <algorithm>
#include <cmath>

namespace desktop {

constexpr int kUsualSpeed = 100;
constexpr int kSlowestSpeed = 25;
constexpr int kFastestSpeed = 400;

/// @param percent  as mm_SetTempo takes it: by which part the beats become shorter
inline int speedOf(float percent) {
    return static_cast<int>(std::lround(10000.0 / (100.0 - static_cast<double>(percent))));
}

inline float percentOf(int speed) {
    const int held = std::clamp(speed, kSlowestSpeed, kFastestSpeed);
    return static_cast<float>(100.0 - 10000.0 / held);
}

} // namespace desktop
