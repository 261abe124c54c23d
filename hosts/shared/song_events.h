// Names for what a host reads in the engine's event list.
#pragma once

#include <cstddef>
#include <cstdint>

#include "corvmo32.h"

namespace host {

inline constexpr std::uint8_t kTempoEvent = 0x51;
inline constexpr std::uint8_t kTimeSignatureEvent = 0x58;
inline constexpr std::uint8_t kExclusiveEvent = 0xF0;
inline constexpr std::uint32_t kDefaultTempo = 500000; ///< microseconds per quarter note

inline constexpr int kChannels = 16;
inline constexpr int kDrumChannel = 9;

enum class ChannelMessage : std::uint8_t {
    NoteOff = 0x80,
    NoteOn = 0x90,
    KeyPressure = 0xA0,
    Controller = 0xB0,
    ProgramChange = 0xC0,
    ChannelPressure = 0xD0,
    PitchBend = 0xE0,
};

/// Controllers that a host looks for.
enum class Controller : std::uint8_t { BankMsb = 0, Volume = 7, BankLsb = 32 };

inline bool isChannelMessage(const MMEVENT& event, ChannelMessage kind) {
    return (event.kind & 0xF0) == static_cast<std::uint8_t>(kind);
}

inline bool isController(const MMEVENT& event, Controller controller) {
    return isChannelMessage(event, ChannelMessage::Controller) &&
           event.byte1 == static_cast<std::uint8_t>(controller);
}

/// A note-on that sounds.
inline bool isNoteStart(const MMEVENT& event) {
    return isChannelMessage(event, ChannelMessage::NoteOn) && event.byte2 != 0;
}

inline int channelOf(const MMEVENT& event) {
    return event.kind & 0x0F;
}

inline std::uint32_t tempoOf(const MMEVENT& event) {
    return static_cast<std::uint32_t>(event.byte1 << 16 | event.byte2 << 8 | event.byte3);
}

/// Slot of a system-exclusive event's message.
inline std::size_t exclusiveSlotOf(const MMEVENT& event) {
    return static_cast<std::size_t>(event.byte1 << 8 | event.byte2);
}

} // namespace host
