// Words and chords in system-exclusive messages, by whole lines and by controller 31.
#include "tests/song/song_test.h"

using ::testing::ElementsAre;

namespace {

constexpr int kSyllable = 31;

} // namespace

class KaraokeMessages : public SongTest {};

TEST_F(KaraokeMessages, Lines_are_shown_one_after_the_other) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.lyric("old").text("Am").at(10).karaoke(4, "Line A").karaoke(5, "Line B\nhidden");
    track.karaoke(6).karaoke(7, "Line D").lyric("new").text("C").text("@x").marker("M");
    track.at(100).karaoke(8).at(150).karaoke(1, "G7\nx").karaoke(1).at(160).karaoke(1, "\nx");
    track.at(200).karaoke(8).at(300).karaoke(8).at(400).karaoke(8).at(500).karaoke(8);
    track.karaoke(2, "no").karaoke(3, "no").karaoke(9, "no").controller(0, kSyllable, 0);
    ASSERT_EQ(open(song, 0, 1), 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("20 \r", "100 Line A", "200 \r", "200 Line B",
                                             "400 \r", "400 Line D", "500 \r", "500 Line A"));
    EXPECT_THAT(chordLines(MM1), ElementsAre("45 \r", "150 G7", "150 ", "160 "));
    EXPECT_THAT(textLines(MM1.markers, MM1.markerCount), ElementsAre("10 M"));
    EXPECT_EQ(+MM1.sysexCount, 15);
    EXPECT_EQ(+MM1.sysex[14].isKaraokeText, 1);
    EXPECT_EQ(mm_GetNumEvents(mm1), 17) << "the messages, the controller and the end note";
}

TEST_F(KaraokeMessages, An_empty_next_line_shows_nothing_and_a_long_one_is_cut) {
    SongBuilder song;
    song.track().karaoke(4, "Hello\n").at(50).karaoke(8);
    ASSERT_EQ(open(song), 1);
    EXPECT_STREQ(MM1.textLine[0], "Hello");
    EXPECT_EQ(+MM1.textLineIndex, 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("0 \r"));

    SongBuilder wide;
    wide.track().karaoke(4, std::string(500, 'w')).karaoke(7, "short").at(50).karaoke(8);
    wide.track().at(60).karaoke(4, "s");
    ASSERT_EQ(open(wide), 1);
    EXPECT_THAT(lyricLines(MM1),
                ElementsAre("10 \r", "50 " + std::string(79, 'w'), "50 " + std::string(16, 'w')));
    EXPECT_STREQ(MM1.textLine[0], "s");
}

TEST_F(KaraokeMessages, Only_a_whole_header_with_a_type_counts) {
    SongBuilder song;
    song.track().systemExclusive({0, 0x20, 0x24, 0}).systemExclusive({0, 0x20, 0x25, 0, 4, 'x'});
    song.track().lyric("kept");
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("0 \r", "0 kept"));
    EXPECT_EQ(MM1.sysex[0].isKaraokeText + MM1.sysex[1].isKaraokeText, 0);
}

TEST_F(KaraokeMessages, Controller_31_points_at_syllables_once_switched_on) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    std::uint32_t tick = 100;
    const auto points = [&](std::initializer_list<int> values) {
        for (const int value : values) {
            track.at(tick).controller(0, kSyllable, value);
            tick += 10;
        }
    };
    points({0, 3});
    track.karaoke(4, "Hello, world").karaoke(5, "x*?+;:.!' -y").karaoke(6, "Third");
    track.karaoke(7, "Fourth").karaoke(0).karaoke(8);
    points({5});                  // 120: no line yet
    points({0, 3, 5, 8, 20, 20}); // 130: the start is a line break already
    points({0, 0, 127, 3});       // 190: two lines on; the first line is next, the text stays
    points({0, 2, 1, 3, 2, 0});   // 230: going back gathers nothing
    points({1});                  // 290: one character and the punctuation behind it
    track.karaoke(8);
    ASSERT_EQ(open(song, 0, 1), 1);
    EXPECT_THAT(lyricLines(MM1),
                ElementsAre("28 \r", "140 Hel", "150 lo, ", "160 wor", "170 ld", "190 \r",
                            "220 Thi", "230 \r", "240 He", "260 ll", "280 \r", "290 x*?+;:.!' -"));
    EXPECT_EQ(mm_GetNumEvents(mm1), 20 + 7 + 1) << "controllers and messages stay in the song";

    // What the last song's lines held is gone.
    SongBuilder next;
    next.track().karaoke(0).karaoke(4, "Line").controller(0, kSyllable, 4);
    ASSERT_EQ(open(next), 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("0 \r"));
}
