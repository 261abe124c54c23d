// Where the chord names of a line stand over its words.
#pragma once

#include <vector>

#include "shared/lyric_lines.h"
#include "shared/wrapped_lines.h"

namespace host {

/// Chords stand over the first letter of their syllables, those of a held syllable before the next one's, and
/// none over another.
/// @param edges    where each syllable of the line begins, and where the last one ends
/// @param measure  widths of texts, in the unit of the edges
/// @param gap      that is left between two chords
/// @return where each chord of the line begins
std::vector<int> chordPlaces(const Line& line, const std::vector<int>& edges,
                             const TextMeasure& measure, int gap);

} // namespace host
