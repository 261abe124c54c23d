// Properties of jumps and halts over songs by chance.
#include <algorithm>

#include "tests/support/engine_test.h"
#include "tests/whole/device_model.h"
#include "tests/whole/random_song.h"

using ::testing::IsEmpty;

namespace {

/// The notes among what still sounds, pedals left out.
std::vector<std::string> notesIn(const std::vector<Sent>& log) {
    std::vector<std::string> lines = stillSounding(log);
    std::erase_if(lines, [](const std::string& line) { return line.ends_with("pedal"); });
    return lines;
}

/// The log up to the last controller with a number.
std::vector<Sent> upToLast(std::vector<Sent> log, std::uint8_t controller) {
    while (!log.empty() &&
           ((log.back().bytes[0] & 0xF0) != 0xB0 || log.back().bytes[1] != controller)) {
        log.pop_back();
    }
    return log;
}

} // namespace

class Jumps : public EngineTest, public ::testing::WithParamInterface<unsigned> {
protected:
    Jumps() : random(GetParam()) {}

    int any(int first, int last) {
        return anyOf(random, first, last);
    }

    /// Opens the song on both players with the same settings and starts both.
    void openTwice(const SongBuilder& song) {
        const std::string name = song.write();
        const auto offset = static_cast<std::int16_t>(any(-20, 20));
        for (HMIDIOUT player : {mm1, mm2}) {
            ASSERT_EQ(mm_Open(player, name.c_str(), 0, 0, 0, nullptr), 1);
            mm_SetVolume(player, 3, offset);
            mm_SetBalance(player, 9, offset);
            mm_StartSync(player);
        }
    }

    /// Expects that both devices, and the players as far as the song set them, are in the same state.
    void expectSameState() {
        EXPECT_THAT(differences(history(), 0, 1), IsEmpty());
        EXPECT_EQ(+MM2.tempo, +MM1.tempo);
        EXPECT_EQ(+MM2.beatsPerBar, +MM1.beatsPerBar);
        EXPECT_EQ(+MM2.beatUnit, +MM1.beatUnit);
        EXPECT_EQ(+MM2.click.timeSigTick, +MM1.click.timeSigTick);
        EXPECT_EQ(+MM2.eventIndex, +MM1.eventIndex);
    }

    std::mt19937 random;
};

TEST_P(Jumps, A_host_that_seeks_finds_the_state_of_playing_there) {
    start();
    openTwice(randomSong(random, true));
    const int first = any(1, 150);
    const int second = any(1, 150);
    ticks(std::min(first, second));
    mm_PauseSync(first < second ? mm1 : mm2);
    ticks(std::abs(first - second));
    mm_PauseSync(mm1);
    mm_PauseSync(mm2);
    mm_CreateMap(mm2, MM1.ticks + 1);
    mm_SendMap(mm2, MM1.ticks + 1);
    expectSameState();
}

TEST_P(Jumps, A_range_that_jumps_finds_the_state_of_playing_there) {
    start();
    openTwice(randomSong(random, false));
    const auto from = static_cast<std::uint32_t>(any(2, 800) * 2); // two ticks a period
    const auto to = static_cast<std::uint32_t>(any(0, 399) * 4 + (from % 4 == 0 ? 2 : 0));
    mm_SetNextLocator(mm2, from, to);
    ticks(static_cast<int>(from / 2));
    EXPECT_EQ(+MM2.ticks, to + 2);
    mm_PauseSync(mm2);
    if (MM1.ticks > to + 2) {
        mm_RewindSync(mm1);
        mm_StartSync(mm1);
    }
    while (MM1.ticks < to + 2) {
        ticks(1);
    }
    expectSameState();
}

TEST_P(Jumps, Nothing_sounds_on_after_a_halt_a_jump_the_end_and_closing) {
    start();
    ASSERT_EQ(open(randomSong(random, true)), 1);
    MMLOOP table[MM_MAX_LOOPS];
    std::fill(std::begin(table), std::end(table), MMLOOP{0, MMLOOP_UNUSED, 0, 0, 0, 0});
    for (int i = 0; i < 3; ++i) {
        const auto begin = static_cast<std::uint32_t>(any(0, 1500));
        table[i] = {0, begin, begin + 200, 0, static_cast<std::int16_t>(any(1, 3)), 0};
    }
    mm_SetLoop(mm1, table);
    mm_StartSync(mm1);
    int jumps = 0;
    while (MM1.playing != 0) {
        ticks(1);
        if (!posted(MMN_LOOP).empty()) {
            ++jumps;
            EXPECT_THAT(notesIn(upToLast(history(), 121)), IsEmpty());
        }
        if (any(0, 40) == 0) {
            any(0, 1) == 0 ? mm_PauseSync(mm1) : mm_StopSync(mm1);
            EXPECT_THAT(notesIn(history()), IsEmpty());
            mm_ReStartSync(mm1);
        }
    }
    EXPECT_GE(jumps, 2);
    std::vector<Sent> released = history();
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        released.push_back({0, 0, {static_cast<std::uint8_t>(0xB0 | channel), 64, 0}});
    }
    EXPECT_THAT(notesIn(released), IsEmpty()) << "notes that no pedal holds";
    mm_Close(mm1);
    EXPECT_THAT(stillSounding(history()), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Seeds, Jumps, ::testing::Range(1U, 16U));
