// Long messages: one at a time through a player's buffer and header; the three reset messages.
#include <algorithm>
#include <cstring>
#include <span>

#include "corvmo32.h"
#include "engine/guards.h"
#include "engine/output.h"
#include "engine/players.h"
#include "platform/system.h"

namespace {

constexpr std::uint8_t kGmSystemOn[] = {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};
constexpr std::uint8_t kGsReset[] = {0xF0, 0x41, 0x10, 0x42, 0x12, 0x40,
                                     0x00, 0x7F, 0x00, 0x41, 0xF7};
constexpr std::uint8_t kXgSystemOn[] = {0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};
constexpr int kGmDeviceByte = 2;

bool hasStorage(const MIDIOUT& player) noexcept {
    return player.longBuffer != nullptr && player.longHeader != nullptr;
}

void fillHeader(const MIDIOUT& player, int length) noexcept {
    MIDIHDR& header = *player.longHeader;
    header.dwFlags = 0;
    header.dwBytesRecorded = static_cast<DWORD>(length);
    header.dwUser = 0;
    header.dwBufferLength = static_cast<DWORD>(length);
    header.lpData = reinterpret_cast<char*>(player.longBuffer);
}

void waitUntilTaken(const MIDIOUT& player) noexcept {
    while (midiOutUnprepareHeader(player.hmo, player.longHeader, sizeof(MIDIHDR)) ==
           MIDIERR_STILLPLAYING) {
        timeGetTime();
    }
}

bool equals(std::span<const std::uint8_t> expected, const std::uint8_t* message) noexcept {
    return std::equal(expected.begin(), expected.end(), message);
}

bool isGmSystemOn(const std::uint8_t* message) noexcept {
    const bool anyDevice = message[kGmDeviceByte] == 0x7F || message[kGmDeviceByte] == 0x00;
    return anyDevice && std::equal(message, message + kGmDeviceByte, kGmSystemOn) &&
           std::equal(message + kGmDeviceByte + 1, message + sizeof kGmSystemOn,
                      kGmSystemOn + kGmDeviceByte + 1);
}

} // namespace

void sendLongMessage(MIDIOUT& player, const std::uint8_t* message, int length) noexcept {
    if (message == nullptr || length < 1 || length > MM_LONG_MESSAGE_SIZE) {
        return;
    }
    const LongMessageGuard guard(player);
    if (!engineRunning() || !hasStorage(player)) {
        return;
    }
    std::memcpy(player.longBuffer, message, static_cast<std::size_t>(length));
    fillHeader(player, length);
    if (midiOutPrepareHeader(player.hmo, player.longHeader, sizeof(MIDIHDR)) != MMSYSERR_NOERROR) {
        return;
    }
    midiOutLongMsg(player.hmo, player.longHeader, sizeof(MIDIHDR));
    waitUntilTaken(player);
}

void CORVMO_CALL mm_LongMessage(HMIDIOUT handle, const std::uint8_t* message, std::int16_t length) {
    sendLongMessage(selectPlayer(handle), message, length);
}

ResetMessage resetMessageOf(std::uint32_t mode) noexcept {
    switch (mode) {
    case MMMODE_GS:
        return {kGsReset, sizeof kGsReset};
    case MMMODE_XG:
        return {kXgSystemOn, sizeof kXgSystemOn};
    default:
        return {kGmSystemOn, sizeof kGmSystemOn};
    }
}

bool isResetMessage(const std::uint8_t* message, int length) noexcept {
    switch (length) {
    case sizeof kGmSystemOn:
        return isGmSystemOn(message);
    case sizeof kXgSystemOn:
        return equals(kXgSystemOn, message);
    case sizeof kGsReset:
        return equals(kGsReset, message);
    default:
        return false;
    }
}
