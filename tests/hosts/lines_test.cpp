// Words and chords gathered into lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "karaoke/line_text.h"
#include "karaoke/wrapped_lines.h"
#include "shared/chord_names.h"
#include "shared/line_follower.h"
#include "shared/lyric_lines.h"

using namespace host;
using testing::ElementsAre;

namespace {

constexpr int kDivision = 480;

/// A table as the engine hands it out, one text a quarter note.
std::vector<TimedBytes> table(const std::vector<std::string>& texts) {
    std::vector<TimedBytes> entries = {{0, "\r"}};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        entries.push_back({static_cast<std::uint32_t>(i * kDivision), texts[i]});
    }
    return entries;
}

std::vector<Line> lines(const std::vector<std::string>& texts, const char* encoding = "UTF-8") {
    return buildLines(table(texts), TextDecoder(encoding));
}

std::vector<std::string> words(const std::vector<Line>& built) {
    std::vector<std::string> all;
    for (const Line& line : built) {
        all.push_back(line.words());
    }
    return all;
}

std::vector<Line> withChords(std::vector<Line> built, const std::vector<TimedBytes>& chords) {
    std::vector<TimedBytes> entries = {{0, "\r"}};
    entries.insert(entries.end(), chords.begin(), chords.end());
    placeChords(built, entries, TextDecoder("UTF-8"), kDivision);
    return built;
}

std::vector<std::string> texts(const std::vector<Line>& built) {
    std::vector<std::string> all;
    for (const Line& line : built) {
        all.push_back(karaoke::lineText(line, Timeline({}, kDivision)));
    }
    return all;
}

} // namespace

TEST(Lines, End_at_every_kind_of_line_break) {
    EXPECT_THAT(words(lines({"a ", "b\r", "c\n", "\r", "d\r\ne", "\rf ", "/g ", "\\h", "\r"})),
                ElementsAre("a b", "c", "d", "e", "f ", "g ", "h"));
}

TEST(Lines, A_syllable_keeps_its_tick_and_its_place_in_the_engines_table) {
    const auto built = lines({"one ", "two\nthree"});
    ASSERT_EQ(built.size(), 2u);
    EXPECT_EQ(built[0].syllables[1].lyric, 2);
    EXPECT_EQ(built[1].syllables[0].lyric, 2);
    EXPECT_EQ(built[1].tick(), 480u);
}

TEST(Lines, A_character_spread_over_two_syllables_goes_to_the_first) {
    const auto built = lines({"caf\xC3", "\xA9 ", "au"});
    ASSERT_EQ(built.size(), 1u);
    EXPECT_EQ(built[0].syllables[0].text, "café");
    EXPECT_EQ(built[0].syllables[1].text, " ");
}

TEST(Lines, Runs_of_spaces_become_one_and_blank_lines_vanish) {
    EXPECT_THAT(words(lines({"  A ", " ma", " ", " zing", "\r", " ", "\r", "grace "})),
                ElementsAre("A ma zing", "grace "));
}

TEST(Lines, Words_that_a_song_runs_together_are_spaced) {
    EXPECT_THAT(words(lines({"Stil", "le", "Nacht,", "hei-", "li", "ge", "Nacht!"})),
                ElementsAre("Stil le Nacht, hei-li ge Nacht! "));
    // Japanese has no spaces, and a song of whole lines needs none around them.
    EXPECT_THAT(words(lines({"春", "が", "来", "た", "ど", "こ", "に"})),
                ElementsAre("春が来たどこに"));
    EXPECT_THAT(words(lines({"one\n", "two\n", "three\n", "four\n", "five\n", "six\n"})),
                ElementsAre("one", "two", "three", "four", "five", "six"));
}

TEST(Lines, Much_too_long_lines_are_divided_between_words_at_the_longest_pause) {
    std::vector<TimedBytes> entries = {{0, "\r"}};
    std::uint32_t tick = 0;
    for (int i = 0; i < 20; ++i) {
        entries.push_back({tick, "syl"});
        entries.push_back({tick + 100, "lable "});
        tick += i % 4 == 3 ? 2000u : 200u;
    }
    const auto built = buildLines(entries, TextDecoder("UTF-8"));
    ASSERT_EQ(built.size(), 4u);
    EXPECT_EQ(built[0].words(), "syllable syllable syllable syllable ");
    EXPECT_EQ(built[1].syllables.size(), 8u);
    EXPECT_EQ(built[3].words().size(), 72u);
}

