// Says precisely why a song file cannot be opened. The engine's code covers several causes; the file itself
// tells them apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace host {

/// Looks for the faults of a file as a whole: it is missing, empty or no MIDI file, its header is not one
/// that can be played, its tracks are cut off or not there.
/// @return the fault in one line; nothing = there is none of that kind
std::optional<std::string> faultOfSongFile(const std::string& path);

/// @param path  a file that the engine refused
/// @param code  the engine's code of that failure; 0 = it gave none
/// @return why, in one line
std::string explainSongFailure(const std::string& path, std::uint32_t code);

} // namespace host
