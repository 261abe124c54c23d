// A song as the engine hands it out: bytes and ticks, copied, so that they outlive the engine's tables.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "corvmo32.h"

namespace host {

/// A text of the song, its bytes as they stand.
struct TimedBytes {
    std::uint32_t tick;
    std::string bytes;
};

/// The tables keep the engine's indexes: record 0 of lyrics and chords is the start record.
struct RawSong {
    std::string title;
    std::string title2;
    std::uint32_t firstTempo = 0;  ///< microseconds per quarter note
    std::int32_t keySignature = 0; ///< sf << 8 | mi
    int format = 0;                ///< of the file
    int tracks = 0;                ///< that the file's header declares
    int division = 1;              ///< ticks per quarter note
    std::vector<MMEVENT> events;
    std::vector<TimedBytes> lyrics;
    std::vector<TimedBytes> chords;
    std::vector<TimedBytes> markers;
    /// System-exclusive messages, F0 to F7, by the slot that their events name.
    std::vector<std::vector<std::uint8_t>> exclusives;
};

/// Copies the song that a player holds.
/// @param player  its handle; the player must hold a song
RawSong readRawSong(HMIDIOUT player);

} // namespace host
