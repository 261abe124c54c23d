// What a host reads about a song, and the options word and window it sets.
#include <array>

#include "tests/support/engine_test.h"

using ::testing::ElementsAre;

class Accessors : public EngineTest {
protected:
    static SongBuilder songWithWords() {
        SongBuilder song(240);
        song.track()
            .tempo(400000)
            .lyric("Dai")
            .at(10)
            .marker("verse")
            .noteOn(0, 60)
            .lyric("sy")
            .at(120)
            .noteOff(0, 60);
        return song;
    }
};

TEST_F(Accessors, Hand_out_counts_and_addresses_of_a_song) {
    start();
    ASSERT_EQ(open(songWithWords()), 1);
    EXPECT_EQ(mm_GetTempo(mm1), 500000u) << "no tempo event was played yet";
    EXPECT_EQ(mm_GetUnits(mm1), 240);
    EXPECT_EQ(mm_GetNumEvents(mm1), 3);
    EXPECT_EQ(+mm_GetPointerEvents(mm1, 1)->time, 10u);
    EXPECT_EQ(mm_GetPointerEvents(mm1, 2), MM1.events + 2);
    ASSERT_EQ(mm_GetNumLyrics(mm1), 3);
    EXPECT_STREQ(mm_GetPointerLyrics(mm1, 0)->text, "\r");
    EXPECT_STREQ(mm_GetPointerLyrics(mm1, 2)->text, "sy");
    EXPECT_EQ(mm_GetNumChords(mm1), 1);
    EXPECT_EQ(mm_GetPointerChords(mm1, 1), MM1.chords + 1);
    ASSERT_EQ(mm_GetNumMarkers(mm1), 1);
    EXPECT_STREQ(mm_GetPointerMarkers(mm1, 0)->text, "verse");
    EXPECT_EQ(mm_GetNumEvents(mm2), 0) << "the other player has no song";
    mm_SetLoop(mm1, nullptr);
    mm_StartSync(mm1);
    ticks(5);
    EXPECT_EQ(mm_GetTempo(mm1), 400000u);
    EXPECT_EQ(mm_GetTicks(mm1), +MM1.ticks);
    EXPECT_GT(mm_GetTicks(mm1), 20u);
}

TEST_F(Accessors, Table_counts_are_held_within_the_tables) {
    start();
    ASSERT_EQ(open(songWithWords()), 1);
    struct Case {
        std::int16_t given, lyrics, chords;
    };
    for (const Case& one : std::to_array<Case>({{-1, 0, 0},
                                                {-32768, 0, 0},
                                                {2, 2, 2},
                                                {1000, 1000, 1000},
                                                {1001, 1001, 1000},
                                                {1536, 1536, 1000},
                                                {1537, 1536, 1000},
                                                {32767, 1536, 1000}})) {
        mm_SetNumLyrics(mm1, one.given);
        mm_SetNumChords(mm1, one.given);
        EXPECT_EQ(mm_GetNumLyrics(mm1), one.lyrics) << one.given;
        EXPECT_EQ(mm_GetNumChords(mm1), one.chords) << one.given;
    }
}

TEST_F(Accessors, Options_are_stored_whole_and_opening_sets_sixteen_bits) {
    start();
    mm_SetOptions(mm1, 0xFFFFFFFF);
    EXPECT_EQ(+MM1.options, 0xFFFFFFFFu);
    ASSERT_EQ(open(songWithWords(), 0xFF7F), 1);
    EXPECT_EQ(+MM1.options, 0x0000FF7Fu);
    mm_SetLoop(mm1, nullptr);
    mm_SetOptions(mm1, 0x10000);
    mm_StartSync(mm1);
    playToEnd();
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_END, reinterpret_cast<WPARAM>(mm1), 0}));
}

TEST_F(Accessors, Notifications_go_to_the_window_that_was_set_last) {
    start();
    const HWND window = machine::window();
    EXPECT_EQ(mm_GetWindow(), window);
    mm_SetOptions(mm1, MMOPT_POSITION2);
    mm_SetWindow(nullptr);
    EXPECT_EQ(mm_GetWindow(), nullptr);
    mm_RewindSync(mm1);
    EXPECT_THAT(posted(), ElementsAre());
    mm_SetWindow(window);
    mm_RewindSync(mm1);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_POSITION, 0, 0}));
}
