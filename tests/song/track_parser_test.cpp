// The track parser, byte by byte.
#include "tests/song/song_test.h"

using ::testing::ElementsAre;
using ::testing::SizeIs;

class TrackParser : public SongTest {
protected:
    /// A song of one track that holds these bytes.
    static Bytes fileOf(std::initializer_list<int> bytes) {
        SongBuilder song(1, 0);
        song.track().raw(bytes);
        return song.bytes();
    }

    /// Its events, all of them; none when it is refused.
    std::vector<std::string> eventsOf(std::initializer_list<int> bytes) {
        const std::string name = writeFile(fileOf(bytes));
        const bool opened = mm_Open(mm1, name.c_str(), 0, 0, 1, nullptr) == 1;
        return opened ? eventLines(MM1) : std::vector<std::string>{};
    }

    void refuse(std::initializer_list<int> bytes, std::uint32_t code) {
        expectRefused(fileOf(bytes), code, ::testing::PrintToString(std::vector<int>(bytes)));
    }
};

TEST_F(TrackParser, Every_message_is_kept_with_its_own_number_of_data_bytes) {
    EXPECT_THAT(eventsOf({0, 0x81, 60, 1,    1, 0x92, 61, 0, 1,    0xA3, 62, 3,    1, 0xB4,
                          7, 4,    1,  0xC5, 5, 1,    7,  1, 0xD6, 6,    1,  0xE7, 7, 8}),
                ElementsAre("0 81 3C 01 00", "1 92 3D 00 00", "2 A3 3E 03 00", "3 B4 07 04 00",
                            "4 C5 05 00 00", "5 C5 07 00 00", "6 D6 06 00 00", "7 E7 07 08 00"));
    EXPECT_THAT(eventsOf({0, 0xF1, 9, 1,    10, 0,    0xF2, 10,   11, 0,    0xF3, 12,
                          0, 0xF6, 0, 0xF8, 0,  0xFA, 0,    0xFB, 0,  0xFC, 0,    0xFE}),
                ElementsAre("0 F1 09 00 00", "1 F1 0A 00 00", "1 F2 0A 0B 00", "1 F3 0C 00 00",
                            "1 F6 00 00 00", "1 F8 00 00 00", "1 FA 00 00 00", "1 FB 00 00 00",
                            "1 FC 00 00 00", "1 FE 00 00 00"));
}

TEST_F(TrackParser, Running_status_survives_meta_events_and_system_exclusive) {
    EXPECT_THAT(eventsOf({0, 0x90, 0x3C, 0x64, 0,    0x3C, 0,    5,    0xFF, 1,    1, 'x',
                          1, 0x3E, 0x40, 0,    0xF0, 2,    0x7D, 0xF7, 0,    0x3E, 0}),
                ElementsAre("0 90 3C 64 00", "0 90 3C 00 00", "6 90 3E 40 00", "6 F0 00 00 03",
                            "6 90 3E 00 00"));
    SongBuilder song;
    song.track().noteOn(0, 60);
    song.track().raw({0, 60, 64});
    expectRefused(song.bytes(), ENGINE_ERR_STATUS, "the status of another track");
}

TEST_F(TrackParser, Unknown_and_missing_statuses_are_refused) {
    refuse({0, 0x3C, 0x64}, ENGINE_ERR_STATUS);
    for (const int status : {0xF4, 0xF5, 0xF9, 0xFD}) {
        refuse({0, 0x90, 60, 64, 0, status, 1, 1}, ENGINE_ERR_STATUS);
    }
    for (const int status : {0xF6, 0xF8, 0xFA, 0xFB, 0xFC, 0xFE}) {
        refuse({0, status, 0, 60, 64}, kEarlierError);
    }
}

TEST_F(TrackParser, System_exclusive_ends_with_F7_and_has_one_or_two_length_bytes) {
    EXPECT_THAT(
        eventsOf({0, 0xF0, 5, 0x7E, 0x7F, 9, 1, 0xF7, 3, 0xF7, 0x80, 2, 0x7D, 0xF7, 0, 0x90, 1, 1}),
        ElementsAre("0 F0 00 00 06", "3 F0 00 01 03", "3 90 01 01 00"));
    refuse({0, 0xF0, 5, 0x7E, 0x7F, 9, 1, 0}, ENGINE_ERR_SYSEX);
    refuse({0, 0xF7, 1, 0, 0xF7}, ENGINE_ERR_SYSEX);
    refuse({0, 0xF0, 0, 0xF7}, ENGINE_ERR_SYSEX);
    refuse({0, 0xF7, 0x80, 0, 0xF7}, ENGINE_ERR_SYSEX);
    refuse({0, 0xF0, 0x80, 0x80, 1, 0xF7}, ENGINE_ERR_SYSEX);
    refuse({0, 0xF0, 3, 0x7E, 0x7F}, ENGINE_ERR_SYSEX);
    refuse({0, 0xF0}, ENGINE_ERR_SYSEX);
    for (const std::size_t length : {127u, 128u, 16382u}) {
        SongBuilder song;
        song.track().systemExclusive(Bytes(length, 1)).noteOn(0, 60);
        EXPECT_EQ(open(song), 1) << length;
    }
    Bytes tooLong(16383, 1);
    tooLong[126] = 0xF7; // where a message of two length bytes would end
    SongBuilder song;
    song.track().systemExclusive(tooLong);
    expectRefused(song.bytes(), ENGINE_ERR_SYSEX, "a third length byte");
}

