// Lines of a song divided into parts that fit a terminal's width.
#pragma once

#include <vector>

#include "shared/lyric_lines.h"

namespace karaoke {

/// Divides lines that take more than some columns, between words where there are any; the parts are of about
/// the same length. Chords go with their syllables. A single syllable is not divided.
std::vector<host::Line> wrapLines(const std::vector<host::Line>& lines, int columns);

} // namespace karaoke
