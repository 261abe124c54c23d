// Song files for the tests of the preparation: the project's own, and ones put together byte by byte.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "prepare/prepare_song.h"
#include "tests/support/song_builder.h"

/// The songs of the project and those of the folder in CORVMO_SONG_DIR.
std::vector<std::string> songFiles();
/// Those of the project alone.
std::vector<std::string> ownSongFiles();
Bytes readFile(const std::string& name);

Bytes operator+(Bytes a, const Bytes& b);
Bytes bytesOf(std::initializer_list<int> bytes);

/// "MThd" and its fields.
Bytes header(int format, int tracks, int division);
/// A chunk with the length of its data, or another one.
Bytes chunk(const std::string& tag, const Bytes& data);
Bytes chunk(const std::string& tag, const Bytes& data, std::uint32_t length);

/// End of track, its delay before it.
extern const Bytes kEnd;

/// The file as the preparation writes it when something outside of the tracks was mended.
Bytes rewritten(const Bytes& file);
