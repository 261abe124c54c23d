// Building the channel map: one walk over the event list up to a tick.
#include <array>
#include <cstring>

#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/midi.h"
#include "engine/players.h"
#include "sequencer/map_parameters.h"
#include "sequencer/sequencer.h"

namespace {

constexpr std::uint8_t kNone = MMMAP_NONE8;
constexpr std::int32_t kTempoOnly = 1; ///< value of noChase and endOnBeat that leaves channels out

constexpr std::uint8_t slotAfter(int slot, int distance) noexcept {
    return static_cast<std::uint8_t>(slot + distance);
}

/// Slot of every controller that the map records as it is.
constexpr std::array<std::uint8_t, 256> controllerSlots() noexcept {
    constexpr struct {
        std::uint8_t controller;
        std::uint8_t slot;
    } kWithFineHalf[] = {{midi::kBankMsb, MMSLOT_BANK_MSB},
                         {midi::kModulation, MMSLOT_MODULATION},
                         {midi::kBreath, MMSLOT_BREATH},
                         {midi::kFoot, MMSLOT_FOOT},
                         {midi::kPortamentoTime, MMSLOT_PORTAMENTO_TIME},
                         {midi::kVolume, MMSLOT_VOLUME},
                         {midi::kBalance, MMSLOT_BALANCE},
                         {midi::kPan, MMSLOT_PAN},
                         {midi::kExpression, MMSLOT_EXPRESSION},
                         {midi::kEffect1, MMSLOT_EFFECT1},
                         {midi::kEffect2, MMSLOT_EFFECT2}};
    std::array<std::uint8_t, 256> slots{};
    slots.fill(kNone);
    for (const auto& pair : kWithFineHalf) {
        slots[pair.controller] = pair.slot;
        slots[std::size_t{pair.controller} + midi::kFine] = slotAfter(pair.slot, 1);
    }
    for (std::size_t x = midi::kGeneral1; x <= midi::kGeneral4; ++x) {
        slots[x] = slotAfter(MMSLOT_GENERAL1, static_cast<int>(x) - midi::kGeneral1);
    }
    for (std::size_t x = midi::kSustain; x <= midi::kPortamentoControl; ++x) {
        slots[x] = slotAfter(MMSLOT_SUSTAIN, static_cast<int>(x) - midi::kSustain);
    }
    for (std::size_t x = midi::kReverb; x <= midi::kPhaser; ++x) {
        slots[x] = slotAfter(MMSLOT_REVERB, static_cast<int>(x) - midi::kReverb);
    }
    return slots;
}

constexpr std::array<std::uint8_t, 256> kSlotOfController = controllerSlots();

/// The parameter numbers that data entries refer to. The mode is shared by all channels.
struct ParameterNumbers {
    enum class Mode { None, Registered, NonRegistered };

    struct Number {
        std::uint8_t high = kNone;
        std::uint8_t low = kNone;
    };

    Mode mode = Mode::None;
    Number registered[midi::kChannels];
    Number nonRegistered[midi::kChannels];
};

/// Slot of the parameter with this number, kNone when the map does not record it.
template <std::size_t Count>
std::uint8_t parameterSlot(const MapParameter (&parameters)[Count], std::uint8_t high,
                           ParameterNumbers::Number number) noexcept {
    for (const MapParameter& parameter : parameters) {
        if (number.high == high && number.low == parameter.low) {
            return parameter.slot;
        }
    }
    return kNone;
}

/// Walks the events and records what they set.
class MapBuilder {
public:
    explicit MapBuilder(MMMAP& map) noexcept : m_map(map) {
        std::memset(&m_map, kNone, sizeof m_map);
    }

    /// Takes a tempo or time signature, the only records that are no messages.
    void takeTiming(const MMEVENT& event) noexcept {
        if (event.kind == midi::kTempo) {
            m_map.tempo = tempoOf(event);
        } else {
            m_map.beatsPerBar = event.byte1;
            m_map.beatUnit = event.byte2;
            m_map.timeSigTick = event.time;
        }
    }

