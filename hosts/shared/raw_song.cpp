// A song as the engine hands it out, copied.
#include "shared/raw_song.h"

#include <algorithm>
#include <cstring>

#include "shared/song_events.h"

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

/// What the store keeps of a message; the length of a short one stands in its event.
std::vector<std::uint8_t> messageOf(const MMSYSEX& stored, const MMEVENT& event) {
    if (stored.ownBlock == 0) {
        const std::size_t length = std::min<std::size_t>(event.byte3, sizeof stored.message.data);
        return {stored.message.data, stored.message.data + length};
    }
    const std::uint8_t* const bytes = stored.message.block.ptr;
    return {bytes, bytes + stored.message.block.length};
}

std::vector<std::vector<std::uint8_t>> exclusivesOf(const MIDIOUT& player,
                                                    const std::vector<MMEVENT>& events) {
    std::vector<std::vector<std::uint8_t>> messages;
    if (player.sysex == nullptr || player.sysexCount <= 0) {
        return messages;
    }
    messages.resize(static_cast<std::size_t>(player.sysexCount));
    for (const MMEVENT& event : events) {
        const std::size_t slot = exclusiveSlotOf(event);
        if (event.kind == kExclusiveEvent && slot < messages.size()) {
            messages[slot] = messageOf(player.sysex[slot], event);
        }
    }
    return messages;
}

} // namespace

RawSong readRawSong(HMIDIOUT player) {
    RawSong song;
    const MMINFO& info = *mm_GetInfo(player);
    song.title = fieldText(info.title);
    song.title2 = fieldText(info.title2);
    song.firstTempo = info.firstTempo;
    song.keySignature = info.keySignature;
    const MIDIOUT& record = *mm_GetMM(player);
    song.format = record.format;
    song.tracks = record.trackCount;
    song.division = mm_GetUnits(player);
    if (const MMEVENT* events = mm_GetPointerEvents(player, 0)) {
        song.events.assign(events, events + mm_GetNumEvents(player));
    }
    song.lyrics = tableOf(player, mm_GetNumLyrics(player), &mm_GetPointerLyrics);
    song.chords = tableOf(player, mm_GetNumChords(player), &mm_GetPointerChords);
    song.markers = tableOf(player, mm_GetNumMarkers(player), &mm_GetPointerMarkers);
    song.exclusives = exclusivesOf(record, song.events);
    return song;
}

} // namespace host
