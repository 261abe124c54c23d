// The song clock: integer arithmetic with an exact remainder.
#include <algorithm>

#include "engine/globals.h"
#include "engine/players.h"
#include "engine/shared_field.h"
#include "sequencer/sequencer.h"

namespace {

/// Microseconds in a millisecond, times the 256 by which the tempo is scaled.
constexpr std::uint64_t kClockScale = 256000;

} // namespace

std::uint64_t clockStep(const MIDIOUT& player) noexcept {
    return static_cast<std::uint64_t>(player.division) * static_cast<std::uint64_t>(g_timerPeriod) *
           kClockScale;
}

void storeClockStep(MIDIOUT& player) noexcept {
    player.tickStep = static_cast<std::uint32_t>(clockStep(player));
}

void setPosition(MIDIOUT& player, std::uint32_t ticks) noexcept {
    storeShared<std::uint32_t>(&player.ticks, ticks);
}

void advanceClock(MIDIOUT& player) noexcept {
    const std::uint64_t total = clockStep(player) + player.tickRemainder;
    // A position that wrapped would never reach the end of its range.
    const std::uint64_t position = player.ticks + total / player.tempo;
    setPosition(player, static_cast<std::uint32_t>(std::min<std::uint64_t>(position, UINT32_MAX)));
    player.tickRemainder = static_cast<std::uint32_t>(total % player.tempo);
}

std::uint32_t endOfSong(const MIDIOUT& player) noexcept {
    return player.eventCount > 0 ? player.events[player.eventCount - 1].time : 0;
}

void rewindCursors(MIDIOUT& player) noexcept {
    if (hasSong(player)) {
        player.eventPlay = player.events;
    }
    player.eventIndex = 0;
    setPosition(player, 0);
    player.tickRemainder = 0;
    player.lyricIndex = 0;
    player.chordIndex = 0;
    player.lyricPlay = player.lyrics;
    player.chordPlay = player.chords;
    player.click.nextClick = 0;
    player.click.timeSigTick = 0;
}
