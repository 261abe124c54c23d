// The store of a song's system-exclusive messages.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;

namespace {

/// So many bytes between F0 and F7, each different from its neighbours.
Bytes body(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i % 127);
    }
    return bytes;
}

} // namespace

class SystemExclusive : public EngineTest {};

TEST_F(SystemExclusive, Messages_are_stored_whole_and_referred_to) {
    start();
    const std::size_t sizes[] = {94, 95, 298, 16381};
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (std::size_t i = 0; i < std::size(sizes); ++i) {
        track.at(static_cast<std::uint32_t>(i)).systemExclusive(body(sizes[i]));
    }
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(eventLines(MM1),
                ElementsAre("0 F0 00 00 60", "1 F0 00 01 61", "2 F0 00 02 2C", "3 F0 00 03 FF"));
    for (std::size_t i = 0; i < std::size(sizes); ++i) {
        const MMSYSEX& slot = MM1.sysex[i];
        Bytes whole = body(sizes[i]);
        whole.insert(whole.begin(), 0xF0);
        whole.push_back(0xF7);
        ASSERT_EQ(+slot.ownBlock, i == 0 ? 0 : 1);
        const std::uint8_t* const stored = i == 0 ? slot.message.data : slot.message.block.ptr;
        EXPECT_EQ(Bytes(stored, stored + whole.size()), whole);
        EXPECT_TRUE(i == 0 || slot.message.block.length == static_cast<int>(whole.size()));
    }
}

TEST_F(SystemExclusive, The_three_reset_messages_are_recognised) {
    start();
    const std::pair<Bytes, int> messages[] = {
        {{0x7E, 0x7F, 9, 1}, 1},
        {{0x7E, 0x00, 9, 1}, 1},
        {{0x7E, 0x01, 9, 1}, 0},
        {{0x7E, 0x7F, 9, 2}, 0},
        {{0x7F, 0x7F, 9, 1}, 0},
        {{0x7E, 0x7F, 9, 1, 1}, 0},
        {{0x41, 0x10, 0x42, 0x12, 0x40, 0, 0x7F, 0, 0x41}, 1},
        {{0x41, 0x11, 0x42, 0x12, 0x40, 0, 0x7F, 0, 0x41}, 0},
        {{0x41, 0x10, 0x42, 0x12, 0x40, 0, 0x7F, 0, 0x42}, 0},
        {{0x43, 0x10, 0x4C, 0, 0, 0x7E, 0}, 1},
        {{0x43, 0x10, 0x4C, 0, 0, 0x7E, 1}, 0},
    };
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (const auto& message : messages) {
        track.systemExclusive(message.first);
    }
    ASSERT_EQ(open(song), 1);
    for (std::size_t i = 0; i < std::size(messages); ++i) {
        EXPECT_EQ(+MM1.sysex[i].isReset, messages[i].second) << i;
        EXPECT_EQ(+MM1.sysex[i].isKaraokeText, 0);
    }
    EXPECT_EQ(+MM1.resetCount, 4);
}

TEST_F(SystemExclusive, The_store_holds_620_messages_and_a_song_plays_on_without_the_rest) {
    start();
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (std::uint32_t i = 0; i < 622; ++i) {
        track.at(i).systemExclusive({0x7D, static_cast<int>(i % 128)});
    }
    track.karaoke(4, "read all the same");
    ASSERT_EQ(open(song, 0, 1), 1);
    EXPECT_EQ(+MM1.sysexCount, 620);
    EXPECT_THAT(eventLines(MM1)[619], "619 F0 02 6B 04");
    EXPECT_EQ(mm_GetNumEvents(mm1), 621) << "the end note alone follows";
    EXPECT_EQ(MM1.sysex[619].message.data[2], 619 % 128);
    EXPECT_STREQ(MM1.textLine[0], "read all the same");
}

TEST_F(SystemExclusive, A_long_message_without_memory_is_left_out) {
    start();
    SongBuilder song;
    song.track().systemExclusive(body(200)).systemExclusive({0x7D}).noteOn(0, 60);
    for (const char* const function : {"GlobalAlloc", "GlobalLock"}) {
        machine::failCall(function, 8); // behind the seven blocks of every song
        ASSERT_EQ(open(song), 1);
        EXPECT_THAT(eventLines(MM1), ElementsAre("0 F0 00 00 03", "0 90 3C 64 00"));
        EXPECT_EQ(+MM1.sysexCount, 1);
        EXPECT_EQ(+MM1.sysex[0].ownBlock, 0);
        EXPECT_EQ(MM1.sysex[0].message.data[1], 0x7D);
    }
}

TEST_F(SystemExclusive, Without_a_store_messages_are_dropped_but_words_are_read) {
    settings.flags = 0;
    start();
    SongBuilder song;
    song.track().systemExclusive({0x7E, 0x7F, 9, 1}).systemExclusive(body(200));
    song.track()
        .karaoke(7, "x")
        .karaoke(4, "words")
        .at(1)
        .karaoke(7)
        .at(960)
        .karaoke(8)
        .noteOn(0, 60);
    ASSERT_EQ(open(song), 1);
    EXPECT_EQ(+MM1.sysex, nullptr);
    EXPECT_EQ(+MM1.resetCount, 0);
    EXPECT_THAT(eventLines(MM1), ElementsAre("960 90 3C 64 00"));
    ASSERT_EQ(mm_GetNumLyrics(mm1), 2);
    EXPECT_STREQ(mm_GetPointerLyrics(mm1, 1)->text, "words");
}
