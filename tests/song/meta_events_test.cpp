// Meta events: the two conventions for words, titles, markers, tempo and signatures.
#include "tests/song/song_test.h"

using namespace std::literals;
using ::testing::ElementsAre;

class MetaEvents : public SongTest {};

TEST_F(MetaEvents, Texts_carry_the_words_of_a_song_with_a_header_mark) {
    SongBuilder song;
    song.track().text("\0x"sv).lyric("early").at(960).text("Am").at(1200).text("G7");
    TrackBuilder& words = song.track().text("@KMIDI KARAOKE FILE").text("@V0100");
    words.at(1440).text("\\Hel").at(1460).text("lo").lyric("not a word").text("%C").text("\n");
    words.text("\0y"sv).text("").at(1920).text("/wo").at(1940).text("rld");
    words.at(2000).text("\\").at(2010).text("/end");
    ASSERT_EQ(open(song), 1);
    // A line breaks at the time of the word before it.
    EXPECT_THAT(lyricLines(MM1),
                ElementsAre("0 \r", "0 early", "0 \r", "1440 Hel", "1460 lo", "1460 \r", "1920 wo",
                            "1940 rld", "1940 \r", "2010 end"));
    EXPECT_THAT(chordLines(MM1), ElementsAre("288 \r", "960 Am", "1200 G7"));
}

TEST_F(MetaEvents, Lyric_events_carry_the_words_of_any_other_song) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.at(950).lyric("<a").lyric(">\0\0"sv).lyric("@x").lyric("\nx").lyric("\0x"sv).lyric("");
    track.at(960).lyric("%G7").text("C").lyric("Hel").at(970).lyric("lo").at(980).lyric("<new");
    track.at(990).lyric("\r").at(1000).lyric(">\0x"sv).at(1010).lyric("%").at(1020).lyric("/x");
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("192 \r", "960 Hel", "970 lo", "980 \r", "980 new",
                                             "990 \r", "1000 ", "1020 /x"));
    EXPECT_THAT(chordLines(MM1), ElementsAre("288 \r", "960 G7", "960 C", "1010 "));
}

TEST_F(MetaEvents, A_scan_takes_the_title_lines_of_a_song_with_a_header_mark) {
    SongBuilder song;
    song.track().meta(3, "Track").text("@KMIDI").meta(3, "Words").text("@LENG").text("@T");
    song.track().text("@TMy Song").text("@T" + std::string(40, 'b')).text("@Tthird").text("@I");
    ASSERT_EQ(mm_Scan(mm1, song.write().c_str()), 1);
    EXPECT_STREQ(mm_GetInfo(mm1)->title, "My Song");
    EXPECT_EQ(mm_GetInfo(mm1)->title2, std::string(32, 'b'));
    EXPECT_THAT(lyricLines(MM1), ElementsAre("0 \r"));
    ASSERT_EQ(open(song), 1);
    EXPECT_STREQ(mm_GetInfo(mm1)->title, "") << "without a scan";
    EXPECT_STREQ(mm_GetInfo(mm1)->title2, "");
}

TEST_F(MetaEvents, A_scan_takes_the_first_name_or_text_of_any_other_song) {
    SongBuilder named;
    named.track().meta(3, "").meta(3, "\0hidden"sv).meta(3, "A name").text("Am").meta(3, "Other");
    ASSERT_EQ(mm_Scan(mm1, named.write().c_str()), 1);
    EXPECT_STREQ(mm_GetInfo(mm1)->title, "A name");
    EXPECT_STREQ(mm_GetInfo(mm1)->title2, "");
    SongBuilder texts;
    texts.track().text(std::string(33, 'a')).meta(3, "Name");
    ASSERT_EQ(mm_Scan(mm1, texts.write().c_str()), 1);
    EXPECT_EQ(mm_GetInfo(mm1)->title, std::string(32, 'a'));
    EXPECT_THAT(chordLines(MM1), ElementsAre("0 \r", "0 " + std::string(14, 'a')));
}

TEST_F(MetaEvents, Nine_markers_are_kept) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.marker("").at(3).marker(std::string(100, 'm')).marker(std::string(79, 'n'));
    for (std::uint32_t i = 2; i < 12; ++i) {
        track.at(i * 10).marker("part " + std::to_string(i));
    }
    ASSERT_EQ(open(song), 1);
    const std::vector<std::string> markers = textLines(MM1.markers, MM1.markerCount);
    ASSERT_EQ(mm_GetNumMarkers(mm1), 9);
    EXPECT_EQ(markers[0], "3 " + std::string(80, 'm')) << "fills its field, without a zero";
    EXPECT_EQ(markers[1], "3 " + std::string(79, 'n'));
    EXPECT_EQ(markers[8], "80 part 8");
    EXPECT_EQ(MM1.markers[9].text[0], '\0');
}

TEST_F(MetaEvents, Tempo_and_time_signature_enter_the_event_list) {
    SongBuilder song;
    song.track().at(5).tempo(0x0A0B0C).meta(0x51, "\1\2"sv).meta(0x51, "\1\2\3\4"sv);
    song.track().at(9).timeSignature(6, 3).meta(0x58, "\3"sv).meta(0x58, "\5\0"sv);
    song.track().at(11).timeSignature(4, 8).timeSignature(7, 7).meta(0x59, "\1\0"sv);
    ASSERT_EQ(open(song, 0, 1), 1);
    EXPECT_THAT(eventLines(MM1), ::testing::UnorderedElementsAre(
                                     "5 51 0A 0B 0C", "5 51 01 02 03", "9 58 06 08 00",
                                     "9 58 05 01 00", "11 58 07 80 00", "480 80 00 00 00"));
    EXPECT_EQ(+mm_GetInfo(mm1)->firstTempo, 0u) << "without a scan";
    EXPECT_EQ(+mm_GetInfo(mm1)->keySignature, -1);
    ASSERT_EQ(mm_Scan(mm1, song.write().c_str()), 1);
    EXPECT_EQ(+mm_GetInfo(mm1)->firstTempo, 0x0A0B0Cu);
    EXPECT_EQ(+mm_GetInfo(mm1)->keySignature, 256);
    EXPECT_EQ(mm_GetTempo(mm1), 500000u) << "a tempo event acts when it is played";
}

TEST_F(MetaEvents, The_first_valid_key_signature_counts) {
    using Key = std::pair<std::string_view, int>; // 512: it is passed over for two sharps
    for (const auto& [first, key] :
         {Key{"\x09\x00"sv, 512}, Key{"\xF8\x00"sv, 512}, Key{"\x01\x02"sv, 512},
          Key{"\x01\xFF"sv, 512}, Key{"\x01"sv, 512}, Key{"\x01\x00\x00"sv, 512},
          Key{"\xFD\x01"sv, -767}, Key{"\xF9\x00"sv, -1792}, Key{"\x07\x01"sv, 1793},
          Key{"\x00\x00"sv, 0}}) {
        SongBuilder song;
        song.track().meta(0x59, first).meta(0x59, "\2\0"sv);
        ASSERT_EQ(mm_Scan(mm1, song.write().c_str()), 1);
        EXPECT_EQ(+mm_GetInfo(mm1)->keySignature, key);
    }
}
