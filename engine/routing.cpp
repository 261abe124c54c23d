// The exports that change and hand out a player's routes.
#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/output.h"
#include "engine/players.h"

void CORVMO_CALL mm_SetChannelDevice(HMIDIOUT handle, std::int16_t channel,
                                     std::int16_t deviceIndex, std::int16_t silence) {
    if (!midi::isChannel(channel) || deviceIndex < 0 || deviceIndex >= kMaxDevices) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    silenceIfAsked(player, channel, silence);
    setRouteDevice(player, channel, g_devices[deviceIndex]);
}

void CORVMO_CALL mm_SetChannelOut(HMIDIOUT handle, std::int16_t channel, std::int16_t outputChannel,
                                  std::int16_t silence) {
    if (!midi::isChannel(channel) || !midi::isChannel(outputChannel)) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    silenceIfAsked(player, channel, silence);
    setRouteChannel(player, channel, static_cast<std::uint8_t>(outputChannel));
}

std::uint8_t* CORVMO_CALL mm_GetChannelOut(HMIDIOUT handle) {
    return selectPlayer(handle).channelOut;
}

HMIDIOUT* CORVMO_CALL mm_GetChannelDevice(HMIDIOUT handle) {
    // The packed record leaves the table unaligned; the host reads it as it stands.
    void* table = &selectPlayer(handle).channelDevice;
    return static_cast<HMIDIOUT*>(table);
}
