// The plan of a song: its play ranges, the next locator, and the rewind.
#include "corvmo32.h"
#include "engine/guards.h"
#include "engine/notifications.h"
#include "engine/players.h"
#include "sequencer/sequencer.h"
#include "transport/transport.h"

namespace {

constexpr std::int16_t kEndless = 32767;

/// Begins with the first range.
void beginPlan(MIDIOUT& player) noexcept {
    player.loopsSet = 1;
    player.loopIndex = 0;
    player.curLoop = &player.loops[0];
}

void copyRanges(MIDIOUT& player, const MMLOOP* table) noexcept {
    player.numLoops = 0;
    for (int i = 0; i < MM_MAX_LOOPS; ++i) {
        MMLOOP& range = player.loops[i];
        range = table[i];
        if (range.repeats < 1) {
            range.repeats = 1;
        }
        range.repeatsSet = range.repeats;
        if (range.end == 0) {
            range.end = endOfSong(player);
        }
        if (range.start != MMLOOP_UNUSED) {
            ++player.numLoops;
        }
    }
    beginPlan(player);
}

/// The range now playing becomes the first one, with one pass left.
void keepCurrentRange(MIDIOUT& player, std::uint32_t newEnd) noexcept {
    MMLOOP& current = player.loops[0];
    current = *player.curLoop;
    current.repeats = 1;
    current.repeatsSet = 1;
    if (newEnd != MMLOCATOR_KEEP_END && current.endLocked == 0) {
        current.end = newEnd;
    }
}

void planNextRange(MIDIOUT& player, std::uint32_t nextStart) noexcept {
    if (nextStart == MMLOCATOR_NO_NEXT) {
        player.loops[0].endLocked = 1;
        player.numLoops = 1;
        return;
    }
    MMLOOP& next = player.loops[1];
    next.start = nextStart;
    next.end = endOfSong(player);
    next.repeats = 1;
    next.endLocked = 0;
    player.loops[0].endLocked = 0;
    player.numLoops = 2;
}

void postRewind(const MIDIOUT& player) noexcept {
    if (wants(player, MMOPT_POSITION | MMOPT_POSITION2)) {
        post(MMN_POSITION, 0, 0);
    }
    if (wants(player, MMOPT_CHORDS)) {
        post(MMN_CHORD, 0, 0);
    }
    if (wants(player, MMOPT_LYRICS)) {
        post(MMN_LYRIC, 0, 0);
    }
}

} // namespace

void setWholeSong(MIDIOUT& player) noexcept {
    MMLOOP& range = player.loops[0];
    player.numLoops = 1;
    range.start = 0;
    range.end = endOfSong(player);
    range.repeats = player.endOnBeat != 0 ? kEndless : std::int16_t{1};
    range.repeatsSet = range.repeats;
    beginPlan(player);
}

void CORVMO_CALL mm_SetLoop(HMIDIOUT handle, const MMLOOP* table) {
    MIDIOUT& player = selectPlayer(handle);
    const EngineLock lock;
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    if (table != nullptr) {
        copyRanges(player, table);
    } else {
        setWholeSong(player);
    }
}

void CORVMO_CALL mm_SetNextLocator(HMIDIOUT handle, std::uint32_t newEnd, std::uint32_t nextStart) {
    MIDIOUT& player = selectPlayer(handle);
    const EngineLock lock;
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    if (player.curLoop == nullptr) {
        setWholeSong(player);
    }
    keepCurrentRange(player, newEnd);
    planNextRange(player, nextStart);
    for (int i = player.numLoops; i < MM_MAX_LOOPS; ++i) {
        player.loops[i].start = MMLOOP_UNUSED;
    }
    beginPlan(player);
}

void CORVMO_CALL mm_RewindSync(HMIDIOUT handle) {
    MIDIOUT& player = selectPlayer(handle);
    const EngineLock lock;
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    setPlaying(player, false);
    rewindCursors(player);
    postRewind(player);
}
