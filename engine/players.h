// Which player a call means, whether it holds a song, and whether it plays.
#pragma once

#include "corvmo32_records.h"
#include "engine/shared_field.h"

/// Player 1 when the handle is player 1's, player 2 in every other case.
MIDIOUT& selectPlayer(HMIDIOUT handle) noexcept;

/// A song was opened and not closed. A failed opening leaves none, whatever memory it left.
bool hasSong(const MIDIOUT& player) noexcept;

/// An opening halts its player without a guard, while the tick may be serving it.
inline bool isPlaying(const MIDIOUT& player) noexcept {
    return loadShared<std::int16_t>(&player.playing) != 0;
}
inline void setPlaying(MIDIOUT& player, bool playing) noexcept {
    storeShared<std::int16_t>(&player.playing, playing ? 1 : 0);
}
