// Names for what a host reads in the engine's event list.
#pragma once

#include <cstdint>

#include "corvmo32.h"

namespace host {

inline constexpr std::uint8_t kTempoEvent = 0x51;
inline constexpr std::uint8_t kTimeSignatureEvent = 0x58;
inline constexpr std::uint32_t kDefaultTempo = 500000; ///< microseconds per quarter note

inline constexpr int kChannels = 16;
inline constexpr int kDrumChannel = 9;

enum class ChannelMessage : std::uint8_t {
    NoteOff = 0x80,
    NoteOn = 0x90,
    Controller = 0xB0,
    ProgramChange = 0xC0,
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

} // namespace host
