// Karaoke syllables: controller 31 points at characters of the four text lines that the song's
// system-exclusive messages filled.
#include <string_view>

#include "engine/globals.h"
#include "song/song.h"

namespace {

constexpr int kTextLines = 4;
constexpr std::uint8_t kNewLine = 0;
constexpr std::uint8_t kFirstLine = 127;
constexpr std::string_view kTrailing =
    " ',.;:!?-+*"; ///< characters that go with the syllable before

bool trails(char character) noexcept {
    return character != '\0' && kTrailing.find(character) != std::string_view::npos;
}

void beginLine(MIDIOUT& player) noexcept {
    stepTextLine(player);
    g_syllableText = player.textLine[player.textLineIndex];
    g_syllablePos = 0;
    appendLineBreak(player, player.trackTime);
}

void returnToFirstLine(MIDIOUT& player) noexcept {
    player.textLineIndex = kTextLines - 1;
    g_syllablePos = 0;
    appendLineBreak(player, player.trackTime);
}

void gatherSyllable(MIDIOUT& player, std::int32_t position) noexcept {
    const char* const begin = g_syllableText;
    const char* end = begin;
    for (std::int32_t left = position - g_syllablePos; left > 0 && *end != '\0'; --left) {
        ++end;
    }
    while (trails(*end)) {
        ++end;
    }
    g_syllableText = end;
    g_syllablePos = position;
    appendLyric(player, begin, static_cast<std::int32_t>(end - begin));
}

} // namespace

void stepTextLine(MIDIOUT& player) noexcept {
    player.textLineIndex = static_cast<std::int16_t>((player.textLineIndex + 1) % kTextLines);
}

void takeSyllable(MIDIOUT& player, std::uint8_t position) noexcept {
    switch (position) {
    case kNewLine:
        beginLine(player);
        return;
    case kFirstLine:
        returnToFirstLine(player);
        return;
    default:
        gatherSyllable(player, position);
        return;
    }
}

void resetSyllables() noexcept {
    g_syllableText = "";
    g_syllablePos = 0;
}
