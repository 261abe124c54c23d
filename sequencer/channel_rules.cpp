// How controllers and program changes of a song reach a device: the mix controller rule, bank select
// storing and the program change rule. Playing, the channel map and the first-note walk share them.
#include <algorithm>

#include "engine/midi.h"
#include "engine/notifications.h"
#include "engine/output.h"
#include "sequencer/sequencer.h"

namespace {

constexpr std::uint8_t kPanCentre = 64;

/// A mix controller with the setting that moves it.
struct MixController {
    std::uint8_t controller;
    std::int16_t (MIDIOUT::*offsets)[midi::kChannels];
    int lowest; ///< of the sum with an offset
    UINT notification;
};

constexpr MixController kMixControllers[] = {
    {midi::kVolume, &MIDIOUT::volume, 0, MMN_VOLUME},
    {midi::kPan, &MIDIOUT::balance, 1, MMN_PAN},
    {midi::kReverb, &MIDIOUT::reverb, 0, MMN_REVERB},
    {midi::kChorus, &MIDIOUT::chorus, 0, MMN_CHORUS},
};

const MixController* mixController(std::uint8_t controller) noexcept {
    const auto* const found = std::find_if(
        std::begin(kMixControllers), std::end(kMixControllers),
        [controller](const MixController& mix) { return mix.controller == controller; });
    return found == std::end(kMixControllers) ? nullptr : found;
}

bool overridesProgram(const MMPATCH& patch) noexcept {
    return loadShared<std::int16_t>(&patch.program) != MMPATCH_NO_OVERRIDE;
}

std::uint32_t packProgram(int program, int bankMsb, int bankLsb) noexcept {
    return static_cast<std::uint32_t>(program << 16 | bankLsb << 8 | bankMsb);
}

} // namespace

bool isMixController(std::uint8_t controller) noexcept {
    return mixController(controller) != nullptr;
}

void sendMixController(const MIDIOUT& player, int channel, std::uint8_t controller,
                       std::uint8_t value) noexcept {
    const MixController& mix = *mixController(controller);
    const std::uint8_t base = controller == midi::kPan && value == 0 ? kPanCentre : value;
    const int offset = loadShared<std::int16_t>(&(player.*mix.offsets)[channel]);
    const int sum = offset == 0 ? base : std::clamp(base + offset, mix.lowest, midi::kMaxData);
    sendForChannel(player, channel, midi::kController, controller, static_cast<std::uint8_t>(sum));
    if (wants(player, MMOPT_CHANNELS)) {
        post(mix.notification, static_cast<WPARAM>(channel), value);
    }
}

void storeBankSelect(MIDIOUT& player, int channel, std::uint8_t controller,
                     std::uint8_t value) noexcept {
    MMPATCH& patch = player.patch[channel];
    const bool hostsBank =
        overridesProgram(patch) || loadShared<std::int16_t>(&patch.keepBank) != 0;
    MMPATCH& bank = hostsBank ? player.songPatch[channel] : patch;
    storeShared<std::int16_t>(controller == midi::kBankMsb ? &bank.bankMsb : &bank.bankLsb, value);
}

void takeController(MIDIOUT& player, const MMEVENT& event) noexcept {
    const int channel = event.kind & midi::kChannelMask;
    if (event.byte1 == midi::kBankMsb || event.byte1 == midi::kBankLsb) {
        storeBankSelect(player, channel, event.byte1, event.byte2);
    } else if (isMixController(event.byte1)) {
        sendMixController(player, channel, event.byte1, event.byte2);
    } else {
        sendUnchanged(player, event);
    }
}

void sendProgramChange(const MIDIOUT& player, int channel, std::uint8_t program) noexcept {
    const MMPATCH& patch = player.patch[channel];
    const MMPATCH& song = player.songPatch[channel];
    const bool overridden = overridesProgram(patch);
    const std::uint8_t bankMsb = midi::dataByte(loadShared<std::int16_t>(&patch.bankMsb));
    const std::uint8_t bankLsb = midi::dataByte(loadShared<std::int16_t>(&patch.bankLsb));
    const std::uint8_t sent =
        overridden ? midi::dataByte(loadShared<std::int16_t>(&patch.program)) : program;
    sendForChannel(player, channel, midi::kController, midi::kBankMsb, bankMsb);
    sendForChannel(player, channel, midi::kController, midi::kBankLsb, bankLsb);
    sendForChannel(player, channel, midi::kProgramChange, sent, 0);
    if (!wants(player, MMOPT_CHANNELS)) {
        return;
    }
    const auto wParam = static_cast<WPARAM>(channel);
    if (!overridden) {
        post(MMN_PROGRAM, wParam, packProgram(program, bankMsb, bankLsb));
        return;
    }
    post(MMN_PROGRAM, wParam,
         packProgram(program, loadShared<std::int16_t>(&song.bankMsb),
                     loadShared<std::int16_t>(&song.bankLsb)));
    post(MMN_PATCH, wParam, packProgram(sent, bankMsb, bankLsb));
}

void sendUnchanged(const MIDIOUT& player, const MMEVENT& event) noexcept {
    sendForChannel(player, event.kind & midi::kChannelMask, event.kind & midi::kKindMask,
                   event.byte1, event.byte2);
}

void allNotesOff(const MIDIOUT& player) noexcept {
    sendOnAllChannels(player, midi::kAllNotesOff);
}