    void takeChannel(const MMEVENT& event) noexcept;

private:
    void takeController(int channel, std::uint8_t controller, std::uint8_t value) noexcept;
    void takeDataEntry(int channel, std::uint8_t value) noexcept;

    MMMAP& m_map;
    ParameterNumbers m_numbers;
};

void MapBuilder::takeChannel(const MMEVENT& event) noexcept {
    const int channel = event.kind & midi::kChannelMask;
    auto& slot = m_map.channel[channel].slot;
    switch (event.kind & midi::kKindMask) {
    case midi::kPolyPressure:
        slot[MMSLOT_POLY_KEY] = event.byte1;
        slot[MMSLOT_POLY_PRESSURE] = event.byte2;
        return;
    case midi::kProgramChange:
        slot[MMSLOT_PROGRAM] = event.byte1;
        return;
    case midi::kChannelPressure:
        slot[MMSLOT_CHANNEL_PRESSURE] = event.byte1;
        return;
    case midi::kPitchBend:
        slot[MMSLOT_BEND_LOW] = event.byte1;
        slot[MMSLOT_BEND_HIGH] = event.byte2;
        return;
    case midi::kController:
        takeController(channel, event.byte1, event.byte2);
        return;
    default:
        return;
    }
}

void MapBuilder::takeController(int channel, std::uint8_t controller, std::uint8_t value) noexcept {
    using Mode = ParameterNumbers::Mode;
    switch (controller) {
    case midi::kRegisteredHigh:
        m_numbers.registered[channel].high = value;
        m_numbers.mode = Mode::Registered;
        return;
    case midi::kRegisteredLow:
        m_numbers.registered[channel].low = value;
        m_numbers.mode = Mode::Registered;
        return;
    case midi::kNonRegisteredHigh:
        m_numbers.nonRegistered[channel].high = value;
        m_numbers.mode = Mode::NonRegistered;
        return;
    case midi::kNonRegisteredLow:
        m_numbers.nonRegistered[channel].low = value;
        m_numbers.mode = Mode::NonRegistered;
        return;
    case midi::kDataEntry:
        takeDataEntry(channel, value);
        return;
    default:
        break;
    }
    const std::uint8_t slot = kSlotOfController[controller];
    if (slot != kNone) {
        m_map.channel[channel].slot[slot] = value;
    }
}

void MapBuilder::takeDataEntry(int channel, std::uint8_t value) noexcept {
    using Mode = ParameterNumbers::Mode;
    std::uint8_t slot = kNone;
    if (m_numbers.mode == Mode::Registered) {
        slot = parameterSlot(kRegisteredParameters, kRegisteredHighByte,
                             m_numbers.registered[channel]);
    } else if (m_numbers.mode == Mode::NonRegistered) {
        slot = parameterSlot(kNonRegisteredParameters, kNonRegisteredHighByte,
                             m_numbers.nonRegistered[channel]);
    }
    if (slot != kNone) {
        m_map.channel[channel].slot[slot] = value;
    }
}

} // namespace

void buildMap(MIDIOUT& player, std::uint32_t tick) noexcept {
    const bool withChannels = g_noChase != kTempoOnly && player.endOnBeat != kTempoOnly;
    MapBuilder builder(player.map);
    const MMEVENT* const end = player.events + player.eventCount;
    for (const MMEVENT* event = player.events; event != end && event->time < tick; ++event) {
        if (event->kind >= midi::kStatusBit) {
            if (withChannels) {
                builder.takeChannel(*event);
            }
        } else {
            builder.takeTiming(*event);
        }
    }
}

void CORVMO_CALL mm_CreateMap(HMIDIOUT handle, std::uint32_t tick) {
    const EngineLock lock;
    const BusyClaim claim;
    if (claim) {
        buildMap(selectPlayer(handle), tick);
    }
}

MMMAP* CORVMO_CALL mm_GetMap(HMIDIOUT player) {
    return &selectPlayer(player).map;
}
