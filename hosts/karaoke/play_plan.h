// From the options of `karaoke play` to a plan for one song.
#pragma once

#include <cstdint>

#include "karaoke/play_options.h"
#include "shared/song_controls.h"

namespace karaoke {

/// How the song is to sound; without the ranges.
/// @param device  MIDI output of the player, which clicks too
host::PlayPlan planOf(const PlayOptions& options, std::uint32_t device);

/// Where playing begins and which ranges are played.
/// @param song  in which the places are looked up
/// @throws host::SongError  a place lies behind the song's end
void planRanges(host::PlayPlan& plan, const PlayOptions& options, const host::Song& song);

} // namespace karaoke
