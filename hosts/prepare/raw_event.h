// One event of a track as its bytes stand: where it begins and ends, not what it means.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "prepare/byte_view.h"

namespace host {

constexpr std::uint8_t kStatusBit = 0x80;
constexpr std::uint8_t kNoteOff = 0x80;
constexpr std::uint8_t kNoteOn = 0x90;
constexpr std::uint8_t kFirstSystemStatus = 0xF0;
constexpr std::uint8_t kSystemExclusive = 0xF0;
constexpr std::uint8_t kEndOfExclusive = 0xF7; ///< as a status: a part of a message, or an escape
constexpr std::uint8_t kFirstRealTime = 0xF8;
constexpr std::uint8_t kMetaEvent = 0xFF;
constexpr std::uint8_t kEndOfTrack = 0x2F;
constexpr std::uint8_t kTempo = 0x51;
constexpr std::uint8_t kTimeSignature = 0x58;
constexpr std::uint8_t kKindMask = 0xF0;
constexpr std::uint8_t kChannelMask = 0x0F;
constexpr int kNoRunningStatus = -1;
/// Ticks. Next to damage a longer delay is rather made of bytes that do not belong to it.
constexpr std::uint32_t kLongestLikelyDelay = 4095;

/// How closely an event is looked at.
enum class Rigour {
    AsPlayed, ///< whatever the engine reads without failing
    Strict    ///< what a sound file may hold; tells events from other bytes
};

enum class Reading {
    Event,
    CutOff,    ///< begins well and runs past the end
    Unreadable ///< no event
};

struct RawEvent {
    std::uint32_t delta = 0;
    std::uint8_t status = 0;
    std::uint8_t metaType = 0; ///< of a meta event
    std::size_t statusPosition =
        0; ///< of the status, or of the first data byte where there is none
    std::size_t dataBegin = 0;
    std::size_t dataEnd = 0; ///< also where the next event begins
    std::size_t lengthBytes =
        0;                     ///< of the length field of a meta event or system-exclusive message
    bool lengthMended = false; ///< the message was one byte longer than its length field says

    bool isEndOfTrack() const {
        return status == kMetaEvent && metaType == kEndOfTrack;
    }
};

/// Reads the event at a position.
/// @param end      of the track; nothing behind it is looked at
/// @param running  the status in force, kNoRunningStatus = none
/// @param event    filled in as far as it could be read; delta 0 when that could not
Reading readRawEvent(const ByteView& bytes, std::size_t position, std::size_t end, int running,
                     Rigour rigour, RawEvent& event);

/// The status in force behind an event.
int runningAfter(std::uint8_t status, int running, Rigour rigour);

/// Whether a status is one that no message has.
bool isUndefined(std::uint8_t status);

/// Looks for a place where events can be read again: a row of them, the first with a status of its own.
/// @return the position of its delta time; nothing = there is none before end
std::optional<std::size_t> findEvents(const ByteView& bytes, std::size_t from, std::size_t end);

} // namespace host
