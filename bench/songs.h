// Songs for the benchmarks, made as they are needed: the same call gives the same file on every machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "corvmo32_records.h"

namespace bench {

enum class Kind {
    Realistic, ///< notes 83 %, controllers 8 %, bends 7 %, the rest words and tempo; some 64 events a second
    Walls,   ///< 64 note-ons of every track at one tick, again and again
    Hostile, ///< 16 distinct ticks in the whole file
    Burst    ///< everything but the last event at tick 1
};

struct SongShape {
    Kind kind = Kind::Realistic;
    int tracks = 1;
    int events = 0; ///< that enter the event list, about
};

/// "realistic-16-1000000".
std::string nameOf(const SongShape& shape);

/// A whole file.
std::vector<std::uint8_t> makeSong(const SongShape& shape);

/// The event list as it stands before it is sorted: one track after the other.
std::vector<MMEVENT> makeList(const SongShape& shape);

/// Writes the file unless it is there, and answers its path. The files are removed when the process ends; the
/// environment variable CORVMO_BENCH_SONGS names a folder that keeps them.
std::string songFile(const SongShape& shape);

/// Bytes of the file that songFile wrote.
std::uintmax_t fileSize(const SongShape& shape);

} // namespace bench