TEST_F(TrackParser, Delta_times_keep_their_low_32_bits) {
    EXPECT_THAT(eventsOf({0x81, 0x80, 0x80, 0, 0x90, 1, 1, 0x81, 0x80, 0x80, 0x80, 0x80, 5, 2, 2}),
                ElementsAre("2097152 90 01 01 00", "2097157 90 02 02 00"));
    EXPECT_EQ(+MM1.vlqLength, 6);
    // A single track is not sorted, not even when its time passes 2^32.
    SongBuilder song;
    song.track().raw({0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 1, 1, 2, 2, 2});
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(eventLines(MM1), ElementsAre("4294967295 90 01 01 00", "1 90 02 02 00"));
    song.track();
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(eventLines(MM1), ElementsAre("1 90 02 02 00", "4294967295 90 01 01 00"));
}

TEST_F(TrackParser, What_the_end_of_the_file_cuts_off_reads_as_zero_or_fails) {
    EXPECT_THAT(eventsOf({0, 0x90}), ElementsAre("0 90 00 00 00"));
    EXPECT_THAT(eventsOf({0, 0x90, 0x3C, 0x40, 0x87}),
                ElementsAre("0 90 3C 40 00", "896 90 00 00 00"));
    EXPECT_THAT(eventsOf({0, 0xFF, 0x51, 3, 1, 2, 3}), ElementsAre("0 51 01 02 03"));
    refuse({0}, ENGINE_ERR_STATUS);
    refuse({0, 0xFF}, kEarlierError);
    refuse({0, 0xFF, 0x01}, kEarlierError);
    refuse({0, 0xFF, 0x01, 2, 'A'}, kEarlierError);
    refuse({0, 0xFF, 0x01, 0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 'A'}, kEarlierError);
    refuse({0, 0xFF, 0x51, 4, 1, 2, 3}, kEarlierError);
    EXPECT_EQ(+MM1.eventCount, 0) << "nothing of a cut meta event is used";
}

TEST_F(TrackParser, A_chunk_ends_at_its_declared_length_whatever_it_holds) {
    SongBuilder song;
    song.track().raw({0, 0x90, 0x3C}); // the next byte in the file is the M of the next chunk
    song.track().raw({0, 0xFF, 0x2F, 0, 7, 0x91, 1, 2});
    song.track();
    song.track().raw({0, 0xFF, 0x7F, 12}); // reaches into the events of the last chunk
    song.track().raw({8, 0x92, 3, 4, 1, 5, 6});
    ASSERT_EQ(open(song), 1);
    EXPECT_THAT(eventLines(MM1),
                ElementsAre("0 90 3C 4D 00", "7 91 01 02 00", "8 92 03 04 00", "9 92 05 06 00"));
    EXPECT_EQ(+MM1.tracks[2].parsed, 1);
    EXPECT_EQ(+MM1.tracks[2].runningStatus, -1);
}

TEST_F(TrackParser, A_meta_event_is_read_behind_its_whole_length_and_stepped_over_whole) {
    SongBuilder song;
    TrackBuilder& track = song.track().event({0xFF, 0x05, 0x80, 0x80, 2, 'A', 'm'});
    track.at(10).lyric(std::string(40000, 'a')).at(20).lyric("on").noteOn(0, 60);
    ASSERT_EQ(open(song), 1);
    const std::vector<std::string> lines = lyricLines(MM1);
    // Of the long one 32767 bytes count, its type and three length bytes among them.
    ASSERT_THAT(lines, SizeIs(2 + 415 + 1));
    EXPECT_EQ(lines[1], "0 Am");
    EXPECT_EQ(lines[2], "10 " + std::string(79, 'a'));
    EXPECT_EQ(lines[416], "10 " + std::string(57, 'a'));
    EXPECT_EQ(lines[417], "20 on");
    EXPECT_THAT(eventLines(MM1), ElementsAre("20 90 3C 64 00"));
}
