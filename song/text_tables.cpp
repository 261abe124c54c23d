// The lyric and chord tables: the only places that write them.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "engine/globals.h"
#include "engine/shared_field.h"
#include "song/song.h"
#include "song/text_parts.h"

namespace {

constexpr char kLineBreak = '\r';
constexpr char kRestartMark = '?';
constexpr int kManyEntries = 5;     ///< index from which a song counts as having words, or chords
constexpr int kMaxRestartable = 20; ///< a longer lyric table is not restarted
constexpr std::size_t kMaxLyric = sizeof MMLYRIC::text - 1;
constexpr std::size_t kMaxChord = 14;

template <typename Record>
void writeRecord(Record& record, std::uint32_t time, std::string_view text) noexcept {
    record.time = time;
    std::memset(record.text, 0, sizeof record.text);
    std::memcpy(record.text, text.data(), std::min(text.size(), sizeof record.text - 1));
}

constexpr std::string_view kStartText = "\r";

bool isLineBreak(const MMLYRIC& record) noexcept {
    return record.text[0] == kLineBreak;
}

void setLyricCount(MIDIOUT& player, int count) noexcept {
    storeShared(&player.lyricCount, static_cast<std::int16_t>(count));
}

void setChordCount(MIDIOUT& player, int count) noexcept {
    storeShared(&player.chordCount, static_cast<std::int16_t>(count));
}

bool lyricsFull(const MIDIOUT& player) noexcept {
    return player.lyricCount >= MM_MAX_LYRICS;
}

/// False when the table is full.
bool addLyric(MIDIOUT& player, std::uint32_t time, std::string_view text) noexcept {
    if (lyricsFull(player)) {
        return false;
    }
    writeRecord(player.lyrics[player.lyricCount], time, text);
    if (player.lyricCount >= kManyEntries) {
        player.info.hasLyrics = 1;
    }
    setLyricCount(player, player.lyricCount + 1);
    return true;
}

void restartLyrics(MIDIOUT& player) noexcept {
    if (player.trackCount == 1 || g_lyricsRestarted != 0) {
        return;
    }
    g_lyricsRestarted = 1;
    if (player.lyricCount > kMaxRestartable) {
        return;
    }
    std::memset(player.lyrics, 0, sizeof(MMLYRIC) * MM_MAX_LYRICS);
    setLyricCount(player, 1);
    writeRecord(player.lyrics[0], 0, kStartText);
}

/// The start line break comes one fifth of the way to the first lyric; the doubling wraps at 32 bits.
void placeLyricStart(MIDIOUT& player) noexcept {
    player.lyrics[0].time = player.trackTime * 2u / 10u;
    player.lyricIndex = 0;
}

/// The start record comes three tenths of the way to the first chord; the product wraps at 32 bits.
void placeChordStart(MIDIOUT& player) noexcept {
    player.chords[0].time = player.trackTime * 3u / 10u;
    player.chordIndex = 0;
}

/// Syllables at the same tick become one lyric.
bool mergeLyric(MMLYRIC& last, std::uint32_t time, std::string_view text) noexcept {
    if (last.time != time || isLineBreak(last) || text.front() == kLineBreak) {
        return false;
    }
    const std::size_t used = strnlen(last.text, kMaxLyric);
    // A text may hold a zero byte; what stood behind it must not reappear.
    std::memset(last.text + used, 0, sizeof last.text - used);
    std::memcpy(last.text + used, text.data(), std::min(text.size(), kMaxLyric - used));
    return true;
}

/// Length of the first piece of a text that is too long for one record: to its last space that fits, or as
/// much as fits.
std::size_t pieceLength(std::string_view text) noexcept {
    const std::size_t space = firstOf(text, kMaxLyric).rfind(' ');
    return space == std::string_view::npos ? kMaxLyric : space + 1;
}

void addInPieces(MIDIOUT& player, std::string_view text) noexcept {
    while (text.size() > kMaxLyric) {
        const std::size_t length = pieceLength(text);
        if (!addLyric(player, player.trackTime, firstOf(text, length))) {
            return;
        }
        text.remove_prefix(length);
    }
    addLyric(player, player.trackTime, text);
}

} // namespace

void restartTextTables(MIDIOUT& player) noexcept {
    writeRecord(player.lyrics[0], 0, kStartText);
    writeRecord(player.chords[0], 0, kStartText);
    setLyricCount(player, 1);
    setChordCount(player, 1);
}

bool appendLineBreak(MIDIOUT& player, std::uint32_t time) noexcept {
    return isLineBreak(player.lyrics[player.lyricCount - 1]) || addLyric(player, time, kStartText);
}

void appendLyric(MIDIOUT& player, const char* text, std::int32_t length) noexcept {
    if (length <= 0) {
        return;
    }
    const std::string_view lyric(text, static_cast<std::size_t>(length));
    if (lyric.front() == kRestartMark || g_lyricsRestarted != 0) {
        restartLyrics(player);
        return;
    }
    MMLYRIC& last = player.lyrics[player.lyricCount - 1];
    if (last.time > player.trackTime) {
        return;
    }
    if (player.lyricCount == 1) {
        placeLyricStart(player);
    }
    if (lyric.size() > kMaxLyric) {
        addInPieces(player, lyric);
    } else if (!mergeLyric(last, player.trackTime, lyric)) {
        addLyric(player, player.trackTime, lyric);
    }
}

void appendChord(MIDIOUT& player, const char* text, std::int32_t length) noexcept {
    if (player.chords[player.chordCount - 1].time > player.trackTime) {
        return;
    }
    if (player.chordCount == 1) {
        placeChordStart(player);
    }
    if (player.chordCount >= MM_MAX_CHORDS) {
        return;
    }
    const std::string_view name(text, static_cast<std::size_t>(std::max(length, 0)));
    writeRecord(player.chords[player.chordCount], player.trackTime, firstOf(name, kMaxChord));
    if (player.chordCount >= kManyEntries) {
        player.info.hasChords = 1;
    }
    setChordCount(player, player.chordCount + 1);
}
