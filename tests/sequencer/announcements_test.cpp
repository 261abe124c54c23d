// Lyrics and chords as the timer announces them, one of each for an event at most.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr int kTexts = MMOPT_LYRICS | MMOPT_CHORDS;

} // namespace

class Announcements : public EngineTest {
protected:
    Posted lyric(int index) const {
        return {MMN_LYRIC, static_cast<WPARAM>(index), 0};
    }

    Posted chord(int index) const {
        return {MMN_CHORD, static_cast<WPARAM>(index), 0};
    }

    /// Two ticks a period; the text tables' start records are due at 8 (words) and 12 (chords).
    static SongBuilder song() {
        SongBuilder built(100);
        TrackBuilder& track = built.track();
        track.at(10).noteOn(0, 60).at(20).noteOn(0, 61);
        track.at(40).lyric("one").lyric("%C").noteOn(2, 62);
        track.at(41).lyric("two").at(42).lyric("three");
        track.at(60).noteOn(0, 63).at(70).noteOn(0, 64).noteOn(0, 65);
        track.at(80).noteOn(0, 66).at(200).noteOff(0, 66);
        return built;
    }
};

TEST_F(Announcements, Come_before_the_event_that_makes_them_due) {
    start();
    play(song(), kTexts | MMOPT_NOTES);
    ticks(5);
    EXPECT_THAT(posted(), ElementsAre(lyric(0), Posted{MMN_NOTEON, 0, 0}));
    ticks(5);
    EXPECT_THAT(posted(), ElementsAre(chord(0), Posted{MMN_NOTEON, 0, 0}));
    ticks(10);
    EXPECT_THAT(posted(), ElementsAre(lyric(1), chord(1), Posted{MMN_NOTEON, 2, 0}));
    EXPECT_EQ(+MM1.lyricPlay, MM1.lyrics + 2);
    EXPECT_EQ(+MM1.chordPlay, MM1.chords + 2);
}

TEST_F(Announcements, Come_one_for_an_event_and_wait_for_the_next_one) {
    start();
    play(song(), kTexts);
    ticks(29); // 58: both lyrics have come due, no event has
    posted();
    EXPECT_EQ(+MM1.lyricIndex, 2);
    ticks(1);
    EXPECT_THAT(posted(), ElementsAre(lyric(2)));
    ticks(5);
    EXPECT_THAT(posted(), ElementsAre(lyric(3)));
    playToEnd();
    EXPECT_THAT(posted(MMN_LYRIC), IsEmpty()) << "beyond the end of the table";
    EXPECT_EQ(+MM1.lyricIndex, 4);
}

TEST_F(Announcements, Are_left_out_without_their_option_and_made_up_for_afterwards) {
    start();
    play(song(), MMOPT_CHORDS);
    ticks(20);
    EXPECT_THAT(posted(), ElementsAre(chord(0), chord(1)));
    mm_SetOptions(mm1, MMOPT_LYRICS);
    ticks(15); // events at 60, 70 and 70
    EXPECT_THAT(posted(), ElementsAre(lyric(0), lyric(1), lyric(2)));
    mm_SetOptions(mm1, 0);
    playToEnd();
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_END, reinterpret_cast<WPARAM>(mm1), 0}));
}

TEST_F(Announcements, Stop_at_a_shortened_count_and_go_on_when_it_is_restored) {
    start();
    play(song(), kTexts);
    mm_SetNumLyrics(mm1, 1);
    mm_SetNumChords(mm1, 0);
    ticks(34);
    EXPECT_THAT(posted(), ElementsAre(lyric(0)));
    mm_SetNumLyrics(mm1, 4);
    ticks(1);
    EXPECT_THAT(posted(), ElementsAre(lyric(1), lyric(2)));
    mm_SetNumLyrics(mm1, 2);
    playToEnd();
    EXPECT_THAT(posted(MMN_LYRIC), IsEmpty());
}
