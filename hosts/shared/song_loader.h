// Reads songs through the engine without playing them.
#pragma once

#include "shared/raw_song.h"
#include "shared/song_file.h"

namespace host {

/// Reads a song into a player, copies it and closes the player again. The engine must be running; nothing is
/// sent through a player that has no output.
/// @param player  handle of a player that holds no song in use
/// @throws SongError  why the file cannot be played
RawSong loadSong(HMIDIOUT player, const SongFile& file);

/// Why an opening that has just failed did so.
/// @param player  the same player, which is used to find out and left closed
std::string reasonOfFailure(HMIDIOUT player, const SongFile& file);

} // namespace host
