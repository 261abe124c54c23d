// The clock of the timer: exact arithmetic over long runs, lost periods, two players in one period.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;

namespace {

struct Rate {
    int division;
    std::int16_t period;
    std::uint32_t tempo;
    std::uint32_t seconds;
};

std::ostream& operator<<(std::ostream& stream, const Rate& rate) {
    return stream << rate.division << " ticks a quarter note, " << rate.period << " ms, "
                  << rate.tempo << " us";
}

/// One note so far away that nothing but the clock moves.
SongBuilder distantNote(int division) {
    SongBuilder song(division);
    song.track().at(0xFFFFFF0).noteOn(0, 60);
    return song;
}

} // namespace

class ClockRate : public EngineTest, public ::testing::WithParamInterface<Rate> {};

TEST_P(ClockRate, Lands_on_the_exact_tick_after_a_long_run) {
    const Rate rate = GetParam();
    settings.timerPeriod = rate.period;
    start();
    play(distantNote(rate.division));
    mm_SetTempo(mm1, rate.tempo, 0);
    const std::uint32_t periods = rate.seconds * 1000 / static_cast<std::uint32_t>(rate.period);
    ticks(static_cast<int>(periods));
    const std::uint64_t played = std::uint64_t{periods} * static_cast<std::uint64_t>(rate.period) *
                                 1000 * static_cast<std::uint64_t>(rate.division);
    EXPECT_EQ(mm_GetTicks(mm1), played / rate.tempo);
    EXPECT_EQ(+MM1.tickRemainder, played % rate.tempo * 256);
    EXPECT_EQ(+MM1.tickStep, static_cast<std::uint32_t>(rate.division * rate.period * 256000LL));
}

INSTANTIATE_TEST_SUITE_P(Hours, ClockRate,
                         ::testing::Values(Rate{480, 10, 500000, 3600}, Rate{96, 7, 428571, 3600},
                                           Rate{1, 10, 333333, 3600}, Rate{960, 17, 1000001, 3600},
                                           Rate{960, 18, 600000, 3600},
                                           Rate{960, 1000, 250000, 36000},
                                           Rate{120, 1, 0xFFFFFF, 600}, Rate{960, 5, 100, 10}));

class ClockRun : public EngineTest {};

TEST_F(ClockRun, A_tempo_change_takes_effect_at_the_next_period_and_carries_the_fraction) {
    start();
    play(distantNote(480));
    ticks(1);
    EXPECT_EQ(+MM1.ticks, 9U); // 9.6
    EXPECT_EQ(+MM1.tickRemainder, 76800000U);
    mm_SetTempo(mm1, 250000, 0);
    EXPECT_EQ(+MM1.tickRemainder, 76800000U);
    ticks(1);
    EXPECT_EQ(+MM1.ticks, 29U); // (1228800000 + 76800000) / 64000000 = 20.4
    EXPECT_EQ(+MM1.tickRemainder, 25600000U);
    mm_SetTempo(mm1, 250000, 50);
    ticks(1);
    EXPECT_EQ(+MM1.ticks, 29U + 39U); // (1228800000 + 25600000) / 32000000 = 39.2
    EXPECT_EQ(+MM1.tickRemainder, 6400000U);
}

TEST_F(ClockRun, A_tempo_event_slows_only_the_periods_after_it) {
    start();
    SongBuilder song(100);
    song.track().at(4).tempo(1000000).at(1000).noteOn(0, 60);
    play(song);
    ticks(2);
    EXPECT_EQ(+MM1.ticks, 4U);
    ticks(3);
    EXPECT_EQ(+MM1.ticks, 7U);
}

TEST_F(ClockRun, A_period_that_finds_the_busy_flag_set_is_lost) {
    start();
    SongBuilder song(100);
    song.track().at(6).noteOn(0, 60).at(1000).noteOff(0, 60);
    play(song);
    ticks(2);
    g_busy.store(1);
    ticks(5);
    EXPECT_EQ(g_busy.load(), 1U);
    EXPECT_EQ(+MM1.ticks, 4U);
    EXPECT_THAT(sent(), ElementsAre());
    g_busy.store(0);
    ticks(1);
    EXPECT_EQ(+MM1.ticks, 6U);
    EXPECT_THAT(sent(), ElementsAre("0: 90 3C 64"));
    EXPECT_EQ(g_busy.load(), 0U);
}

TEST_F(ClockRun, One_period_serves_both_players_the_first_one_first) {
    start();
    for (HMIDIOUT player : {mm2, mm1}) {
        SongBuilder song;
        song.track().noteOn(player == mm1 ? 1 : 2, 60).noteOn(3, 61).at(960).noteOff(3, 61);
        ASSERT_EQ(mm_Open(player, song.write().c_str(), 0, 0, 0, nullptr), 1);
        mm_StartSync(player);
    }
    sent();
    ticks(1);
    EXPECT_THAT(sent(), ElementsAre("0: 91 3C 64", "0: 93 3D 64", "1: 92 3C 64", "1: 93 3D 64"));
    mm_PauseSync(mm1);
    ticks(1);
    EXPECT_EQ(+MM1.ticks, 9U);
    EXPECT_EQ(+MM2.ticks, 19U);
}

TEST_F(ClockRun, Two_players_can_share_an_output) {
    start();
    SongBuilder song;
    song.track().noteOn(1, 60).at(960).noteOff(1, 60);
    for (HMIDIOUT player : {mm1, mm2}) {
        ASSERT_EQ(mm_Open(player, song.write().c_str(), 0, 0, 0, nullptr), 1);
    }
    mm_SetChannelDevice(mm2, 1, 0, 0);
    mm_SetChannelOut(mm2, 1, 4, 0);
    mm_StartSync(mm1);
    mm_StartSync(mm2);
    sent();
    ticks(1);
    EXPECT_THAT(sent(), ElementsAre("0: 91 3C 64", "0: 94 3C 64"));
    mm_StopSync(mm1);
    ticks(100);
    EXPECT_EQ(+MM1.ticks, 9U);
    EXPECT_EQ(+MM2.playing, 0);
}
