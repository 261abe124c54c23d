// Calls of every kind that a host makes while a song plays.
#include "tests/whole/host_threads.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/whole/random_song.h"

namespace {

constexpr std::chrono::seconds kLongestTest{120};

using Call = void (*)(HMIDIOUT player, std::int16_t channel, std::int16_t value);

constexpr Call kBesideTicks[] = {
    [](HMIDIOUT player, std::int16_t, std::int16_t) {
        mm_GetMM(player);
        mm_GetMap(player);
        mm_GetInfo(player);
        mm_GetChannelDevice(player);
        mm_GetChannelOut(player);
        mm_GetLastError();
        mm_GetUnits(player);
        mm_GetTempo(player);
        mm_GetNumEvents(player);
        mm_GetPointerEvents(player, 0);
        mm_GetNumLyrics(player);
        mm_GetPointerLyrics(player, 0);
        mm_GetNumChords(player);
        mm_GetPointerChords(player, 0);
        mm_GetNumMarkers(player);
        mm_GetPointerMarkers(player, 0);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        mm_SetLoop(player, nullptr);
        mm_SetNextLocator(player, MMLOCATOR_KEEP_END, MMLOCATOR_NO_NEXT);
        mm_CreateMap(player, static_cast<std::uint32_t>(value));
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        const std::uint8_t message[] = {0xF0, 0x7D, 0xF7};
        mm_LongMessage(player, message, sizeof message);
        mm_ShortMessage(player, 0xFE);
        mm_SetMIDIVolume(player, channel, value);
        mm_SetMIDIBalance(player, channel, value);
        mm_SetMIDIReverb(player, channel, value);
        mm_SetMIDIChorus(player, channel, value);
        const std::int16_t patch[] = {0, 0, value};
        mm_SetMIDIPatch(player, channel, patch);
        mm_Reset(player);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        mm_SetOptions(player, static_cast<std::uint32_t>(value));
        mm_SetWindow(mm_GetWindow());
        mm_SetNumLyrics(player, value);
        mm_SetNumChords(player, value);
    },
};

constexpr Call kSettings[] = {
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        mm_SetVolume(player, channel, value);
        mm_SetBalance(player, channel, value);
        mm_SetReverb(player, channel, value);
        mm_SetChorus(player, channel, value);
        mm_SetVelocity(player, channel, value);
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        mm_SetNoTranspose(player, channel, value);
        mm_SetMute(player, channel, value % 2, 1);
        mm_SetKeyShift(player, channel, value, 1);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        mm_SetTranspose(player, value, 1);
        mm_SetMasterTranspose(value);
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        const MMPATCH patch{value, 1, value % 2 == 0 ? value : std::int16_t{MMPATCH_NO_OVERRIDE},
                            1};
        mm_SetPatch(player, channel, &patch);
        const MMNOTEPAIR pairs[10] = {{36, 38}};
        mm_SetReplaceNotes(player, channel, pairs, 1);
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        mm_SetChannelDevice(player, channel, value & 1, 1);
        mm_SetChannelOut(player, channel, value & 15, 1);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        MMFADE fade{};
        fade.segmentEnd[4] = 50;
        fade.base[4] = 1000 * value;
        value % 2 == 0 ? mm_SetFadeIn(player, &fade) : mm_SetFadeOut(player, &fade);
    },
};

template <std::size_t Count>
void callAny(const Call (&calls)[Count], std::mt19937& random, HMIDIOUT player) {
    const auto channel = static_cast<std::int16_t>(anyOf(random, 0, 15));
    const auto value = static_cast<std::int16_t>(anyOf(random, 0, 60));
    calls[random() % Count](player, channel, value);
}

} // namespace

SongBuilder messageEveryTick(int kind, int ticks) {
    constexpr int kDivision = 500;
    SongBuilder song(kDivision);
    TrackBuilder& track = song.track();
    for (int tick = 0; tick < ticks; ++tick) {
        track.at(static_cast<std::uint32_t>(tick)).event({kind, tick >> 7, tick & 0x7F});
        track.event({(tick & 1) == 0 ? 0x91 : 0x81, 60 + tick / 2 % 12, 100});
    }
    return song;
}

unsigned nextSeed() {
    static std::atomic<unsigned> rounds{0};
    return ++rounds;
}

void callBesideTicks(std::mt19937& random, HMIDIOUT player) {
    callAny(kBesideTicks, random, player);
}

void changeSetting(std::mt19937& random, HMIDIOUT player) {
    callAny(kSettings, random, player);
}

void playBriefly(std::mt19937& random, HMIDIOUT player, const std::string& file) {
    EXPECT_EQ(mm_Scan(player, file.c_str()), 1);
    EXPECT_EQ(mm_Open(player, file.c_str(), MMOPT_LYRICS, 0, 0, nullptr), 1);
    EXPECT_EQ(mm_PlayFirstNote(player), 1);
    mm_StartSync(player);
    for (int i = anyOf(random, 0, 20); i > 0; --i) {
        const auto tick = static_cast<std::uint32_t>(anyOf(random, 0, 1500));
        mm_SetTempo(player, 400000 + tick, static_cast<float>(anyOf(random, -50, 99)));
        mm_SetNextLocator(player, tick, tick + 100);
        mm_CreateMap(player, tick);
        mm_SendMap(player, tick);
        mm_PauseSync(player);
        mm_ReStartSync(player);
        std::this_thread::yield();
    }
    mm_StopSync(player);
    mm_RewindSync(player);
    mm_Close(player);
}

Watchdog::~Watchdog() {
    m_over = true;
    m_thread.join();
}

void Watchdog::watch() const {
    const auto deadline = std::chrono::steady_clock::now() + kLongestTest;
    while (!m_over) {
        if (std::chrono::steady_clock::now() > deadline) {
            std::fputs("The test does not end: a deadlock.\n", stderr);
            std::abort();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}
