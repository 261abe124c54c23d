// Writes the prepared song: tracks as they are, merged, or joined one after the other.
#pragma once

#include <cstdint>
#include <vector>

#include "prepare/byte_view.h"
#include "prepare/time_base.h"
#include "prepare/track_reader.h"

namespace host {

constexpr std::uint16_t kSingleTrack = 0;   ///< format of a song of one track
constexpr std::uint16_t kSeveralTracks = 1; ///< of tracks that sound together
constexpr std::uint16_t kSequences = 2;     ///< of tracks that each are a song of their own
constexpr std::size_t kMaxTracks = 127;

/// @param format  of the file
/// @param tracks  at least one
std::vector<std::uint8_t> writeSong(const ByteView& song, std::uint16_t format,
                                    const std::vector<TrackSpan>& tracks, const TimeBase& timeBase);

} // namespace host
