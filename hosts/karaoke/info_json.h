// Facts about a song for other programs.
#pragma once

#include <string>

#include "shared/raw_song.h"
#include "shared/song.h"

namespace karaoke {

/// One JSON object, UTF-8. docs/karaoke.md tells its members.
std::string infoJson(const host::RawSong& raw, const host::Song& song);

} // namespace karaoke
