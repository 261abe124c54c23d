// Fades: the curve over time and what it makes of velocities.
#include <cstring>

#include "tests/support/engine_test.h"

using ::testing::ElementsAre;

namespace {

/// One straight line.
MMFADE line(std::uint32_t length, std::int32_t slope, std::int32_t base) {
    MMFADE fade{};
    for (int k = 0; k < 5; ++k) {
        fade.segmentEnd[k] = length;
    }
    fade.slope[0] = slope;
    fade.base[0] = base;
    return fade;
}

} // namespace

class Fades : public EngineTest {
protected:
    /// A song with notes of one velocity at these ticks; 960 ticks pass in a second.
    void playNotes(std::initializer_list<std::uint32_t> times, int velocity) {
        start();
        SongBuilder song;
        TrackBuilder& track = song.track();
        for (const std::uint32_t time : times) {
            track.at(time).noteOn(0, 60, velocity);
        }
        track.at(100000).noteOff(0, 60);
        play(song);
    }
};

TEST_F(Fades, A_fade_out_falls_along_its_line_and_keeps_the_song_silent) {
    playNotes({1440, 2880, 2889, 3840, 4320, 4800}, 100);
    const MMFADE out = line(3000, -34, 102400);
    mm_SetFadeOut(mm1, &out);
    ticks(150);
    EXPECT_EQ(+MM1.fadeOut.level, 51400);
    ticks(150);
    EXPECT_EQ(+MM1.fadeOut.level, 400);
    ticks(1);
    EXPECT_EQ(+MM1.fadeOut.level, 0);
    EXPECT_EQ(+MM1.fadeOut.active, 1);
    ticks(99);
    EXPECT_THAT(sent(), ElementsAre("0: 90 3C 32", "0: 90 3C 00", "0: 90 3C 00", "0: 90 3C 00"));
    const MMFADE in = line(500, 0, 51200);
    mm_SetFadeIn(mm1, &in);
    ticks(100);
    EXPECT_THAT(sent(), ElementsAre("0: 90 3C 32", "0: 90 3C 00")) << "hidden only for 500 ms";
    mm_SetFadeOut(mm1, &out);
    ticks(1);
    EXPECT_EQ(+MM1.fadeOut.level, 102400 - 340) << "a new block starts from its own beginning";
}

TEST_F(Fades, A_fade_in_rises_along_its_line_and_ends_itself) {
    settings.timerPeriod = 16;
    playNotes({491, 1966, 1981}, 80);
    const MMFADE fade = line(2048, 50, 0);
    mm_SetFadeIn(mm1, &fade);
    ticks(32);
    EXPECT_EQ(+MM1.fadeIn.time, 512u);
    EXPECT_EQ(+MM1.fadeIn.level, 25600);
    ticks(96);
    EXPECT_EQ(+MM1.fadeIn.active, 1) << "2048 ms are its last";
    ticks(1);
    EXPECT_EQ(+MM1.fadeIn.active, 0);
    EXPECT_THAT(sent(), ElementsAre("0: 90 3C 14", "0: 90 3C 50", "0: 90 3C 50"));
}

TEST_F(Fades, Stand_still_with_the_player_and_are_not_restarted_by_a_rewind) {
    playNotes({0}, 100);
    const MMFADE fade = line(3000, -34, 102400);
    mm_SetFadeOut(mm1, &fade);
    ticks(100);
    mm_PauseSync(mm1);
    ticks(500);
    mm_RewindSync(mm1);
    EXPECT_EQ(+MM1.fadeOut.time, 1000u);
    mm_StartSync(mm1);
    ticks(1);
    EXPECT_EQ(+MM1.fadeOut.level, 102400 - 34 * 1010);
}

TEST_F(Fades, Follow_the_first_segment_whose_end_is_not_past_and_stay_within_a_velocity) {
    playNotes({9, 48, 56}, 100);
    MMFADE fade{};
    const std::uint32_t ends[] = {20, 20, 40, 0x80000000, 0xFFFFFFFF};
    for (int k = 0; k < 5; ++k) {
        fade.segmentEnd[k] = ends[k];
        fade.base[k] = 204800 * (k + 1);
        fade.slope[k] = k == 3 ? -17000 : 1;
    }
    mm_SetFadeOut(mm1, &fade);
    std::vector<std::int32_t> levels;
    for (int i = 0; i < 6; ++i) {
        ticks(1);
        levels.push_back(+MM1.fadeOut.level);
    }
    EXPECT_THAT(levels, ElementsAre(204810, 204820, 614430, 614440, 0, 0));
    EXPECT_THAT(sent(), ElementsAre("0: 90 3C 7F", "0: 90 3C 00", "0: 90 3C 00"));
}

TEST_F(Fades, Are_copied_whole_with_their_state_set_and_null_is_refused) {
    start();
    MMFADE fade;
    std::memset(&fade, 0x5A, sizeof fade);
    mm_SetFadeIn(mm1, &fade);
    mm_SetFadeOut(mm2, &fade);
    mm_SetFadeIn(mm1, nullptr);
    mm_SetFadeOut(mm2, nullptr);
    fade.active = 1;
    fade.time = 0;
    fade.level = 0;
    EXPECT_EQ(std::memcmp(&MM1.fadeIn, &fade, sizeof fade), 0);
    fade.level = 100;
    EXPECT_EQ(std::memcmp(&MM2.fadeOut, &fade, sizeof fade), 0);
}
