// Playing for a year, and at the last ticks that a position can have.
#include "tests/support/engine_test.h"

using ::testing::IsEmpty;

class Endurance : public EngineTest {
protected:
    static constexpr std::int16_t kPeriod = 30000; ///< milliseconds
    static constexpr std::uint32_t kStep = 5760;   ///< ticks in a period at 96 a quarter note

    /// Opens a song whose last event stands at a tick.
    void openSongUpTo(std::uint32_t end) {
        settings.timerPeriod = kPeriod;
        machine::setTimerLimits(1, kPeriod);
        start();
        SongBuilder song(96);
        song.track().tempo(500000).note(0, 60, 96).controller(0, 7, 100).at(end).noteOff(0, 60);
        ASSERT_EQ(open(song), 1);
    }

    static void setRange(HMIDIOUT player, std::uint32_t end, std::int16_t repeats) {
        MMLOOP ranges[MM_MAX_LOOPS];
        for (MMLOOP& range : ranges) {
            range = {};
            range.start = MMLOOP_UNUSED;
        }
        ranges[0].start = 0;
        ranges[0].end = end;
        ranges[0].repeats = repeats;
        mm_SetLoop(player, ranges);
    }
};

TEST_F(Endurance, A_year_of_looped_playing_lands_on_the_exact_tick) {
    constexpr int kRangePeriods = 100;
    constexpr int kDay = 24 * 60 * 2; ///< periods
    openSongUpTo(kRangePeriods * kStep);
    setRange(mm1, kRangePeriods * kStep, 32767);
    mm_StartSync(mm1);
    // A jump makes one step past the start in the same period, so that a later pass is one shorter.
    for (int day = 1; day <= 365; ++day) {
        ticks(kDay);
        const auto periods = static_cast<std::uint32_t>(day * kDay);
        ASSERT_EQ(+MM1.ticks, ((periods - 1) % (kRangePeriods - 1) + 1) * kStep) << "day " << day;
        ASSERT_FALSE(machine::takeSent().empty());
        posted();
    }
    mm_Close(mm1);
    EXPECT_THAT(stillSounding(machine::takeSent()), IsEmpty());
}

TEST_F(Endurance, A_song_ends_at_the_last_tick_that_there_is) {
    for (const std::uint32_t end : {0x7FFFFFFFU, 0x80000001U, 0xFFFFFFFFU}) {
        openSongUpTo(end);
        setRange(mm1, 0, 1);
        const std::uint32_t nearEnd = end - kStep - kStep / 2;
        mm_CreateMap(mm1, nearEnd);
        mm_SendMap(mm1, nearEnd);
        mm_StartSync(mm1);
        ticks(1);
        EXPECT_EQ(+MM1.ticks, nearEnd + kStep);
        posted();
        ticks(2);
        EXPECT_EQ(posted(MMN_END).size(), 1U) << end;
        EXPECT_EQ(+MM1.playing, 0);
        mm_Close(mm1);
        mm_EndEngine();
    }
}
