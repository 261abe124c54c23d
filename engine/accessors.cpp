// The exports through which a host reads a song and sets the options word and the window.
#include <algorithm>

#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/players.h"
#include "engine/shared_field.h"

namespace {

constexpr int kTempoFractionBits = 8;

/// Null stays null whatever the index.
template <typename Record>
Record* entryOf(Record* table, std::ptrdiff_t index) noexcept {
    return table == nullptr ? nullptr : table + index;
}

/// A count that stays within the table, which may be missing.
template <typename Record>
std::int16_t countWithin(const Record* table, std::int16_t count, std::int16_t size) noexcept {
    return table == nullptr ? std::int16_t{0} : std::clamp<std::int16_t>(count, 0, size);
}

} // namespace

std::int32_t CORVMO_CALL mm_GetNumEvents(HMIDIOUT player) {
    return loadShared<std::int32_t>(&selectPlayer(player).eventCount);
}

MMEVENT* CORVMO_CALL mm_GetPointerEvents(HMIDIOUT player, std::int32_t index) {
    return entryOf(loadShared<MMEVENT*>(&selectPlayer(player).events), index);
}

std::int16_t CORVMO_CALL mm_GetNumLyrics(HMIDIOUT player) {
    return loadShared<std::int16_t>(&selectPlayer(player).lyricCount);
}

void CORVMO_CALL mm_SetNumLyrics(HMIDIOUT handle, std::int16_t count) {
    MIDIOUT& player = selectPlayer(handle);
    if (waitUntilIdle()) {
        storeShared<std::int16_t>(
            &player.lyricCount,
            countWithin(loadShared<MMLYRIC*>(&player.lyrics), count, MM_MAX_LYRICS));
    }
}

MMLYRIC* CORVMO_CALL mm_GetPointerLyrics(HMIDIOUT player, std::int16_t index) {
    return entryOf(loadShared<MMLYRIC*>(&selectPlayer(player).lyrics), index);
}

std::int16_t CORVMO_CALL mm_GetNumChords(HMIDIOUT player) {
    return loadShared<std::int16_t>(&selectPlayer(player).chordCount);
}

void CORVMO_CALL mm_SetNumChords(HMIDIOUT handle, std::int16_t count) {
    MIDIOUT& player = selectPlayer(handle);
    if (waitUntilIdle()) {
        storeShared<std::int16_t>(
            &player.chordCount,
            countWithin(loadShared<MMCHORD*>(&player.chords), count, MM_MAX_CHORDS));
    }
}

MMCHORD* CORVMO_CALL mm_GetPointerChords(HMIDIOUT player, std::int16_t index) {
    return entryOf(loadShared<MMCHORD*>(&selectPlayer(player).chords), index);
}

std::int16_t CORVMO_CALL mm_GetNumMarkers(HMIDIOUT player) {
    return loadShared<std::int16_t>(&selectPlayer(player).markerCount);
}

MMMARKER* CORVMO_CALL mm_GetPointerMarkers(HMIDIOUT player, std::int16_t index) {
    return entryOf(loadShared<MMMARKER*>(&selectPlayer(player).markers), index);
}

std::uint32_t CORVMO_CALL mm_GetTempo(HMIDIOUT player) {
    return loadShared<std::uint32_t>(&selectPlayer(player).tempo) >> kTempoFractionBits;
}

std::int16_t CORVMO_CALL mm_GetUnits(HMIDIOUT player) {
    return loadShared<std::int16_t>(&selectPlayer(player).division);
}

std::uint32_t CORVMO_CALL mm_GetTicks(HMIDIOUT player) {
    return loadShared<std::uint32_t>(&selectPlayer(player).ticks);
}

MMINFO* CORVMO_CALL mm_GetInfo(HMIDIOUT player) {
    return &selectPlayer(player).info;
}

void CORVMO_CALL mm_SetOptions(HMIDIOUT handle, std::uint32_t options) {
    MIDIOUT& player = selectPlayer(handle);
    if (waitUntilIdle()) {
        storeShared<std::uint32_t>(&player.options, options);
    }
}

void CORVMO_CALL mm_SetWindow(HWND window) {
    if (waitUntilIdle()) {
        g_hwndNotify.store(window);
    }
}

HWND CORVMO_CALL mm_GetWindow(void) {
    return g_hwndNotify.load();
}

std::uint32_t CORVMO_CALL mm_GetLastError(void) {
    return g_lastError.load();
}
