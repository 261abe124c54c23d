// A song as the engine hands it out, copied.
#include "shared/raw_song.h"

#include <cstring>

namespace host {

namespace {

/// A marker of full length has no ending zero.
template <std::size_t Size>
std::string fieldText(const char (&field)[Size]) {
    return {field, strnlen(field, Size)};
}

template <typename Entry>
std::vector<TimedBytes> tableOf(HMIDIOUT player, int count, Entry entry) {
    std::vector<TimedBytes> table;
    for (int i = 0; i < count; ++i) {
        if (const auto* record = entry(player, static_cast<std::int16_t>(i))) {
            table.push_back({record->time, fieldText(record->text)});
        }
    }
    return table;
}

} // namespace

RawSong readRawSong(HMIDIOUT player) {
    RawSong song;
    const MMINFO& info = *mm_GetInfo(player);
    song.title = fieldText(info.title);
    song.title2 = fieldText(info.title2);
    song.firstTempo = info.firstTempo;
    song.keySignature = info.keySignature;
    song.division = mm_GetUnits(player);
    if (const MMEVENT* events = mm_GetPointerEvents(player, 0)) {
        song.events.assign(events, events + mm_GetNumEvents(player));
    }
    song.lyrics = tableOf(player, mm_GetNumLyrics(player), &mm_GetPointerLyrics);
    song.chords = tableOf(player, mm_GetNumChords(player), &mm_GetPointerChords);
    song.markers = tableOf(player, mm_GetNumMarkers(player), &mm_GetPointerMarkers);
    return song;
}

} // namespace host
