// The lyric and chord tables: order, merging, splitting, restarting, and their ends.
#include "tests/song/song_test.h"

using namespace std::literals;
using ::testing::ElementsAre;

class TextTables : public SongTest {
protected:
    /// The lyrics of a song of one track that holds these at tick 100.
    std::vector<std::string> lyricsOf(std::initializer_list<std::string_view> words) {
        SongBuilder song;
        TrackBuilder& track = song.track().at(100);
        for (const std::string_view word : words) {
            track.lyric(word);
        }
        EXPECT_EQ(open(song), 1);
        std::vector<std::string> lines = lyricLines(MM1);
        EXPECT_EQ(lines.front(), "20 \r");
        lines.erase(lines.begin());
        return lines;
    }
};

TEST_F(TextTables, Syllables_at_one_tick_become_one_lyric) {
    EXPECT_THAT(lyricsOf({"Hel", "lo", "\rnew", "line"}),
                ElementsAre("100 Hello", "100 \rnew", "100 line"));
    const std::string fifty(50, 'a');
    EXPECT_THAT(lyricsOf({fifty, fifty, "b"}), ElementsAre("100 " + std::string(79, 'a')));
    EXPECT_THAT(lyricsOf({std::string(78, 'a'), "bc"}),
                ElementsAre("100 " + std::string(78, 'a') + 'b'));
    EXPECT_THAT(lyricsOf({"ab\0hidden"sv, "X"}), ElementsAre("100 abX"));
}

TEST_F(TextTables, A_long_lyric_is_split_at_its_spaces) {
    const auto spaced = [](std::size_t length, std::initializer_list<std::size_t> positions) {
        std::string text(length, 'x');
        for (const std::size_t position : positions) {
            text[position - 1] = ' ';
        }
        return text;
    };
    const auto piece = [](const std::string& text, std::size_t from, std::size_t to) {
        return "100 " + text.substr(from - 1, to - from + 1);
    };
    std::string text = spaced(100, {30, 75});
    EXPECT_THAT(lyricsOf({text}), ElementsAre(piece(text, 1, 75), piece(text, 76, 100)));
    text = spaced(100, {});
    EXPECT_THAT(lyricsOf({text}), ElementsAre(piece(text, 1, 79), piece(text, 80, 100)));
    text = spaced(80, {30, 79});
    EXPECT_THAT(lyricsOf({text}), ElementsAre(piece(text, 1, 79), piece(text, 80, 80)));
    text = spaced(100, {20, 80});
    EXPECT_THAT(lyricsOf({text}),
                ElementsAre(piece(text, 1, 20), piece(text, 21, 80), piece(text, 81, 100)));
    text = spaced(79, {10});
    EXPECT_THAT(lyricsOf({text}), ElementsAre(piece(text, 1, 79)));
    text = spaced(240, {5, 90, 150});
    EXPECT_THAT(lyricsOf({"short", text, "!"}),
                ElementsAre("100 short", piece(text, 1, 5), piece(text, 6, 84),
                            piece(text, 85, 150), piece(text, 151, 229),
                            piece(text, 230, 240) + "!"))
        << "only what fits in one record is merged";
}

TEST_F(TextTables, Texts_enter_in_time_order_and_the_start_record_precedes_them) {
    SongBuilder song;
    song.track().at(0x90000000).lyric("late").text("Am").at(0x90000001).text("A long chord name");
    song.track().at(5).lyric("early").text("G7").at(0x90000000).lyric("st");
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("53687091 \r", "2415919104 latest"));
    EXPECT_THAT(chordLines(MM1),
                ElementsAre("295279001 \r", "2415919104 Am", "2415919105 A long chord n"));
}

TEST_F(TextTables, A_question_mark_restarts_the_lyrics_of_the_tracks_before) {
    SongBuilder song;
    TrackBuilder& first = song.track();
    for (std::uint32_t i = 1; i <= 19; ++i) {
        first.at(i * 10).lyric("a");
    }
    song.track().at(5).lyric("?x").at(6).lyric("dropped").at(7).lyric("?y").at(8).lyric("dropped");
    song.track().at(10).lyric("kept");
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("2 \r", "10 kept"));
    EXPECT_EQ(MM1.lyrics[2].text[0], '\0') << "nothing is left behind";

    first.at(200).lyric("a");
    ASSERT_EQ(open(song), 1);
    EXPECT_EQ(mm_GetNumLyrics(mm1), 21) << "a longer table is kept, the tracks' words are not";
    EXPECT_STREQ(MM1.lyrics[20].text, "a");

    SongBuilder single;
    single.track().at(5).lyric("a").at(6).lyric("?x").at(7).lyric("b");
    ASSERT_EQ(open(single), 1);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("1 \r", "5 a", "7 b"));
}

TEST_F(TextTables, A_song_has_words_or_chords_from_the_fifth_on) {
    SongBuilder song;
    TrackBuilder& track = song.track().text("C");
    for (std::uint32_t i = 1; i <= 4; ++i) {
        track.at(i).lyric("a").text("C");
    }
    ASSERT_EQ(open(song), 1);
    EXPECT_EQ(+MM1.info.hasLyrics, 0);
    EXPECT_EQ(+MM1.info.hasChords, 1);
}

TEST_F(TextTables, Full_tables_drop_what_comes_after) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (std::uint32_t i = 1; i <= 1535; ++i) {
        track.at(i).lyric("a").text("C");
    }
    track.lyric("<gone")
        .at(1536)
        .lyric("over")
        .lyric("<gone")
        .lyric(std::string(200, 'x'))
        .text("over");
    ASSERT_EQ(open(song), 1);
    EXPECT_EQ(mm_GetNumLyrics(mm1), MM_MAX_LYRICS);
    EXPECT_STREQ(mm_GetPointerLyrics(mm1, MM_MAX_LYRICS - 1)->text, "a");
    EXPECT_EQ(+MM1.info.hasLyrics, 1);
    EXPECT_EQ(mm_GetNumChords(mm1), MM_MAX_CHORDS);
    EXPECT_EQ(+mm_GetPointerChords(mm1, MM_MAX_CHORDS - 1)->time, 999u);
    track.at(1600).lyric("a");
    song.track().at(1535).lyric("b");
    ASSERT_EQ(open(song), 1);
    EXPECT_STREQ(mm_GetPointerLyrics(mm1, MM_MAX_LYRICS - 1)->text, "ab")
        << "merging needs no room";
}

TEST_F(TextTables, A_new_line_without_room_is_dropped_with_its_words) {
    SongBuilder song;
    TrackBuilder& track = song.track().text("@K");
    for (std::uint32_t i = 1; i <= 1535; ++i) {
        track.at(i).text("a");
    }
    track.text("\\gone");
    ASSERT_EQ(open(song), 1);
    EXPECT_STREQ(mm_GetPointerLyrics(mm1, MM_MAX_LYRICS - 1)->text, "a");
    SongBuilder karaoke;
    TrackBuilder& lines = karaoke.track().karaoke(4, "a").karaoke(5, "b");
    for (std::uint32_t i = 1; i <= 1000; ++i) {
        lines.at(i).karaoke(7, "x").karaoke(8);
    }
    ASSERT_EQ(open(karaoke), 1);
    EXPECT_EQ(mm_GetNumLyrics(mm1), MM_MAX_LYRICS);
}
