// The parts of the full-screen player, each drawn into its own rows of a canvas.
#pragma once

#include "karaoke/canvas.h"
#include "karaoke/desk.h"
#include "karaoke/shown_words.h"

namespace karaoke {

/// Rows of a canvas.
struct Rows {
    int first;
    int count;
};

inline constexpr int kMargin = 2; ///< columns left free at both sides

/// The words: what was sung above, the line that is sung with its chords, what comes beneath. The line that is
/// sung keeps its row. Without words the chords, or the song's name.
void drawWords(Canvas& canvas, const Rows& rows, const Desk& desk, const ShownWords& words);

/// Where the song stands between its beginning and its end, with markers and the loop. One row, or two with
/// the markers' names.
void drawPosition(Canvas& canvas, const Rows& rows, const Desk& desk);

/// The 16 channels with their instruments and levels. Four rows, or five with all of the chosen channel.
void drawChannels(Canvas& canvas, const Rows& rows, const Desk& desk);

/// All keys, over the whole canvas.
void drawHelp(Canvas& canvas);

} // namespace karaoke
