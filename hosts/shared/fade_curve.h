// Straight fades as the engine's curves of five segments with whole-number slopes.
#pragma once

#include <cstdint>

#include "corvmo32.h"

namespace host {

/// A fade-in from silence to full loudness.
/// @param milliseconds  its length, above 0
MMFADE fadeIn(std::uint32_t milliseconds);

/// A fade-out that begins at full loudness some time after the song has started.
/// @param start         milliseconds of playing before it begins
/// @param milliseconds  its length, above 0
MMFADE fadeOut(std::uint32_t start, std::uint32_t milliseconds);

} // namespace host
