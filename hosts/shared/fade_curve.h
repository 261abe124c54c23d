// Straight fades as the engine's curves of five segments with whole-number slopes.
#pragma once

#include <cstdint>

#include "corvmo32.h"

namespace host {

inline constexpr std::int32_t kFullLevel = 102400; ///< fade level of full loudness

/// A fade-in from silence to full loudness.
/// @param milliseconds  its length, above 0
MMFADE fadeIn(std::uint32_t milliseconds);

/// A fade-out that begins some time after the song has started.
/// @param start         milliseconds of playing before it begins
/// @param milliseconds  its length, above 0
/// @param level         where it begins; lower for one that goes on where another stood
MMFADE fadeOut(std::uint32_t start, std::uint32_t milliseconds, std::int32_t level = kFullLevel);

} // namespace host
