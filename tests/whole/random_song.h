// Songs by chance, the same for the same seed.
#pragma once

#include <random>

#include "tests/support/song_builder.h"

constexpr int kRandomSongDivision = 100;

/// A song of one track that sets everything the channel map knows at its beginning and changes it all the
/// time, with notes of which some are never ended.
SongBuilder randomSong(std::mt19937& random, bool withTempo);

/// A number from first to last.
int anyOf(std::mt19937& random, int first, int last);
