// The tempo percentage.
#include <array>
#include <limits>

#include "tests/support/engine_test.h"

using ::testing::ElementsAre;

class Tempo : public EngineTest {
protected:
    void openSong() {
        start();
        SongBuilder song;
        song.track().noteOn(0, 60).at(96).tempo(400000).at(960).noteOff(0, 60);
        ASSERT_EQ(open(song, MMOPT_TEMPO), 1);
    }
};

TEST_F(Tempo, Is_changed_by_a_percentage_in_double_arithmetic_and_cut_to_whole_microseconds) {
    struct Case {
        std::uint32_t songTempo;
        float percent;
        std::uint32_t tempo;
    };
    openSong();
    for (const Case& one : std::to_array<Case>({
             {500000, 10, 450000}, // more precision than a double's gives 449999
             {500000, -20, 600000},
             {500000, 0, 500000},
             {500001, 10, 450000},
             {333333, 33.3f, 222333},
             {1000000, -0.1f, 1001000},
             {500000, 99.9996f, 1},
             {0xFFFFFF, 0, 0xFFFFFF},
             {0x1000000, 0, 0xFFFFFF},
             {0xFFFFFFFF, 50, 0xFFFFFF},
             {500000, -1e30f, 0xFFFFFF},
             {500000, -std::numeric_limits<float>::infinity(), 0xFFFFFF},
         })) {
        mm_SetTempo(mm1, one.songTempo, one.percent);
        EXPECT_EQ(mm_GetTempo(mm1), one.tempo) << one.songTempo << " at " << one.percent;
        EXPECT_EQ(+MM1.tempo, one.tempo << 8);
        EXPECT_EQ(+MM1.tempoPercent, one.percent);
    }
}

TEST_F(Tempo, That_nobody_could_play_is_refused) {
    openSong();
    mm_SetTempo(mm1, 500000, 50);
    for (const float percent : {100.0f, 100.001f, 150.0f, std::numeric_limits<float>::infinity(),
                                std::numeric_limits<float>::quiet_NaN()}) {
        mm_SetTempo(mm1, 600000, percent);
        EXPECT_EQ(mm_GetTempo(mm1), 250000u) << percent;
        EXPECT_EQ(+MM1.tempoPercent, 50.0f) << percent;
    }
    mm_SetTempo(mm1, 0, 50);
    EXPECT_EQ(mm_GetTempo(mm1), 250000u) << "a tempo of 0";
    mm_SetTempo(mm1, 1, 50);
    EXPECT_EQ(mm_GetTempo(mm1), 250000u) << "half a microsecond";
}

TEST_F(Tempo, Percentage_holds_for_the_tempo_events_that_follow) {
    openSong();
    mm_SetLoop(mm1, nullptr);
    mm_StartSync(mm1);
    const std::uint32_t step = MM1.tickStep;
    mm_SetTempo(mm1, 500000, -100);
    EXPECT_EQ(+MM1.tickStep, step);
    ticks(10);
    EXPECT_EQ(mm_GetTicks(mm1), 48u) << "half as fast";
    ticks(11);
    EXPECT_EQ(mm_GetTempo(mm1), 800000u);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_TEMPO, 0, 800000}));
}
