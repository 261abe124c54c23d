// The play ranges as the tick follows them: repeats, jumps and the end of the song.
#include "engine/notifications.h"
#include "engine/players.h"
#include "sequencer/sequencer.h"

namespace {

/// Goes on one timer period past the tick, as if the clock had made one step from there.
void jumpTo(MIDIOUT& player, std::uint32_t tick) noexcept {
    allNotesOff(player);
    buildMap(player, tick);
    sendMapAndSeek(player, tick);
    storeClockStep(player);
    player.tickRemainder = 0;
    advanceClock(player);
    player.click.nextClick = player.ticks;
}

void repeatRange(MIDIOUT& player) noexcept {
    const std::uint32_t start = player.curLoop->start;
    --player.curLoop->repeats;
    jumpTo(player, start);
    post(MMN_LOOP, 0, start);
    post(MMN_LOOP, 0, start);
}

void endSong(MIDIOUT& player) noexcept {
    setPlaying(player, false);
    allNotesOff(player);
    post(MMN_END, reinterpret_cast<WPARAM>(player.hmo), 0);
}

void nextRange(MIDIOUT& player) noexcept {
    const std::uint32_t end = player.curLoop->end;
    player.curLoop = &player.loops[++player.loopIndex];
    const std::uint32_t start = player.curLoop->start;
    if (start != end) {
        jumpTo(player, start);
    }
    post(MMN_LOOP, 0, start);
}

} // namespace

bool followPlayRanges(MIDIOUT& player) noexcept {
    if (player.ticks < player.curLoop->end) {
        return true;
    }
    if (player.curLoop->repeats > 1) {
        repeatRange(player);
        return true;
    }
    if (player.loopIndex + 1 >= player.numLoops) {
        endSong(player);
        return false;
    }
    nextRange(player);
    return true;
}