TEST(Chords, Names_are_told_from_other_texts) {
    for (const char* name :
         {"C", "F#m", "Bb7", "Esus4", "Am7", "D7/A", "Cmaj7", "C#dim", "G/B", "H7", "Cm7b5", "C6/9",
          "Gadd9", "E7(#9)", "F♯m", "Bø", "N.C.", "Aaug", "D-7"}) {
        EXPECT_TRUE(isChordName(name)) << name;
    }
    for (const char* text : {"", "c", "note track", "Guitar", "Chorus", "Amen", "Intro", "J7", "7",
                             "G/", "C/x", "creator: ", "Bass", "@V0100", "Drums", "C\r"}) {
        EXPECT_FALSE(isChordName(text)) << text;
    }
}

TEST(Chords, Stand_over_the_syllable_that_they_are_played_at) {
    const auto built = withChords(lines({"one ", "two ", "three\n", "four"}),
                                  {{0, "C"}, {470, "G"}, {530, " Am "}, {700, "F"}, {1435, "D"}});
    EXPECT_THAT(texts(built),
                ElementsAre("[0:00.0] [C]one [G][Am]two [F]three", "[0:01.5] [D]four"));
}

TEST(Chords, Away_from_words_make_lines_of_their_own_unless_there_is_only_one) {
    std::vector<TimedBytes> entries = table({"one", "two\n"});
    entries.push_back({20000, "three"});
    const auto words = buildLines(entries, TextDecoder("UTF-8"));
    EXPECT_THAT(texts(withChords(words, {{1000, "C"}, {4800, "D"}, {6000, "E"}, {22500, "F"}})),
                ElementsAre("[0:00.0] onetwo [C]", "[0:05.0] [D] [E]", "[0:20.8] three [F]"));
    std::vector<TimedBytes> many;
    for (std::uint32_t i = 0; i < 10; ++i) {
        many.push_back({i * 1920, "G"});
    }
    const auto alone = withChords({}, many);
    ASSERT_EQ(alone.size(), 2u);
    EXPECT_EQ(alone[0].chords.size(), 8u);
    EXPECT_EQ(alone[1].tick(), 8u * 1920u);
}

TEST(LineFollower, Shows_the_next_line_shortly_before_it_begins) {
    std::vector<TimedBytes> entries = table({"one ", "two\n"});
    entries.push_back({9600, "three"});
    const auto built = buildLines(entries, TextDecoder("UTF-8"));
    const Timeline timeline({}, kDivision);
    LineFollower follower(built, timeline);
    EXPECT_EQ(follower.lineAt(9000), 0u) << "nothing was sung yet";
    follower.lyric(1);
    EXPECT_FALSE(follower.complete(0));
    EXPECT_EQ(follower.lineAt(9000), 0u) << "the line is not sung to its end";
    follower.lyric(2);
    EXPECT_TRUE(follower.complete(0));
    EXPECT_EQ(follower.lineAt(8639), 0u);
    EXPECT_EQ(follower.lineAt(8640), 1u);
    follower.lyric(3);
    EXPECT_EQ(follower.lineAt(0), 1u);
}

TEST(LineFollower, A_line_is_complete_when_a_later_one_has_begun) {
    const auto built = withChords(lines({"one ", "two\n", "three"}), {{700, "C"}});
    const Timeline timeline({}, kDivision);
    LineFollower follower(built, timeline);
    follower.lyric(2);
    EXPECT_FALSE(follower.complete(0)) << "its chord is missing";
    follower.lyric(3);
    EXPECT_TRUE(follower.complete(0));
}

TEST(WrappedLines, Fit_and_keep_every_word_and_chord_in_place) {
    const auto built =
        withChords(lines({"Daisy, ", "Daisy, ", "give ", "me ", "your ", "ans", "wer ", "do"}),
                   {{960, "C"}, {2400, "G"}, {3400, "D"}, {4000, "E"}});
    const auto parts = karaoke::wrapLines(built, 16);
    EXPECT_THAT(texts(parts), ElementsAre("[0:00.0] Daisy, Daisy,", "[0:01.0] [C]give me your",
                                          "[0:02.5] [G]answer [D]do [E]"));
    // A word that is too long stays whole where it is one syllable and is divided where it is not.
    EXPECT_THAT(
        words(karaoke::wrapLines(lines({"incomprehensible ", "in", "com", "pre", "hen"}), 6)),
        ElementsAre("incomprehensible ", "incom", "prehen"));
}
