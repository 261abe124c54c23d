// How a short MIDI message lies in a 32-bit word: status, first and second data byte from the
// lowest bits up.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

constexpr unsigned kMidiChannels = 16;
constexpr std::uint8_t kControlChange = 0xB0;
constexpr std::uint8_t kSustainPedal = 64;
constexpr std::uint8_t kSostenutoPedal = 66;
constexpr std::uint8_t kAllNotesOff = 123;

constexpr std::uint8_t statusOf(std::uint32_t message) {
    return static_cast<std::uint8_t>(message);
}
constexpr std::uint8_t firstDataOf(std::uint32_t message) {
    return (message >> 8) & 0x7F;
}
constexpr std::uint8_t secondDataOf(std::uint32_t message) {
    return (message >> 16) & 0x7F;
}
constexpr std::uint32_t controlChange(unsigned channel, std::uint8_t controller,
                                      std::uint8_t value) {
    return (kControlChange | channel) | std::uint32_t{controller} << 8 | std::uint32_t{value} << 16;
}
/// The bytes as they lie in the word, unchanged; shortMessageLength says how many count.
constexpr std::array<std::uint8_t, 3> bytesOf(std::uint32_t message) {
    return {statusOf(message), static_cast<std::uint8_t>(message >> 8),
            static_cast<std::uint8_t>(message >> 16)};
}

/// Bytes of the message by its status; 0 = no status byte, or one that begins or ends a long
/// message.
constexpr std::uint32_t shortMessageLength(std::uint8_t status) {
    constexpr std::array<std::uint8_t, 7> kByKind = {3, 3, 3, 3, 2, 2, 3}; // 8x to Ex
    constexpr std::array<std::uint8_t, 16> kSystem = {0, 2, 3, 2, 1, 1, 1, 0,
                                                      1, 1, 1, 1, 1, 1, 1, 1};
    constexpr std::uint8_t kFirstStatus = 0x80;
    constexpr std::uint8_t kFirstSystem = 0xF0;
    if (status < kFirstStatus) {
        return 0;
    }
    return status >= kFirstSystem
               ? kSystem[std::size_t{status} - kFirstSystem]
               : kByKind[std::size_t{status} / kMidiChannels - kFirstStatus / kMidiChannels];
}
