// The seek: cursors, tempo, time signature and position of another tick.
#include "sequencer/seek.h"

#include <algorithm>

#include "engine/notifications.h"
#include "engine/players.h"
#include "sequencer/sequencer.h"

namespace {

void seekEvents(MIDIOUT& player, std::uint32_t tick) noexcept {
    if (!hasSong(player) || player.eventCount == 0) {
        return;
    }
    if (tick < player.eventPlay->time) {
        rewindCursors(player);
    }
    // The last event stands at the tick or after it.
    while (player.eventPlay->time < tick) {
        ++player.eventPlay;
        ++player.eventIndex;
    }
}

void takeTiming(MIDIOUT& player) noexcept {
    if (player.map.tempo != MMMAP_NONE32) {
        applyTempo(player, player.map.tempo);
    }
    if (player.map.beatsPerBar != MMMAP_NONE16) {
        player.click.timeSigTick = player.map.timeSigTick;
        player.beatsPerBar = static_cast<std::int16_t>(player.map.beatsPerBar);
        player.beatUnit = static_cast<std::int16_t>(player.map.beatUnit);
    }
}

/// Index of the first record that is due at the tick or later.
template <typename Record>
std::int16_t firstDue(const Record* table, std::int16_t count, std::uint32_t tick) noexcept {
    std::int16_t index = 0;
    while (index < count && table[index].time < tick) {
        ++index;
    }
    return index;
}

void seekTexts(MIDIOUT& player, std::uint32_t tick) noexcept {
    player.lyricIndex = firstDue(player.lyrics, loadShared<std::int16_t>(&player.lyricCount), tick);
    player.lyricPlay = player.lyrics + player.lyricIndex;
    player.chordIndex = firstDue(player.chords, loadShared<std::int16_t>(&player.chordCount), tick);
    player.chordPlay = player.chords + player.chordIndex;
}

void postSeek(const MIDIOUT& player, std::uint32_t tick) noexcept {
    if (player.map.tempo != MMMAP_NONE32) {
        postTempo(player, 2);
    }
    if (wants(player, MMOPT_CHORDS)) {
        post(MMN_CHORD, static_cast<WPARAM>(player.chordIndex), 0);
    }
    if (wants(player, MMOPT_LYRICS)) {
        post(MMN_LYRIC, static_cast<WPARAM>(player.lyricIndex), 0);
    }
    if (wants(player, MMOPT_POSITION | MMOPT_POSITION2)) {
        post(MMN_POSITION, 0, tick);
    }
}

} // namespace

void seek(MIDIOUT& player, std::uint32_t tick) noexcept {
    const std::uint32_t target = std::min(tick, endOfSong(player));
    seekEvents(player, target);
    takeTiming(player);
    seekTexts(player, target);
    postSeek(player, target);
    setPosition(player, target);
    player.click.nextClick = target;
}
