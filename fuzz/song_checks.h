// What holds of every song that was opened, whatever the file was.
#pragma once

#include <cstddef>

#include "corvmo32.h"

namespace fuzz {

/// @param player    a player that holds a song
/// @param fileSize  bytes of the song's file
void checkSong(HMIDIOUT player, std::size_t fileSize);

} // namespace fuzz
