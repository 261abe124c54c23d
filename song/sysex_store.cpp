// The store of a song's system-exclusive messages, and the karaoke text messages among them.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "engine/global_block.h"
#include "engine/globals.h"
#include "engine/midi.h"
#include "engine/output.h"
#include "song/song.h"

namespace {

constexpr std::uint8_t kKaraokeHeader[] = {0x00, 0x20, 0x24, 0x00};
constexpr std::int32_t kShortestKaraoke = 6; ///< header, type and the closing F7
constexpr char kLineFeed = '\n';
constexpr char kClosing = '\xF7';

// Types of karaoke text messages; four types fill the four text lines.
constexpr std::uint8_t kSwitchSyllables = 0;
constexpr std::uint8_t kChordName = 1;
constexpr std::uint8_t kFirstTextLine = 4;
constexpr std::uint8_t kLastTextLine = 7;
constexpr std::uint8_t kShowNextLine = 8;

/// Gives the message a place in the slot; null when it needs a block of its own that cannot be had.
std::uint8_t* placeFor(MMSYSEX& slot, std::int32_t length) noexcept {
    if (static_cast<std::size_t>(length) <= sizeof slot.message.data) {
        return slot.message.data;
    }
    const GlobalBlock block =
        obtainBlock(GMEM_FIXED | GMEM_ZEROINIT, static_cast<std::size_t>(length));
    if (!block) {
        return nullptr;
    }
    slot.ownBlock = 1;
    slot.message.block.mem = block.mem;
    slot.message.block.ptr = static_cast<std::uint8_t*>(block.address);
    slot.message.block.length = static_cast<std::int16_t>(length);
    return slot.message.block.ptr;
}

/// Fills the next slot and answers it; null when the message is not kept.
MMSYSEX* storeMessage(MIDIOUT& player, const std::uint8_t* data, std::int32_t dataLength) noexcept {
    if (g_sysexStore == 0 || player.sysexCount >= MM_MAX_SYSEX) {
        return nullptr;
    }
    MMSYSEX& slot = player.sysex[player.sysexCount];
    const std::int32_t length = dataLength + 1;
    std::uint8_t* const message = placeFor(slot, length);
    if (message == nullptr) {
        return nullptr;
    }
    message[0] = midi::kSystemExclusive;
    std::memcpy(message + 1, data, static_cast<std::size_t>(dataLength));
    if (isResetMessage(message, length)) {
        ++player.resetCount;
        slot.isReset = 1;
    }
    ++player.sysexCount;
    return &slot;
}

bool appendReference(MIDIOUT& player, std::int32_t slot, std::int32_t length) noexcept {
    return appendEvent(player, {midi::kSystemExclusive, static_cast<std::uint8_t>(slot >> 8),
                                static_cast<std::uint8_t>(slot), static_cast<std::uint8_t>(length),
                                player.trackTime});
}

bool isKaraokeText(const std::uint8_t* data, std::int32_t length) noexcept {
    return length >= kShortestKaraoke &&
           std::equal(std::begin(kKaraokeHeader), std::end(kKaraokeHeader), data);
}

void fillTextLine(MIDIOUT& player, std::uint8_t line, std::string_view text) noexcept {
    player.textLineIndex = line;
    char* const buffer = player.textLine[line];
    std::memset(buffer, 0, MM_TEXTLINE_SIZE);
    std::memcpy(buffer, text.data(), std::min<std::size_t>(text.size(), MM_TEXTLINE_SIZE - 1));
}

void showNextLine(MIDIOUT& player) noexcept {
    if (g_ccLyrics != 0) {
        return;
    }
    stepTextLine(player);
    const char* const line = player.textLine[player.textLineIndex];
    if (*line != '\0' && appendLineBreak(player, player.trackTime)) {
        appendLyric(player, line, static_cast<std::int32_t>(std::strlen(line)));
    }
}

void takeKaraokeText(MIDIOUT& player, const std::uint8_t* data, std::int32_t length) noexcept {
    if (g_karaokeSysEx == 0) {
        // From now on words and chords come in these messages alone.
        g_karaokeSysEx = 1;
        restartTextTables(player);
    }
    const std::uint8_t type = data[sizeof kKaraokeHeader];
    const char* const begin = reinterpret_cast<const char*>(data) + sizeof kKaraokeHeader + 1;
    const char* const end =
        std::find_if(begin, reinterpret_cast<const char*>(data) + length, [](char character) {
            return character == kLineFeed || character == kClosing;
        });
    const std::string_view text(begin, static_cast<std::size_t>(end - begin));
    if (type == kSwitchSyllables) {
        g_ccLyrics = 1;
    } else if (type == kChordName) {
        appendChord(player, text.data(), static_cast<std::int32_t>(text.size()));
    } else if (type >= kFirstTextLine && type <= kLastTextLine) {
        fillTextLine(player, static_cast<std::uint8_t>(type - kFirstTextLine), text);
    } else if (type == kShowNextLine) {
        showNextLine(player);
    }
}

} // namespace

bool takeSystemExclusive(MIDIOUT& player, const std::uint8_t* data, std::int32_t length) noexcept {
    const std::int32_t slotNumber = player.sysexCount;
    MMSYSEX* const slot = storeMessage(player, data, length);
    if (slot != nullptr && !appendReference(player, slotNumber, length + 1)) {
        return false;
    }
    if (isKaraokeText(data, length)) {
        if (slot != nullptr) {
            slot->isKaraokeText = 1;
        }
        takeKaraokeText(player, data, length);
    }
    return true;
}
