// Words as files that other players read, in UTF-8.
#pragma once

#include <string>

#include "shared/song.h"

namespace host {

/// Lines for music players, with a time for every syllable: "[00:01.00]<00:01.00>Dai<00:01.50>sy<00:02.00>".
/// @param offset  milliseconds by which the words come later
std::string lrcFile(const Song& song, int offset);

/// Subtitles for video players, each line shown a moment before it is sung and coloured syllable by syllable.
/// @param offset  as above
std::string assFile(const Song& song, int offset);

/// Plain subtitles, one a line.
/// @param offset  as above
std::string srtFile(const Song& song, int offset);

} // namespace host
