// Events of a song in words.
#include "karaoke/event_text.h"

#include <cstdio>

#include "shared/gm_names.h"
#include "shared/midi_names.h"
#include "shared/song_events.h"
#include "shared/song_facts.h"

namespace karaoke {

namespace {

using host::ChannelMessage;

constexpr std::uint8_t kFirstChannelMessage = 0x80;
constexpr std::uint8_t kFirstSystemMessage = 0xF0;
constexpr int kBendCentre = 0x2000;
constexpr int kBitsOfData = 7;

std::string hexBytes(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += (text.empty() ? "" : " ") + std::string(digits);
    }
    return text;
}

std::string tempoText(std::uint32_t tempo) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f bpm (%u us)", host::beatsPerMinute(tempo), tempo);
    return text;
}

/// Notes of the drum channel are instruments, not pitches.
std::string noteText(const MMEVENT& event) {
    const std::string number = std::to_string(event.byte1);
    return host::channelOf(event) == host::kDrumChannel
               ? "drum " + number
               : host::noteName(event.byte1) + " (" + number + ")";
}

std::string controllerText(const MMEVENT& event) {
    const std::string_view name = host::controllerName(event.byte1);
    return std::to_string(event.byte1) + (name.empty() ? "" : " (" + std::string(name) + ")") +
           " = " + std::to_string(event.byte2);
}

std::string programText(const MMEVENT& event) {
    const bool drums = host::channelOf(event) == host::kDrumChannel;
    const std::string number = std::to_string(event.byte1 + 1);
    return drums ? number : number + " " + std::string(host::instrumentName(event.byte1));
}

EventText describeChannelMessage(const MMEVENT& event) {
    const std::string second = std::to_string(event.byte2);
    switch (static_cast<ChannelMessage>(event.kind & 0xF0)) {
    case ChannelMessage::NoteOff:
        return {"note off", noteText(event) + " velocity " + second};
    case ChannelMessage::NoteOn:
        return {host::isNoteStart(event) ? "note on" : "note off",
                noteText(event) + " velocity " + second};
    case ChannelMessage::KeyPressure:
        return {"key pressure", noteText(event) + " = " + second};
    case ChannelMessage::Controller:
        return {"controller", controllerText(event)};
    case ChannelMessage::ProgramChange:
        return {"program", programText(event)};
    case ChannelMessage::ChannelPressure:
        return {"pressure", std::to_string(event.byte1)};
    case ChannelMessage::PitchBend:
        return {"pitch bend",
                std::to_string((event.byte2 << kBitsOfData | event.byte1) - kBendCentre)};
    }
    return {};
}

std::string exclusiveText(const MMEVENT& event, const host::RawSong& song) {
    const std::size_t slot = host::exclusiveSlotOf(event);
    return slot < song.exclusives.size() ? hexBytes(song.exclusives[slot]) : "";
}

} // namespace

bool hasChannel(const MMEVENT& event) {
    return event.kind >= kFirstChannelMessage && event.kind < kFirstSystemMessage;
}

EventText describeEvent(const MMEVENT& event, const host::RawSong& song) {
    if (hasChannel(event)) {
        return describeChannelMessage(event);
    }
    switch (event.kind) {
    case host::kTempoEvent:
        return {"tempo", tempoText(host::tempoOf(event))};
    case host::kTimeSignatureEvent:
        return {"time signature", std::to_string(event.byte1) + "/" + std::to_string(event.byte2)};
    case host::kExclusiveEvent:
        return {"exclusive", exclusiveText(event, song)};
    default:
        return {"system", hexBytes({event.kind, event.byte1, event.byte2})};
    }
}

} // namespace karaoke
