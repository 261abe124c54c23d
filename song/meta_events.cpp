// Meta events: tempo and time signature enter the event list; texts become words, chords, markers and
// titles. Two conventions are known for words: text events after a text beginning with '@', and lyric
// events in any other song, whose texts are then chord names.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "engine/globals.h"
#include "engine/midi.h"
#include "engine/notifications.h"
#include "engine/shared_field.h"
#include "song/song.h"
#include "song/text_parts.h"

namespace {

constexpr char kHeaderMark = '@';
constexpr char kChordMark = '%';
constexpr char kLineFeed = '\n';
constexpr std::string_view kTitleMark = "@T";
constexpr std::size_t kShortestMarkedLyric = 3;
constexpr int kMaxSignatureSharps = 7;
constexpr std::uint8_t kLargestBeatPower = 7; ///< 2^7 is the last note value that fits in a byte

bool scanning(const MIDIOUT& player) noexcept {
    return wants(player, MMOPT_SCAN);
}

template <std::size_t Size>
void fillTitle(char (&title)[Size], std::string_view text) noexcept {
    std::memset(title, 0, Size);
    std::memcpy(title, text.data(), std::min(text.size(), Size - 1));
}

bool isEmpty(const char* title) noexcept {
    return title[0] == '\0';
}

void lyric(MIDIOUT& player, std::string_view text) noexcept {
    appendLyric(player, text.data(), static_cast<std::int32_t>(text.size()));
}

void chord(MIDIOUT& player, std::string_view text) noexcept {
    appendChord(player, text.data(), static_cast<std::int32_t>(text.size()));
}

void takeTitleLine(MMINFO& info, std::string_view text) noexcept {
    if (isEmpty(info.title)) {
        fillTitle(info.title, text);
    } else if (isEmpty(info.title2)) {
        fillTitle(info.title2, text);
    }
}

void takeTextBeforeHeader(MIDIOUT& player, std::string_view text) noexcept {
    if (scanning(player) && isEmpty(player.info.title)) {
        fillTitle(player.info.title, text);
    }
    if (text.front() == kHeaderMark) {
        g_atHeader = 1;
        if (scanning(player)) {
            fillTitle(player.info.title, "");
            fillTitle(player.info.title2, "");
        }
    } else if (text.front() != '\0') {
        chord(player, text);
    }
}

void takeTextAfterHeader(MIDIOUT& player, std::string_view text) noexcept {
    if (scanning(player) && firstOf(text, kTitleMark.size()) == kTitleMark) {
        takeTitleLine(player.info, afterFirst(text, kTitleMark.size()));
    }
    switch (text.front()) {
    case kHeaderMark:
    case '\0':
    case kLineFeed:
    case kChordMark:
        return;
    case '\\':
    case '/':
        if (appendLineBreak(player, player.lyrics[player.lyricCount - 1].time)) {
            lyric(player, afterFirst(text, 1));
        }
        return;
    default:
        lyric(player, text);
        return;
    }
}

void takeText(MIDIOUT& player, std::string_view text) noexcept {
    if (g_karaokeSysEx != 0 || text.empty()) {
        return;
    }
    if (g_atHeader == 0) {
        takeTextBeforeHeader(player, text);
    } else {
        takeTextAfterHeader(player, text);
    }
}

void takeTrackName(MIDIOUT& player, std::string_view text) noexcept {
    if (scanning(player) && g_atHeader == 0 && !text.empty() && isEmpty(player.info.title)) {
        fillTitle(player.info.title, text);
    }
}

bool isBlank(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char c) { return c == '\0'; });
}

void takeLyricAtNewLine(MIDIOUT& player, std::string_view text) noexcept {
    if (text.size() < kShortestMarkedLyric || isBlank(afterFirst(text, 1))) {
        return;
    }
    if (appendLineBreak(player, player.trackTime)) {
        lyric(player, afterFirst(text, 1));
    }
}

void takeLyric(MIDIOUT& player, std::string_view text) noexcept {
    if (g_karaokeSysEx != 0 || g_atHeader != 0 || text.empty()) {
        return;
    }
    switch (text.front()) {
    case kHeaderMark:
    case '\0':
    case kLineFeed:
        return;
    case kChordMark:
        chord(player, afterFirst(text, 1));
        return;
    case '<':
    case '>':
        takeLyricAtNewLine(player, text);
        return;
    default:
        lyric(player, text);
        return;
    }
}

void takeMarker(MIDIOUT& player, std::string_view text) noexcept {
    // The last record of the table is never filled.
    if (player.markerCount + 1 >= MM_MAX_MARKERS || text.empty()) {
        return;
    }
    MMMARKER& marker = player.markers[player.markerCount];
    marker.time = player.trackTime;
    std::memcpy(marker.text, text.data(), std::min(text.size(), sizeof marker.text));
    storeShared(&player.markerCount, static_cast<std::int16_t>(player.markerCount + 1));
}

bool takeTempo(MIDIOUT& player, const std::uint8_t* data, std::int32_t length) noexcept {
    if (length < 3) {
        return true;
    }
    if (scanning(player) && player.info.firstTempo == 0) {
        player.info.firstTempo = static_cast<std::uint32_t>(data[0] << 16 | data[1] << 8 | data[2]);
    }
    return appendEvent(player, {midi::kTempo, data[0], data[1], data[2], player.trackTime});
}

bool takeTimeSignature(MIDIOUT& player, const std::uint8_t* data, std::int32_t length) noexcept {
    if (length < 2 || data[1] > kLargestBeatPower) {
        return true;
    }
    const auto beatUnit = static_cast<std::uint8_t>(1 << data[1]);
    return appendEvent(player, {midi::kTimeSignature, data[0], beatUnit, 0, player.trackTime});
}

void takeKeySignature(MIDIOUT& player, const std::uint8_t* data, std::int32_t length) noexcept {
    if (!scanning(player) || length != 2 || player.info.keySignature != -1) {
        return;
    }
    const auto sharps = static_cast<std::int8_t>(data[0]);
    const std::uint8_t minor = data[1];
    if (sharps >= -kMaxSignatureSharps && sharps <= kMaxSignatureSharps && minor <= 1) {
        player.info.keySignature = sharps * 256 | minor;
    }
}

} // namespace

bool takeMetaEvent(MIDIOUT& player, std::uint8_t type, const std::uint8_t* data,
                   std::int32_t length) noexcept {
    const std::string_view text(reinterpret_cast<const char*>(data),
                                static_cast<std::size_t>(length));
    switch (type) {
    case midi::kText:
        takeText(player, text);
        return true;
    case midi::kTrackName:
        takeTrackName(player, text);
        return true;
    case midi::kLyric:
        takeLyric(player, text);
        return true;
    case midi::kMarker:
        takeMarker(player, text);
        return true;
    case midi::kTempo:
        return takeTempo(player, data, length);
    case midi::kTimeSignature:
        return takeTimeSignature(player, data, length);
    case midi::kKeySignature:
        takeKeySignature(player, data, length);
        return true;
    default:
        return true;
    }
}
