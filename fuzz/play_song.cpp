// Opens any bytes and plays them with ranges, seeks and settings. The engine's part of the input stands at
// its end, so that songs are seeds as they are.
#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>

#include "fuzz/machine.h"
#include "fuzz/song_checks.h"

using fuzz::machine;
using fuzz::require;

namespace {

constexpr int kMostActions = 12;
constexpr std::uint32_t kLongestPass = 400;  ///< milliseconds between two actions
constexpr std::uint32_t kTail = 2000;        ///< milliseconds of playing at the end
constexpr std::uint32_t kFurthest = 1 << 24; ///< ticks

class Playing {
public:
    Playing(HMIDIOUT player, std::int16_t output, FuzzedDataProvider& input)
        : m_player(player), m_output(output), m_input(input) {}

    void run(const std::vector<std::uint8_t>& song, int actions);

private:
    std::uint32_t tick() {
        return m_input.ConsumeIntegralInRange<std::uint32_t>(0, kFurthest);
    }
    std::int16_t number() {
        return m_input.ConsumeIntegral<std::int16_t>();
    }
    std::int16_t channel() {
        return m_input.ConsumeIntegralInRange<std::int16_t>(0, 15);
    }

    void setRanges();
    void setMix();
    void setNotes();
    void fade();
    void move();
    void halt();
    void act();

    HMIDIOUT m_player;
    std::int16_t m_output;
    FuzzedDataProvider& m_input;
};

void Playing::setRanges() {
    MMLOOP ranges[MM_MAX_LOOPS];
    for (MMLOOP& range : ranges) {
        range = {};
        range.start = MMLOOP_UNUSED;
    }
    const int count = m_input.ConsumeIntegralInRange(0, 3);
    for (int i = 0; i < count; ++i) {
        ranges[i].start = tick();
        ranges[i].end = tick();
        ranges[i].repeats = number();
    }
    mm_SetLoop(m_player, count == 0 ? nullptr : ranges);
}

void Playing::setMix() {
    const std::int16_t at = channel();
    for (auto* const setter : {mm_SetVolume, mm_SetBalance, mm_SetReverb, mm_SetChorus}) {
        setter(m_player, at, number());
    }
    const MMPATCH patch{number(), number(), number(), number()};
    mm_SetPatch(m_player, at, &patch);
}

void Playing::setNotes() {
    mm_SetVelocity(m_player, channel(), number());
    mm_SetNoTranspose(m_player, channel(), number());
    mm_SetMute(m_player, channel(), m_input.ConsumeBool(), m_input.ConsumeBool());
    mm_SetKeyShift(m_player, channel(), number(), m_input.ConsumeBool());
    mm_SetTranspose(m_player, number(), m_input.ConsumeBool());
    MMNOTEPAIR pairs[10] = {};
    m_input.ConsumeData(pairs, sizeof pairs);
    mm_SetReplaceNotes(m_player, channel(), pairs, 0);
}

void Playing::fade() {
    MMFADE curve{};
    m_input.ConsumeData(&curve, sizeof curve);
    if (m_input.ConsumeBool()) {
        mm_SetFadeIn(m_player, &curve);
    } else {
        mm_SetFadeOut(m_player, &curve);
    }
}

void Playing::move() {
    switch (m_input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        mm_SetNextLocator(m_player, tick(), tick());
        break;
    case 1:
        mm_RewindSync(m_player);
        break;
    default: {
        const std::uint32_t target = tick();
        mm_CreateMap(m_player, target);
        mm_SendMap(m_player, target);
        break;
    }
    }
}

void Playing::halt() {
    if (m_input.ConsumeBool()) {
        mm_PauseSync(m_player);
    } else {
        mm_StopSync(m_player);
    }
    require(!fuzz::Machine::soundsNotes(), "a halted song is silent");
    mm_StartSync(m_player);
}

void Playing::act() {
    switch (m_input.ConsumeIntegralInRange(0, 6)) {
    case 0:
        setRanges();
        break;
    case 1:
        setMix();
        break;
    case 2:
        setNotes();
        break;
    case 3:
        fade();
        break;
    case 4:
        mm_SetTempo(m_player, m_input.ConsumeIntegral<std::uint32_t>() & 0xFFFFFF,
                    m_input.ConsumeFloatingPoint<float>());
        break;
    case 5:
        halt();
        break;
    default:
        move();
        break;
    }
}

void Playing::run(const std::vector<std::uint8_t>& song, int actions) {
    const MMCLICK click{1, m_output, 9, 76, 120, 77, 100, 0, 0};
    const auto options = m_input.ConsumeIntegral<std::uint16_t>();
    const std::int16_t endOnBeat = m_input.ConsumeIntegralInRange<std::int16_t>(0, 2);
    const fuzz::MemoryFile file(song);
    if (mm_Open(m_player, file.path(), options, 0, endOnBeat, &click) == 1) {
        machine().allowBytesOf(m_player);
        setRanges();
        mm_PlayFirstNote(m_player);
        mm_StartSync(m_player);
        for (int i = 0; i < actions; ++i) {
            machine().pass(m_input.ConsumeIntegralInRange<std::uint32_t>(0, kLongestPass));
            act();
        }
        machine().pass(kTail);
        fuzz::checkSong(m_player, song.size());
    }
    mm_Close(m_player);
    const std::vector<std::string> left = fuzz::Machine::sounding();
    require(left.empty(), left.empty() ? "" : ("nothing sounds after closing; " + left[0]).c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Players players = fuzz::startEngine();
    machine().forget();
    FuzzedDataProvider input(data, size);
    const int actions = input.ConsumeIntegralInRange(0, kMostActions);
    const auto engineBytes = static_cast<std::size_t>(actions) * 40;
    const std::size_t songBytes =
        input.remaining_bytes() > engineBytes ? input.remaining_bytes() - engineBytes : 0;
    const std::vector<std::uint8_t> song = input.ConsumeBytes<std::uint8_t>(songBytes);
    const bool second = input.ConsumeBool();
    Playing playing(second ? players.second : players.first, second ? 1 : 0, input);
    playing.run(song, actions);
    return 0;
}
