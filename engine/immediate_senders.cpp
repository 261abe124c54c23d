// The exports that send one controller or program on a channel's route and store nothing.
#include "corvmo32.h"
#include "engine/output.h"
#include "engine/players.h"

namespace {

std::uint32_t sendController(HMIDIOUT handle, std::int16_t channel, std::uint8_t controller,
                             int value) noexcept {
    if (!midi::isChannel(channel)) {
        return MMSYSERR_INVALPARAM;
    }
    return sendForChannel(selectPlayer(handle), channel, midi::kController, controller,
                          midi::dataByte(value));
}

} // namespace

std::uint32_t CORVMO_CALL mm_SetMIDIPatch(HMIDIOUT handle, std::int16_t channel,
                                          const std::int16_t* words) {
    if (!midi::isChannel(channel) || words == nullptr) {
        return MMSYSERR_INVALPARAM;
    }
    sendController(handle, channel, midi::kBankMsb, words[0]);
    sendController(handle, channel, midi::kBankLsb, words[1]);
    return sendForChannel(selectPlayer(handle), channel, midi::kProgramChange,
                          midi::dataByte(words[2]), 0);
}

std::uint32_t CORVMO_CALL mm_SetMIDIVolume(HMIDIOUT player, std::int16_t channel,
                                           std::int16_t value) {
    return sendController(player, channel, midi::kVolume, value);
}

std::uint32_t CORVMO_CALL mm_SetMIDIBalance(HMIDIOUT player, std::int16_t channel,
                                            std::int16_t value) {
    return sendController(player, channel, midi::kPan, value);
}

std::uint32_t CORVMO_CALL mm_SetMIDIReverb(HMIDIOUT player, std::int16_t channel,
                                           std::int16_t value) {
    return sendController(player, channel, midi::kReverb, value);
}

std::uint32_t CORVMO_CALL mm_SetMIDIChorus(HMIDIOUT player, std::int16_t channel,
                                           std::int16_t value) {
    return sendController(player, channel, midi::kChorus, value);
}
