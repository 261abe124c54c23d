// Sending the channel map: resets the controllers, then sends what the map recorded, channel by channel, in
// one fixed order.
#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/midi.h"
#include "engine/output.h"
#include "engine/players.h"
#include "sequencer/map_parameters.h"
#include "sequencer/seek.h"
#include "sequencer/sequencer.h"

namespace {

/// A controller that is sent from its slot.
struct SlotController {
    std::uint8_t slot;
    std::uint8_t controller;
    bool withFineHalf; ///< the next slot follows as controller + 32, when it is recorded
};

constexpr std::uint8_t kMixOrder[][2] = {{MMSLOT_VOLUME, midi::kVolume},
                                         {MMSLOT_REVERB, midi::kReverb},
                                         {MMSLOT_CHORUS, midi::kChorus},
                                         {MMSLOT_PAN, midi::kPan}};

constexpr SlotController kBeforeBend[] = {
    {MMSLOT_BALANCE, midi::kBalance, true},       {MMSLOT_EXPRESSION, midi::kExpression, true},
    {MMSLOT_MODULATION, midi::kModulation, true}, {MMSLOT_TREMOLO, midi::kTremolo, false},
    {MMSLOT_DETUNE, midi::kDetune, false},        {MMSLOT_PHASER, midi::kPhaser, false}};

constexpr SlotController kAfterBend[] = {
    {MMSLOT_BREATH, midi::kBreath, true},
    {MMSLOT_FOOT, midi::kFoot, true},
    {MMSLOT_PORTAMENTO_TIME, midi::kPortamentoTime, true},
    {MMSLOT_EFFECT1, midi::kEffect1, true},
    {MMSLOT_EFFECT2, midi::kEffect2, true},
    {MMSLOT_GENERAL1, midi::kGeneral1, false},
    {MMSLOT_GENERAL1 + 1, midi::kGeneral1 + 1, false},
    {MMSLOT_GENERAL1 + 2, midi::kGeneral1 + 2, false},
    {MMSLOT_GENERAL1 + 3, midi::kGeneral4, false},
    {MMSLOT_SUSTAIN, midi::kSustain, false},
    {MMSLOT_SUSTAIN + 1, midi::kSustain + 1, false},
    {MMSLOT_SUSTAIN + 2, midi::kSostenuto, false},
    {MMSLOT_SUSTAIN + 3, midi::kSostenuto + 1, false},
    {MMSLOT_SUSTAIN + 4, midi::kLegato, false},
    {MMSLOT_SUSTAIN + 5, midi::kHold2, false},
    {MMSLOT_PORTAMENTO_CONTROL, midi::kPortamentoControl, false}};

/// Sends one song channel's part of a map.
class ChannelSender {
public:
    ChannelSender(MIDIOUT& player, int channel) noexcept
        : m_player(player), m_channel(channel), m_slot(player.map.channel[channel].slot),
          m_route(routeOf(player, channel)) {}

    void send() noexcept {
        sendProgram();
        sendMix();
        sendControllers(kBeforeBend);
        sendBendAndPressure();
        sendControllers(kAfterBend);
        sendParameters(kNonRegisteredParameters, midi::kNonRegisteredHigh, midi::kNonRegisteredLow,
                       kNonRegisteredHighByte);
        sendParameters(kRegisteredParameters, midi::kRegisteredHigh, midi::kRegisteredLow,
                       kRegisteredHighByte);
    }

private:
    bool recorded(int slot) const noexcept {
        return m_slot[slot] != MMMAP_NONE8;
    }

    void controller(std::uint8_t number, std::uint8_t value) const noexcept {
        sendOn(m_route, midi::kController, number, value);
    }

    void sendProgram() noexcept {
        if (recorded(MMSLOT_BANK_MSB)) {
            storeBankSelect(m_player, m_channel, midi::kBankMsb, m_slot[MMSLOT_BANK_MSB]);
        }
        if (recorded(MMSLOT_BANK_LSB)) {
            storeBankSelect(m_player, m_channel, midi::kBankLsb, m_slot[MMSLOT_BANK_LSB]);
        }
        if (recorded(MMSLOT_PROGRAM)) {
            sendProgramChange(m_player, m_channel, m_slot[MMSLOT_PROGRAM]);
        }
    }

    void sendMix() const noexcept {
        for (const auto& [slot, number] : kMixOrder) {
            if (recorded(slot)) {
                sendMixController(m_player, m_channel, number, m_slot[slot]);
            }
        }
    }

    template <std::size_t Count>
    void sendControllers(const SlotController (&controllers)[Count]) const noexcept {
        for (const SlotController& entry : controllers) {
            if (!recorded(entry.slot)) {
                continue;
            }
            controller(entry.controller, m_slot[entry.slot]);
            if (entry.withFineHalf && recorded(entry.slot + 1)) {
                controller(static_cast<std::uint8_t>(entry.controller + midi::kFine),
                           m_slot[entry.slot + 1]);
            }
        }
    }

    void sendBendAndPressure() const noexcept {
        if (recorded(MMSLOT_BEND_LOW)) {
            sendOn(m_route, midi::kPitchBend, m_slot[MMSLOT_BEND_LOW], m_slot[MMSLOT_BEND_HIGH]);
        }
        if (recorded(MMSLOT_CHANNEL_PRESSURE)) {
            sendOn(m_route, midi::kChannelPressure, m_slot[MMSLOT_CHANNEL_PRESSURE], 0);
        }
    }

    template <std::size_t Count>
    void sendParameters(const MapParameter (&parameters)[Count], std::uint8_t highController,
                        std::uint8_t lowController, std::uint8_t highByte) const noexcept {
        bool highSent = false;
        for (const MapParameter& parameter : parameters) {
            if (!recorded(parameter.slot)) {
                continue;
            }
            if (!highSent) {
                controller(highController, highByte);
                highSent = true;
            }
            controller(lowController, parameter.low);
            controller(midi::kDataEntry, m_slot[parameter.slot]);
        }
    }

    MIDIOUT& m_player;
    int m_channel;
    const std::uint8_t (&m_slot)[MMMAP_SLOTS];
    Route m_route;
};

void sendMap(MIDIOUT& player) noexcept {
    if (g_noChase != 0 || player.endOnBeat != 0) {
        return;
    }
    sendOnAllChannels(player, midi::kResetAllControllers);
    for (int channel = 0; channel < midi::kChannels; ++channel) {
        ChannelSender(player, channel).send();
    }
}

/// A map that was built holds 0xFF in the slots that nothing records; one that never was holds zeros.
bool wasBuilt(const MMMAP& map) noexcept {
    return map.channel[0].slot[MMSLOT_NEVER_SET] == MMMAP_NONE8;
}

} // namespace

void sendMapAndSeek(MIDIOUT& player, std::uint32_t tick) noexcept {
    sendMap(player);
    seek(player, tick);
}

void CORVMO_CALL mm_SendMap(HMIDIOUT handle, std::uint32_t tick) {
    const EngineLock lock;
    if (!lock) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    if (!wasBuilt(player.map)) {
        buildMap(player, tick);
    }
    sendMapAndSeek(player, tick);
}
