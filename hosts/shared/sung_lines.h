// The words of a song in time: when each line and syllable begins and ends, for files that other players read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shared/song.h"

namespace host {

/// Times are milliseconds from the beginning of the song, never negative.
struct SungSyllable {
    long start;
    long end; ///< where the next one of the line starts; the line's end for the last
    std::string text;
};

struct SungLine {
    std::vector<SungSyllable> syllables; ///< at least one

    long start() const {
        return syllables.front().start;
    }
    long end() const {
        return syllables.back().end;
    }
    std::string words() const;
};

/// The lines that have words to read. The last syllable of a line lasts until the next line, at most two seconds.
/// @param offset  milliseconds by which everything comes later
std::vector<SungLine> sungLines(const Song& song, int offset);

/// A text in which no format's mark-up can begin with one of these ASCII characters: an invisible character
/// follows each of them.
std::string withoutMarkup(std::string_view text, std::string_view characters);

} // namespace host
