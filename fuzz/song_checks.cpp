// What holds of every song that was opened.
#include "fuzz/song_checks.h"

#include <algorithm>
#include <cstring>

#include "fuzz/machine.h"

namespace fuzz {

namespace {

constexpr std::size_t kSmallestEvent = 2; ///< bytes of a delta time and a status
constexpr std::size_t kMaxTracks = 127;   ///< each may hold one event that runs past its end

template <std::size_t Size>
bool terminated(const char (&text)[Size]) {
    return std::memchr(text, '\0', Size) != nullptr;
}

void checkEvents(HMIDIOUT player, std::size_t fileSize) {
    const auto count = static_cast<std::size_t>(mm_GetNumEvents(player));
    require(count <= fileSize / kSmallestEvent + kMaxTracks + 1, "events come from the file");
    const MMEVENT* const events = mm_GetPointerEvents(player, 0);
    if (mm_GetMM(player)->trackCount > 1) {
        require(std::is_sorted(events, events + count,
                               [](const MMEVENT& left, const MMEVENT& right) {
                                   return left.time < right.time;
                               }),
                "events of several tracks are in time order");
    }
}

void checkTexts(HMIDIOUT player) {
    const std::int16_t lyrics = mm_GetNumLyrics(player);
    require(lyrics >= 1 && lyrics <= MM_MAX_LYRICS, "the lyric count lies within the table");
    for (std::int16_t i = 0; i < lyrics; ++i) {
        require(terminated(mm_GetPointerLyrics(player, i)->text), "lyrics end in their field");
    }
    const std::int16_t chords = mm_GetNumChords(player);
    require(chords >= 1 && chords <= MM_MAX_CHORDS, "the chord count lies within the table");
    for (std::int16_t i = 0; i < chords; ++i) {
        require(terminated(mm_GetPointerChords(player, i)->text), "chords end in their field");
    }
    require(mm_GetNumMarkers(player) < MM_MAX_MARKERS, "nine markers at most are kept");
    const MMINFO& info = *mm_GetInfo(player);
    require(terminated(info.title) && terminated(info.title2), "titles end in their field");
}

} // namespace

void checkSong(HMIDIOUT player, std::size_t fileSize) {
    checkEvents(player, fileSize);
    checkTexts(player);
    require(mm_GetMM(player)->sysexCount <= MM_MAX_SYSEX, "the store is not overrun");
    require(mm_GetMM(player)->fileData == nullptr, "the copy of the file is given back");
}

} // namespace fuzz
