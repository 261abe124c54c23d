// From the options of `karaoke play` to a plan for one song.
#pragma once

#include <cstdint>

#include "karaoke/play_options.h"
#include "shared/song_controls.h"

namespace karaoke {

/// @param device  MIDI output of the player, which clicks too
host::PlayPlan planOf(const PlayOptions& options, std::uint32_t device);

} // namespace karaoke
