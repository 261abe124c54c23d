// Short messages: routes, sweeps over the 16 channels, and the exports that send them.
#include "engine/output.h"

#include "corvmo32.h"
#include "engine/players.h"
#include "engine/shared_field.h"
#include "platform/system.h"

Route routeOf(const MIDIOUT& player, int channel) noexcept {
    const auto outputChannel = loadShared<std::uint8_t>(&player.channelOut[channel]);
    // A host may write the table in place; a stray bit must not change the kind of a message.
    return {loadShared<HMIDIOUT>(&player.channelDevice[channel]),
            static_cast<std::uint8_t>(outputChannel & midi::kChannelMask)};
}

void setRouteDevice(MIDIOUT& player, int channel, HMIDIOUT device) noexcept {
    storeShared<HMIDIOUT>(&player.channelDevice[channel], device);
}

void setRouteChannel(MIDIOUT& player, int channel, std::uint8_t outputChannel) noexcept {
    storeShared<std::uint8_t>(&player.channelOut[channel], outputChannel);
}

void setDefaultRoutes(MIDIOUT& player, HMIDIOUT device) noexcept {
    for (int channel = 0; channel < midi::kChannels; ++channel) {
        setRouteDevice(player, channel, device);
        setRouteChannel(player, channel, static_cast<std::uint8_t>(channel));
    }
}

MMRESULT sendOn(const Route& route, std::uint8_t kind, std::uint8_t data1,
                std::uint8_t data2) noexcept {
    const DWORD status = kind | route.channel;
    return midiOutShortMsg(route.device, status | static_cast<DWORD>(data1) << 8 |
                                             static_cast<DWORD>(data2) << 16);
}

MMRESULT sendForChannel(const MIDIOUT& player, int channel, std::uint8_t kind, std::uint8_t data1,
                        std::uint8_t data2) noexcept {
    return sendOn(routeOf(player, channel), kind, data1, data2);
}

void sendOnAllChannels(const MIDIOUT& player, std::uint8_t controller) noexcept {
    for (int channel = 0; channel < midi::kChannels; ++channel) {
        sendForChannel(player, channel, midi::kController, controller, 0);
    }
}

void silenceIfAsked(const MIDIOUT& player, int channel, std::int16_t silence) noexcept {
    if (silence == 1) {
        sendForChannel(player, channel, midi::kController, midi::kAllSoundOff, 0);
    }
}

void silenceAllChannels(const MIDIOUT& player) noexcept {
    sendOnAllChannels(player, midi::kAllSoundOff);
}

std::uint32_t CORVMO_CALL mm_ShortMessage(HMIDIOUT device, std::uint32_t message) {
    return midiOutShortMsg(device, message);
}

void CORVMO_CALL mm_Reset(HMIDIOUT handle) {
    MIDIOUT& player = selectPlayer(handle);
    sendOnAllChannels(player, midi::kSustain);
    sendOnAllChannels(player, midi::kSostenuto);
    sendOnAllChannels(player, midi::kResetAllControllers);
    const ResetMessage reset = resetMessageOf(player.mode);
    sendLongMessage(player, reset.bytes, reset.length);
}
