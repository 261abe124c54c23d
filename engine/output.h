// What leaves the engine: short messages along a song channel's route, long messages through a player.
#pragma once

#include <cstdint>

#include "corvmo32_records.h"
#include "engine/midi.h"

/// Where a song channel's messages go.
struct Route {
    HMIDIOUT device;
    std::uint8_t channel; ///< 0 to 15
};

/// The route of a song channel (0 to 15). Any thread.
Route routeOf(const MIDIOUT& player, int channel) noexcept;

/// Sets one half of a song channel's route. Any thread.
void setRouteDevice(MIDIOUT& player, int channel, HMIDIOUT device) noexcept;
void setRouteChannel(MIDIOUT& player, int channel, std::uint8_t outputChannel) noexcept;

/// Every song channel on one output, on the MIDI channel of its own number.
void setDefaultRoutes(MIDIOUT& player, HMIDIOUT device) noexcept;

/// Sends a channel message on a route and answers the system's result code.
MMRESULT sendOn(const Route& route, std::uint8_t kind, std::uint8_t data1,
                std::uint8_t data2) noexcept;

/// Sends a channel message along a song channel's route and answers the system's result code.
MMRESULT sendForChannel(const MIDIOUT& player, int channel, std::uint8_t kind, std::uint8_t data1,
                        std::uint8_t data2) noexcept;

/// Sends one controller on all 16 routes, song channel 0 first.
void sendOnAllChannels(const MIDIOUT& player, std::uint8_t controller) noexcept;

/// All Sound Off on a song channel's route, when the host's switch is 1.
void silenceIfAsked(const MIDIOUT& player, int channel, std::int16_t silence) noexcept;

/// All Sound Off on all 16 routes.
void silenceAllChannels(const MIDIOUT& player) noexcept;

/// Sends a system-exclusive message on the player's own output and returns when it has been taken.
/// Guards: the player's long messages. Nothing goes out for a length outside 1..4096.
void sendLongMessage(MIDIOUT& player, const std::uint8_t* message, int length) noexcept;

/// One of the three reset messages.
struct ResetMessage {
    const std::uint8_t* bytes;
    int length;
};

/// The reset message of an instrument standard (MMMODE_...).
ResetMessage resetMessageOf(std::uint32_t mode) noexcept;

/// True for GM System On (to any device number 7F or 00), GS Reset and XG System On.
bool isResetMessage(const std::uint8_t* message, int length) noexcept;

/// Sends the init text's messages on the player's output.
void SendInitSysEx(MIDIOUT& player) noexcept;
