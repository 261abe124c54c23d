// Names of the MIDI messages that the engine reads and sends.
#pragma once

#include <cstdint>

namespace midi {

constexpr int kChannels = 16;
constexpr std::uint8_t kDrumChannel = 9;
constexpr int kMaxData = 127;

// Statuses; channel messages carry the channel in the low four bits.
constexpr std::uint8_t kNoteOff = 0x80;
constexpr std::uint8_t kNoteOn = 0x90;
constexpr std::uint8_t kPolyPressure = 0xA0;
constexpr std::uint8_t kController = 0xB0;
constexpr std::uint8_t kProgramChange = 0xC0;
constexpr std::uint8_t kChannelPressure = 0xD0;
constexpr std::uint8_t kPitchBend = 0xE0;
constexpr std::uint8_t kSystemExclusive = 0xF0;
constexpr std::uint8_t kTimeCode = 0xF1;
constexpr std::uint8_t kSongPosition = 0xF2;
constexpr std::uint8_t kSongSelect = 0xF3;
constexpr std::uint8_t kTuneRequest = 0xF6;
constexpr std::uint8_t kEndOfExclusive = 0xF7;
constexpr std::uint8_t kTimingClock = 0xF8;
constexpr std::uint8_t kStart = 0xFA;
constexpr std::uint8_t kContinue = 0xFB;
constexpr std::uint8_t kStop = 0xFC;
constexpr std::uint8_t kActiveSensing = 0xFE;
constexpr std::uint8_t kMetaEvent = 0xFF;

constexpr std::uint8_t kStatusBit = 0x80;
constexpr std::uint8_t kKindMask = 0xF0;
constexpr std::uint8_t kChannelMask = 0x0F;

// Controllers.
constexpr std::uint8_t kBankMsb = 0;
constexpr std::uint8_t kModulation = 1;
constexpr std::uint8_t kBreath = 2;
constexpr std::uint8_t kFoot = 4;
constexpr std::uint8_t kPortamentoTime = 5;
constexpr std::uint8_t kDataEntry = 6;
constexpr std::uint8_t kVolume = 7;
constexpr std::uint8_t kBalance = 8;
constexpr std::uint8_t kPan = 10;
constexpr std::uint8_t kExpression = 11;
constexpr std::uint8_t kEffect1 = 12;
constexpr std::uint8_t kEffect2 = 13;
constexpr std::uint8_t kGeneral1 = 16;
constexpr std::uint8_t kGeneral4 = 19;
constexpr std::uint8_t kSyllable = 31; ///< carries karaoke syllables in some songs
constexpr std::uint8_t kBankLsb = 32;
constexpr std::uint8_t kFine = 32; ///< distance from a controller to its fine half
constexpr std::uint8_t kSustain = 64;
constexpr std::uint8_t kSostenuto = 66;
constexpr std::uint8_t kLegato = 68;
constexpr std::uint8_t kHold2 = 69;
constexpr std::uint8_t kPortamentoControl = 84;
constexpr std::uint8_t kReverb = 91;
constexpr std::uint8_t kTremolo = 92;
constexpr std::uint8_t kChorus = 93;
constexpr std::uint8_t kDetune = 94;
constexpr std::uint8_t kPhaser = 95;
constexpr std::uint8_t kNonRegisteredLow = 98;
constexpr std::uint8_t kNonRegisteredHigh = 99;
constexpr std::uint8_t kRegisteredLow = 100;
constexpr std::uint8_t kRegisteredHigh = 101;
constexpr std::uint8_t kAllSoundOff = 120;
constexpr std::uint8_t kResetAllControllers = 121;
constexpr std::uint8_t kAllNotesOff = 123;

// Types of meta events; tempo and time signature are also kinds of records in the event list.
constexpr std::uint8_t kText = 0x01;
constexpr std::uint8_t kTrackName = 0x03;
constexpr std::uint8_t kLyric = 0x05;
constexpr std::uint8_t kMarker = 0x06;
constexpr std::uint8_t kTempo = 0x51;
constexpr std::uint8_t kTimeSignature = 0x58;
constexpr std::uint8_t kKeySignature = 0x59;

/// A value from the host, made fit for a data byte.
constexpr std::uint8_t dataByte(int value) noexcept {
    return static_cast<std::uint8_t>(value < 0 ? 0 : value > kMaxData ? kMaxData : value);
}

constexpr bool isChannel(int channel) noexcept {
    return channel >= 0 && channel < kChannels;
}

} // namespace midi
