// The full-screen player as a canvas.
#pragma once

#include "karaoke/canvas.h"
#include "karaoke/desk.h"
#include "karaoke/shown_words.h"

namespace karaoke {

/// The smallest screen on which everything has a place.
inline constexpr int kFewestColumns = 60;
inline constexpr int kFewestRows = 16;

/// Columns that a line of words may take.
int wordColumns(int columns);

/// Draws everything. A smaller canvas shows what fits.
/// @param words  brought up to date for wordColumns
Canvas composeScreen(const Desk& desk, const ShownWords& words, int columns, int rows);

} // namespace karaoke
