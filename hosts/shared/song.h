// A song prepared for display: readable texts, lines of words and chords, times and bars.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shared/bars.h"
#include "shared/lyric_lines.h"
#include "shared/raw_song.h"
#include "shared/timeline.h"

namespace host {

/// A named place of the song.
struct Marker {
    std::uint32_t tick;
    std::string name; ///< UTF-8
};

struct Song {
    std::string path;
    std::string title;    ///< UTF-8; the file's name where the song has none
    std::string subtitle; ///< UTF-8; may be empty
    std::string encoding; ///< of the song's texts
    int division = 1;     ///< ticks per quarter note
    std::uint32_t endTick = 0;
    std::vector<Line> lines;
    std::vector<Marker> markers;
    Timeline timeline;
    BarGrid bars;

    bool hasWords() const;
    /// Number of syllables, or of chords, in all lines.
    std::size_t syllableCount() const;
    std::size_t chordCount() const;
    double seconds() const {
        return timeline.secondsAt(endTick);
    }
};

struct DisplayOptions {
    std::string encoding;   ///< of the texts; empty = guessed
    float tempoPercent = 0; ///< as mm_SetTempo takes it
};

/// Decodes the texts, gathers the lines and works out the times.
/// @param path  of the song's file; UTF-8 on Windows
Song songForDisplay(const RawSong& raw, const std::string& path, const DisplayOptions& options);

} // namespace host
