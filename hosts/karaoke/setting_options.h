// Options that several commands take: how a song is to sound and how its texts are encoded.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "shared/song_settings.h"

namespace karaoke {

/// --encoding
void addEncoding(CLI::App& command, std::string& encoding);

/// --tempo
void addTempo(CLI::App& command, float& percent);

/// --transpose, --tempo, --mute, --solo, --volume, --patch
void addSongSettings(CLI::App& command, host::SongSettings& settings);

} // namespace karaoke
