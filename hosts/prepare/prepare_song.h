// Songs made ready for the engine: what other programs read or forgive, and the engine does not, is mended
// before a song is handed to it. docs/prepared-songs.md tells what is mended and how.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace host {

/// A song as the engine can open it, or the reason why there is none.
struct PreparedSong {
    /// The song's file; the given bytes themselves when nothing had to be mended. Empty when error is set.
    /// At most three times the size of the file and 100 bytes.
    std::vector<std::uint8_t> bytes;
    /// What was mended, a line each in words for a person, no capital and no full stop.
    std::vector<std::string> notes;
    bool changed = false; ///< bytes differ from the file's; then there is at least one note
    std::string error;    ///< why the file cannot be played, in one line; empty = it can
};

/// Mends a song file. Any bytes may be given; time and memory grow with their number alone. Reads nothing
/// but the argument; any thread may call it.
/// @param file  the whole file, read during the call
/// @throws std::bad_alloc  when memory runs out
PreparedSong prepareSong(std::span<const std::uint8_t> file);

} // namespace host
