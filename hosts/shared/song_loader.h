// Reads songs through the engine without playing them.
#pragma once

#include <string>

#include "shared/error_texts.h"
#include "shared/raw_song.h"

namespace host {

/// Reads a song into a player, copies it and closes the player again. The engine must be running.
/// @param player  handle of a player that holds no song in use
/// @throws HostError  why the file cannot be played; the message does not name the file
RawSong loadSong(HMIDIOUT player, const std::string& path);

/// Why an opening that has just failed did so.
/// @param player  the same player, which is used to find out and left closed
std::string reasonOfFailure(HMIDIOUT player, const std::string& path);

} // namespace host
