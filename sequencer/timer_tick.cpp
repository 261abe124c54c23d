// The timer tick: one call serves one timer period of both players.
#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/notifications.h"
#include "engine/players.h"
#include "sequencer/sequencer.h"

namespace {

void announceLyric(MIDIOUT& player) noexcept {
    if (player.lyricIndex < loadShared<std::int16_t>(&player.lyricCount) &&
        player.lyricPlay->time <= player.ticks && wants(player, MMOPT_LYRICS)) {
        post(MMN_LYRIC, static_cast<WPARAM>(player.lyricIndex), 0);
        ++player.lyricIndex;
        ++player.lyricPlay;
    }
}

void announceChord(MIDIOUT& player) noexcept {
    if (player.chordIndex < loadShared<std::int16_t>(&player.chordCount) &&
        player.chordPlay->time <= player.ticks && wants(player, MMOPT_CHORDS)) {
        post(MMN_CHORD, static_cast<WPARAM>(player.chordIndex), 0);
        ++player.chordIndex;
        ++player.chordPlay;
    }
}

/// Plays every event whose time has come. One lyric and one chord at most are announced per event.
void playDueEvents(MIDIOUT& player) noexcept {
    while (player.eventIndex < player.eventCount && player.eventPlay->time <= player.ticks) {
        announceLyric(player);
        announceChord(player);
        playEvent(player, *player.eventPlay);
        if (++player.eventIndex < player.eventCount) {
            ++player.eventPlay;
        }
    }
}

void servePlayer(MIDIOUT& player) noexcept {
    if (!isPlaying(player)) {
        return;
    }
    advanceClock(player);
    stepFades(player);
    if (!followPlayRanges(player)) {
        return;
    }
    strikeClick(player);
    playDueEvents(player);
}

} // namespace

void CORVMO_CALL SyncTimer(UINT /*timerId*/, UINT /*reserved*/, DWORD_PTR /*user*/,
                           DWORD_PTR /*reserved1*/, DWORD_PTR /*reserved2*/) {
    const TickInFlight inFlight;
    const EngineLock lock;
    if (!lock || (!isPlaying(MM1) && !isPlaying(MM2))) {
        return;
    }
    const BusyClaim claim(BusyClaim::Wait::No);
    if (!claim) {
        return;
    }
    servePlayer(MM1);
    servePlayer(MM2);
}
