// Seeks: the cursors, the position, tempo and time signature, and what the host is told.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Seek : public EngineTest {
protected:
    /// Events, words and chords at every hundredth tick to 900, tempo and metre changing at 300.
    static SongBuilder song() {
        SongBuilder built(100);
        TrackBuilder& track = built.track();
        for (std::uint32_t tick = 100; tick <= 900; tick += 100) {
            const std::string number = std::to_string(tick);
            track.at(tick).lyric(number).lyric("%" + number);
            if (tick == 300) {
                track.tempo(250000).timeSignature(3, 3);
            }
            track.noteOn(0, static_cast<int>(tick / 10));
        }
        return built;
    }

    void seekTo(std::uint32_t tick) {
        mm_CreateMap(mm1, tick);
        mm_SendMap(mm1, tick);
    }

    /// Index and tick of the next event, lyric and chord.
    static std::vector<std::uint32_t> cursors() {
        EXPECT_EQ(+MM1.eventPlay, MM1.events + MM1.eventIndex);
        EXPECT_EQ(+MM1.lyricPlay, MM1.lyrics + MM1.lyricIndex);
        EXPECT_EQ(+MM1.chordPlay, MM1.chords + MM1.chordIndex);
        return {MM1.eventPlay->time, MM1.lyricPlay->time, MM1.chordPlay->time, MM1.ticks,
                MM1.click.nextClick};
    }
};

TEST_F(Seek, Moves_every_cursor_forward_and_back) {
    start();
    ASSERT_EQ(open(song()), 1);
    seekTo(450);
    EXPECT_THAT(cursors(), ElementsAre(500, 500, 500, 450, 450));
    seekTo(500);
    EXPECT_THAT(cursors(), ElementsAre(500, 500, 500, 500, 500)) << "what stands there is to come";
    seekTo(101);
    EXPECT_THAT(cursors(), ElementsAre(200, 200, 200, 101, 101));
    EXPECT_EQ(+MM1.eventIndex, 1);
    seekTo(0);
    EXPECT_THAT(cursors(), ElementsAre(100, 20, 30, 0, 0)) << "the start records of the tables";
    seekTo(123456);
    EXPECT_THAT(cursors(), ElementsAre(900, 900, 900, 900, 900))
        << "no further than the last event";
}

TEST_F(Seek, Plays_what_stands_at_its_tick_in_the_next_period) {
    start();
    play(song());
    ticks(120);
    EXPECT_EQ(+MM1.eventIndex, 2);
    seekTo(100);
    sent();
    ticks(1);
    EXPECT_THAT(sent(), ElementsAre("0: 90 0A 64"));
    ticks(1);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Seek, Takes_tempo_and_metre_from_the_map_and_keeps_them_where_it_has_none) {
    start();
    ASSERT_EQ(open(song()), 1);
    mm_SetTempo(mm1, 500000, 10);
    seekTo(301);
    EXPECT_EQ(mm_GetTempo(mm1), 225000U);
    EXPECT_EQ(+MM1.beatsPerBar, 3);
    EXPECT_EQ(+MM1.beatUnit, 8);
    EXPECT_EQ(+MM1.click.timeSigTick, 300U);
    seekTo(450);
    EXPECT_EQ(+MM1.click.timeSigTick, 300U);
    seekTo(50);
    EXPECT_EQ(mm_GetTempo(mm1), 225000U);
    EXPECT_EQ(+MM1.beatsPerBar, 3);
    EXPECT_EQ(+MM1.click.timeSigTick, 0U) << "bars count from the start after a rewind";
}

TEST_F(Seek, Keeps_the_fraction_of_a_tick_unless_it_goes_back) {
    start();
    SongBuilder built(480);
    built.track().at(100).noteOn(0, 60).at(2000).noteOn(0, 60);
    play(built);
    ticks(1);
    seekTo(500);
    seekTo(2000);
    seekTo(2000); // where the next event stands
    EXPECT_EQ(+MM1.tickRemainder, 76800000U);
    seekTo(50);
    EXPECT_EQ(+MM1.tickRemainder, 0U);
}

TEST_F(Seek, Tells_tempo_chord_lyric_and_position_in_this_order) {
    start();
    ASSERT_EQ(open(song(), kAllOptions & ~MMOPT_POSITION), 1);
    seekTo(250);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_CHORD, 3, 0}, Posted{MMN_LYRIC, 3, 0},
                                      Posted{MMN_POSITION, 0, 250}));
    seekTo(5000);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_TEMPO, 2, 250000}, Posted{MMN_CHORD, 9, 0},
                                      Posted{MMN_LYRIC, 9, 0}, Posted{MMN_POSITION, 0, 900}));
    mm_SetOptions(mm1, MMOPT_POSITION | MMOPT_NOTES | MMOPT_CHANNELS);
    seekTo(400);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_POSITION, 0, 400}));
    mm_SetOptions(mm1, 0);
    seekTo(400);
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(Seek, Finds_the_texts_of_a_shortened_table) {
    start();
    ASSERT_EQ(open(song()), 1);
    mm_SetNumLyrics(mm1, 3);
    mm_SetNumChords(mm1, 0);
    seekTo(800);
    EXPECT_EQ(+MM1.lyricIndex, 3);
    EXPECT_EQ(+MM1.chordIndex, 0);
}
