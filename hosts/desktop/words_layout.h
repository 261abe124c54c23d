// How large the words are and where their rows lie, from the size of their place alone.
#pragma once

#include "desktop/boxes.h"

namespace desktop {

/// Heights of letters, in pixels.
struct WordsSizes {
    int current = 0;
    int other = 0; ///< previous and next lines
    int chord = 0;
    int title = 0;
};

/// Rows over the whole width, from top to bottom. The title's stands in the upper margin.
struct WordsRows {
    Box title;
    Box previous;
    Box dots; ///< of the count-in
    Box chords;
    Box current;
    Box next;
};

struct WordsLayout {
    WordsSizes sizes;
    WordsRows rows;
    int lineWidth = 0; ///< what a line may take
};

/// @param place      size of the words' place
/// @param lineWidth  of a long line of the song, in letters of height 100
WordsLayout layoutWords(Size place, int lineWidth);

} // namespace desktop
