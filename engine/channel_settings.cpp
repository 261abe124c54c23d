// The exports that store a host's channel settings; the event output applies them.
#include <cstddef>
#include <iterator>

#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/output.h"
#include "engine/players.h"
#include "engine/shared_field.h"

namespace {

/// Stores one channel's value once no timer run is under way.
template <typename Table>
void storeWhenIdle(HMIDIOUT handle, Table table, std::int16_t channel,
                   std::int16_t value) noexcept {
    if (!midi::isChannel(channel)) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    if (waitUntilIdle()) {
        storeShared<std::int16_t>(&(player.*table)[channel], value);
    }
}

} // namespace

void CORVMO_CALL mm_SetPatch(HMIDIOUT handle, std::int16_t channel, const MMPATCH* patch) {
    if (!midi::isChannel(channel) || patch == nullptr) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    MMPATCH& stored = player.patch[channel];
    storeShared<std::int16_t>(&stored.bankMsb, patch->bankMsb);
    storeShared<std::int16_t>(&stored.bankLsb, patch->bankLsb);
    storeShared<std::int16_t>(&stored.program, patch->program);
    storeShared<std::int16_t>(&stored.keepBank, patch->keepBank);
}

void CORVMO_CALL mm_SetReplaceNotes(HMIDIOUT handle, std::int16_t channel, const MMNOTEPAIR* pairs,
                                    std::int16_t silence) {
    if (!midi::isChannel(channel) || pairs == nullptr) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    silenceIfAsked(player, channel, silence);
    for (std::size_t i = 0; i < std::size(player.replaceNotes); ++i) {
        storeShared(&player.replaceNotes[i].from, pairs[i].from);
        storeShared(&player.replaceNotes[i].to, pairs[i].to);
    }
}

void CORVMO_CALL mm_SetVolume(HMIDIOUT player, std::int16_t channel, std::int16_t value) {
    storeWhenIdle(player, &MIDIOUT::volume, channel, value);
}

void CORVMO_CALL mm_SetBalance(HMIDIOUT player, std::int16_t channel, std::int16_t value) {
    storeWhenIdle(player, &MIDIOUT::balance, channel, value);
}

void CORVMO_CALL mm_SetReverb(HMIDIOUT player, std::int16_t channel, std::int16_t value) {
    storeWhenIdle(player, &MIDIOUT::reverb, channel, value);
}

void CORVMO_CALL mm_SetChorus(HMIDIOUT player, std::int16_t channel, std::int16_t value) {
    storeWhenIdle(player, &MIDIOUT::chorus, channel, value);
}

void CORVMO_CALL mm_SetVelocity(HMIDIOUT player, std::int16_t channel, std::int16_t value) {
    storeWhenIdle(player, &MIDIOUT::velocity, channel, value);
}

void CORVMO_CALL mm_SetNoTranspose(HMIDIOUT player, std::int16_t outputChannel,
                                   std::int16_t value) {
    storeWhenIdle(player, &MIDIOUT::noTranspose, outputChannel, value);
}

void CORVMO_CALL mm_SetMute(HMIDIOUT handle, std::int16_t channel, std::int16_t value,
                            std::int16_t silence) {
    if (!midi::isChannel(channel)) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    player.mute[channel] = value;
    if (value == 1) {
        silenceIfAsked(player, channel, silence);
    }
}

void CORVMO_CALL mm_SetKeyShift(HMIDIOUT handle, std::int16_t channel, std::int16_t value,
                                std::int16_t silence) {
    if (!midi::isChannel(channel)) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    silenceIfAsked(player, channel, silence);
    player.keyShift[channel] = value;
}

void CORVMO_CALL mm_SetTranspose(HMIDIOUT handle, std::int16_t value, std::int16_t silence) {
    MIDIOUT& player = selectPlayer(handle);
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    if (silence == 1) {
        silenceAllChannels(player);
    }
    player.transpose = value;
}

void CORVMO_CALL mm_SetMasterTranspose(std::int16_t value) {
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    silenceAllChannels(MM1);
    silenceAllChannels(selectPlayer(MM2.hmo));
    g_masterTranspose = value;
}
