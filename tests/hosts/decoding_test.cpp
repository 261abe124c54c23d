// Texts of songs: UTF-8, other encodings, and guessing between them.
#include <gtest/gtest.h>

#include "shared/encoding_guess.h"
#include "shared/text_decoder.h"
#include "shared/utf8.h"

using namespace host;

TEST(Utf8, Malformed_overlong_surrogate_and_cut_off_sequences_are_no_characters) {
    for (const char* bad :
         {"\x80", "\xC0\xAF", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE6\x98", "\xC3(", "\xF0\x9F\x8E", "\xFF"}) {
        EXPECT_FALSE(isUtf8(bad)) << testing::PrintToString(bad);
        EXPECT_EQ(utf8CharacterLength(bad, 0), 0u) << testing::PrintToString(bad);
    }
    for (const char* good : {"\x7F", "\xC2\x80", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                             "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(isUtf8(good)) << testing::PrintToString(good);
    }
}

TEST(Utf8, Code_points_of_all_lengths_are_read) {
    EXPECT_EQ(utf8CodePoint("A"), U'A');
    EXPECT_EQ(utf8CodePoint("ß"), U'ß');
    EXPECT_EQ(utf8CodePoint("春"), U'春');
    EXPECT_EQ(utf8CodePoint("🎵"), U'🎵');
}

TEST(Utf8, Only_a_last_character_without_its_last_bytes_is_taken_away) {
    EXPECT_EQ(withoutBrokenTail("caf\xC3"), "caf");
    EXPECT_EQ(withoutBrokenTail("a\xF0\x9F\x8E"), "a");
    EXPECT_EQ(withoutBrokenTail("café"), "café");
    EXPECT_EQ(withoutBrokenTail("🎵"), "🎵");
    EXPECT_EQ(withoutBrokenTail("\x80\x80\x80\x80"), "\x80\x80\x80\x80");
    EXPECT_EQ(withoutBrokenTail(""), "");
}

TEST(TextDecoder, Characters_know_how_many_bytes_they_were_made_of) {
    const auto characters = TextDecoder("CP932").decode("a\x8F\x74\xB1");
    ASSERT_EQ(characters.size(), 3u);
    EXPECT_EQ(characters[0].utf8, "a");
    EXPECT_EQ(characters[1].utf8, "春");
    EXPECT_EQ(characters[1].bytes, 2u);
    EXPECT_EQ(characters[2].utf8, "ｱ");
}

TEST(TextDecoder, Broken_bytes_become_replacement_characters_and_a_cut_off_end_vanishes) {
    EXPECT_EQ(TextDecoder("UTF-8").text("a\xFF\xC3\xA9"), "a\xEF\xBF\xBDé");
    EXPECT_EQ(TextDecoder("UTF-8").text("caf\xC3"), "caf");
    EXPECT_EQ(TextDecoder("CP932").text("\x8F\x74\x8F"), "春");
    // One byte of Windows-1252 that means nothing.
    EXPECT_EQ(TextDecoder("WINDOWS-1252").text("x\x81y"), "x\xEF\xBF\xBDy");
}

#ifndef _WIN32
TEST(TextDecoder, Encodings_with_a_state_keep_it_from_character_to_character) {
    EXPECT_EQ(TextDecoder("ISO-2022-JP").text("\x1b$B=U\x24\x2C\x1b(B!"), "春が!");
    // Vietnamese holds a letter back until it is known whether an accent follows.
    EXPECT_EQ(TextDecoder("CP1258").text("e\xEC"), "é");
    EXPECT_EQ(TextDecoder("CP1258").text("ba"), "ba");
}
#endif

TEST(TextDecoder, An_unknown_encoding_is_told_and_decodes_as_Windows_1252) {
    EXPECT_FALSE(TextDecoder::knows("klingon"));
    EXPECT_FALSE(TextDecoder::knows(""));
    EXPECT_TRUE(TextDecoder::knows("cp1251"));
    EXPECT_EQ(TextDecoder("klingon").text("\x80"), "€");
}

TEST(TextDecoder, Control_and_direction_characters_are_not_shown) {
    EXPECT_EQ(TextDecoder("UTF-8").text("a\x1b[2J\x7F\xC2\x9B\u202E\u2028z\t"), "a[2Jz");
}

TEST(EncodingGuess, Well_formed_texts_are_utf8_also_when_one_was_cut_short) {
    EXPECT_EQ(guessEncoding({"plain", ""}), kUtf8);
    EXPECT_EQ(guessEncoding({"caf\xC3", "Über allen Gipfeln"}), kUtf8);
}

TEST(EncodingGuess, A_few_high_bytes_are_western_european) {
    EXPECT_EQ(guessEncoding({"d\xE9j\xE0 vu", "Am7"}), kWesternEuropean);
}

TEST(EncodingGuess, Other_scripts_are_recognised_from_all_texts_together) {
    // Single lines are too short to tell.
    const std::vector<std::string> japanese = {"\x8F\x74\x82\xAA\x97\x88\x82\xBD",
                                               "\x82\xC7\x82\xB1\x82\xC9\x97\x88\x82\xBD",
                                               "\x8E\x52\x82\xC9\x97\x88\x82\xBD"};
    EXPECT_EQ(TextDecoder(guessEncoding(japanese)).text(japanese[0]), "春が来た");
    const std::vector<std::string> russian = {
        "\xCF\xF3\xF1\xF2\xFC \xE1\xE5\xE3\xF3\xF2 ",
        "\xED\xE5\xF3\xEA\xEB\xFE\xE6\xE5 \xEF\xE5\xF8\xE5\xF5\xEE\xE4\xFB "};
    EXPECT_EQ(TextDecoder(guessEncoding(russian)).text(russian[0]), "Пусть бегут ");
}

#ifdef _WIN32
TEST(EncodingGuess, Chinese_and_Korean_are_told_apart_by_their_commonest_characters) {
    const std::vector<std::string> chinese = {"\xCE\xD2\xB0\xAE\xC4\xE3",
                                              "\xC4\xE3\xCA\xC7\xCE\xD2\xB5\xC4\xD0\xC4",
                                              "\xC3\xBB\xD3\xD0\xC4\xE3\xB5\xC4\xCC\xEC\xBF\xD5"};
    EXPECT_EQ(TextDecoder(guessEncoding(chinese)).text(chinese[0]), "我爱你");
    const std::vector<std::string> korean = {"\xB3\xAA\xB4\xC2 \xB3\xCA\xB8\xA6 ",
                                             "\xBB\xE7\xB6\xFB\xC7\xD8 ",
                                             "\xB1\xD7\xB4\xEB \xB8\xB6\xC0\xBD\xC0\xBA"};
    EXPECT_EQ(TextDecoder(guessEncoding(korean)).text(korean[0]), "나는 너를 ");
}
#endif
