// Ticks as seconds and as bars.
#include <gtest/gtest.h>

#include "shared/bars.h"
#include "shared/song_events.h"
#include "shared/song_facts.h"
#include "shared/time_text.h"
#include "shared/timeline.h"

using namespace host;

namespace {

constexpr int kDivision = 480;

MMEVENT tempo(std::uint32_t tick, std::uint32_t microseconds) {
    return {kTempoEvent, static_cast<std::uint8_t>(microseconds >> 16),
            static_cast<std::uint8_t>(microseconds >> 8), static_cast<std::uint8_t>(microseconds),
            tick};
}

MMEVENT signature(std::uint32_t tick, int beats, int unit) {
    return {kTimeSignatureEvent, static_cast<std::uint8_t>(beats), static_cast<std::uint8_t>(unit),
            0, tick};
}

} // namespace

TEST(Timeline, Seconds_add_up_over_tempo_changes) {
    const Timeline plain({}, kDivision);
    EXPECT_DOUBLE_EQ(plain.secondsAt(960), 1.0);
    const Timeline changing({tempo(480, 1000000), tempo(480, 250000), tempo(960, 2000000)},
                            kDivision);
    EXPECT_DOUBLE_EQ(changing.secondsAt(480), 0.5);
    EXPECT_DOUBLE_EQ(changing.secondsAt(720), 0.625);
    EXPECT_DOUBLE_EQ(changing.secondsAt(960), 0.75);
    EXPECT_DOUBLE_EQ(changing.secondsAt(1440), 2.75);
    EXPECT_EQ(changing.tempoAt(479), 500000u);
    EXPECT_EQ(changing.tempoAt(480), 250000u);
    for (const std::uint32_t tick : {0u, 480u, 720u, 960u, 1440u}) {
        EXPECT_EQ(changing.tickAt(changing.secondsAt(tick)), tick);
    }
    EXPECT_EQ(changing.tickAt(-1), 0u);
    const Timeline slower = changing.withPercent(-100);
    EXPECT_DOUBLE_EQ(slower.secondsAt(1440), 5.5);
    EXPECT_EQ(slower.songTempoAt(960), 2000000u);
}

TEST(Timeline, The_percentage_changes_tempos_as_the_engine_does) {
    EXPECT_EQ(Timeline({}, kDivision, 10).tempoAt(0), 450000u);
    EXPECT_EQ(Timeline({}, kDivision, -20).tempoAt(0), 600000u);
    EXPECT_EQ(Timeline({tempo(0, 333333)}, kDivision, 50).tempoAt(0), 166666u);
    // Slower than the slowest is the slowest, and a tempo of nothing leaves the one before in force.
    EXPECT_EQ(Timeline({tempo(0, 0xFFFFFF)}, kDivision, -100).tempoAt(0), 0xFFFFFFu);
    EXPECT_EQ(Timeline({tempo(0, 400000), tempo(480, 0)}, kDivision).tempoAt(480), 400000u);
}

TEST(Bars, Count_beats_of_the_signature_in_force) {
    const BarGrid plain({}, kDivision);
    EXPECT_EQ(plain.at(0), (BarPosition{1, 1}));
    EXPECT_EQ(plain.at(1919), (BarPosition{1, 4}));
    EXPECT_EQ(plain.at(1920), (BarPosition{2, 1}));
    const BarGrid eighths({signature(0, 6, 8)}, kDivision);
    EXPECT_EQ(eighths.at(1439), (BarPosition{1, 6}));
    EXPECT_EQ(eighths.at(1440), (BarPosition{2, 1}));
}

TEST(Bars, A_new_signature_begins_a_bar_even_inside_one) {
    const BarGrid grid(
        {signature(0, 3, 4), signature(2160, 2, 2), signature(2160, 2, 4), signature(4080, 0, 4)},
        kDivision);
    EXPECT_EQ(grid.at(2159), (BarPosition{2, 2}));
    EXPECT_EQ(grid.at(2160), (BarPosition{3, 1}));
    EXPECT_EQ(grid.at(2160 + 960), (BarPosition{4, 1}));
    EXPECT_EQ(grid.at(4080), (BarPosition{5, 1}));
    for (const std::uint32_t bar : {1u, 2u, 3u, 4u, 5u, 90u}) {
        EXPECT_EQ(grid.at(grid.tickOf(bar)), (BarPosition{bar, 1}));
    }
    ASSERT_EQ(grid.signatures().size(), 2u);
    EXPECT_EQ(grid.signatures()[1].beatUnit, 4);
}

TEST(TimeText, Is_cut_to_tenths_without_losing_one_to_rounding) {
    EXPECT_EQ(timeWithTenths(0), "0:00.0");
    EXPECT_EQ(timeWithTenths(0.1 + 0.2), "0:00.3");
    EXPECT_EQ(timeWithTenths(2.3), "0:02.3");
    EXPECT_EQ(timeWithTenths(59.99), "0:59.9");
    EXPECT_EQ(timeWithTenths(3661.5), "61:01.5");
    EXPECT_EQ(timeInSeconds(59.99), "0:59");
    EXPECT_EQ(timeInSeconds(-1), "0:00");
}

TEST(SongFacts, Keys_are_named_and_impossible_ones_are_not) {
    EXPECT_EQ(keyName(0), "C major");
    EXPECT_EQ(keyName(1), "A minor");
    EXPECT_EQ(keyName(-3 * 256), "E flat major");
    EXPECT_EQ(keyName(-7 * 256 | 1), "A flat minor");
    EXPECT_EQ(keyName(7 * 256 | 1), "A sharp minor");
    EXPECT_EQ(keyName(8 * 256), "");
    EXPECT_EQ(keyName(2), "");
}

TEST(SongFacts, Channels_in_use_are_those_with_notes) {
    const std::vector<MMEVENT> events = {
        {0xC2, 5, 0, 0, 0},  {0xC2, 7, 0, 0, 0},   {0x92, 60, 1, 0, 0},  {0x92, 60, 0, 0, 9},
        {0xC2, 5, 0, 0, 10}, {0x92, 61, 9, 0, 11}, {0x90, 60, 0, 0, 12}, {0xC3, 1, 0, 0, 13}};
    const auto uses = channelsInUse(events);
    ASSERT_EQ(uses.size(), 1u);
    EXPECT_EQ(uses[0].channel, 2);
    EXPECT_EQ(uses[0].notes, 2u);
    EXPECT_EQ(uses[0].programs, (std::vector<int>{5, 7}));
}
