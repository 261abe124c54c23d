// Which player a call means, and whether it holds a song.
#pragma once

#include "corvmo32_records.h"

/// Player 1 when the handle is player 1's, player 2 in every other case.
MIDIOUT& selectPlayer(HMIDIOUT handle) noexcept;

/// A song was opened and not closed. A failed opening leaves none, whatever memory it left.
bool hasSong(const MIDIOUT& player) noexcept;
