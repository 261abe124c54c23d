// Makes lines readable where a song's own texts are not: words without spaces, and songs without line ends.
#pragma once

#include <vector>

#include "shared/lyric_lines.h"

namespace host {

/// Puts a space after every syllable when the song separates no words at all; a syllable that ends with a
/// hyphen goes on in the next. Scripts that are written without spaces stay as they are.
void spaceUnspacedWords(std::vector<Line>& lines);

/// Divides lines that are too long to read, between words and where the song pauses most.
std::vector<Line> divideLongLines(const std::vector<Line>& lines);

} // namespace host
