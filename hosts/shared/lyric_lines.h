// The words and chords of a song as lines for display: syllables gathered into lines, chords put where they
// are played.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shared/raw_song.h"
#include "shared/text_decoder.h"

namespace host {

/// One syllable of a line. The texts of a line's syllables, put together, are the line.
struct Syllable {
    std::uint32_t tick;
    int lyric;        ///< index in the engine's lyric table
    std::string text; ///< UTF-8; may be empty
};

/// One chord name and where it stands in its line.
struct Chord {
    std::uint32_t tick;
    int index;        ///< in the engine's chord table
    std::string name; ///< UTF-8
    std::size_t
        syllable; ///< it stands over this syllable; the number of syllables = after the last
};

/// One line. A stretch without words has lines of chords alone.
struct Line {
    std::vector<Syllable> syllables;
    std::vector<Chord> chords;

    /// Tick of the first syllable or chord.
    std::uint32_t tick() const;
    /// Tick of the last syllable or chord.
    std::uint32_t lastTick() const;
    std::string words() const;
};

/// Gathers lyrics into lines. A line ends at a carriage return or line feed in a text and at a text that
/// begins with a slash or backslash; a line that is much too long is divided between words, where the song
/// pauses most. Runs of spaces become one; where a song spaces none of its words every syllable gets one.
/// @param lyrics  the engine's table; record 0 is the start record
std::vector<Line> buildLines(const std::vector<TimedBytes>& lyrics, const TextDecoder& decoder);

/// Puts the chords over the syllables that they are played at, and chords away from all words into lines of
/// their own. Texts that are no chord names are left out.
/// @param chords    the engine's table; record 0 is the start record
/// @param division  ticks per quarter note
void placeChords(std::vector<Line>& lines, const std::vector<TimedBytes>& chords,
                 const TextDecoder& decoder, int division);

} // namespace host
