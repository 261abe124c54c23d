// Divisions that the engine does not know: which ones take their place, and where events end up.
#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/prepare/song_files.h"

using host::prepareSong;

namespace {

constexpr std::size_t kDivisionAt = 12;
constexpr std::size_t kTempoAt = 25; ///< of a tempo that is the first event

int divisionOf(const Bytes& song) {
    return song.at(kDivisionAt) << 8 | song.at(kDivisionAt + 1);
}

Bytes songOf(int division, const TrackBuilder& track) {
    return header(0, 1, division) + chunk("MTrk", track.data() + kEnd);
}

} // namespace

TEST(Divisions, An_exact_divisor_takes_the_place_of_one_that_is_too_fine) {
    const std::vector<std::array<int, 2>> pairs{{961, 960},   {1024, 512}, {1000, 500},
                                                {1920, 960},  {1536, 768}, {997, 960},
                                                {15360, 960}, {32767, 960}};
    for (const auto& [old, expected] : pairs) {
        TrackBuilder track;
        track.tempo(400000)
            .at(static_cast<std::uint32_t>(old))
            .note(0, 60, static_cast<std::uint32_t>(old));
        TrackBuilder same;
        same.tempo(400000)
            .at(static_cast<std::uint32_t>(expected))
            .note(0, 60, static_cast<std::uint32_t>(expected));
        EXPECT_EQ(prepareSong(songOf(old, track)).bytes, songOf(expected, same)) << old;
    }
}

TEST(Divisions, Rounding_does_not_add_up) {
    TrackBuilder fine;
    TrackBuilder rounded;
    for (std::uint32_t i = 0; i < 5000; ++i) {
        fine.at(i * 7).noteOn(0, 60).at(i * 7 + 5).noteOff(0, 60);
        rounded.at((i * 7 * 960 * 2 + 1001) / 2002).noteOn(0, 60);
        rounded.at(((i * 7 + 5) * 960 * 2 + 1001) / 2002).noteOff(0, 60);
    }
    // 1001 = 7 x 11 x 13 has no divisor between 480 and 960.
    EXPECT_EQ(prepareSong(songOf(1001, fine)).bytes, songOf(960, rounded));
}

TEST(Divisions, A_note_never_shrinks_to_nothing) {
    TrackBuilder fine;
    fine.note(0, 60, 1).note(0, 62, 1).at(2).note(0, 60, 9);
    TrackBuilder expected;
    // Tick 1 of 9600 rounds to 0; the first key is struck again at tick 2, which is 0 too.
    expected.noteOn(0, 60).noteOn(0, 62).noteOff(0, 60).noteOn(0, 60).at(1).noteOff(0, 62).noteOff(
        0, 60);
    const Bytes song = prepareSong(songOf(9600, fine)).bytes;
    EXPECT_EQ(song, prepareSong(Bytes(1, 0) + songOf(960, expected)).bytes);
}

TEST(Divisions, Every_frame_rate_keeps_its_ticks_exactly_as_long) {
    for (const int frames : {24, 25, 29, 30}) {
        for (int ticks = 1; ticks < 256; ++ticks) {
            TrackBuilder track;
            track.tempo(300000).note(0, 60, 1234);
            const Bytes song = prepareSong(songOf((256 - frames) << 8 | ticks, track)).bytes;
            const long division = divisionOf(song);
            const long tempo =
                song.at(kTempoAt + 1) << 16 | song.at(kTempoAt + 2) << 8 | song.at(kTempoAt + 3);
            TrackBuilder same;
            same.tempo(static_cast<std::uint32_t>(tempo)).note(0, 60, 1234);
            ASSERT_EQ(song, songOf(static_cast<int>(division), same)) << frames << "x" << ticks;
            ASSERT_LE(division, 960);
            // A tick lasts tempo / division microseconds; in 1001 seconds there are whole frames at all rates.
            const long framesIn1001 = frames == 29 ? 30000 : frames * 1001;
            ASSERT_EQ(tempo * framesIn1001 * ticks, division * 1001 * 1000000)
                << frames << "x" << ticks;
        }
    }
    TrackBuilder track;
    track.note(0, 60, 40);
    const Bytes milliseconds = prepareSong(songOf(0xE728, track)).bytes;
    EXPECT_EQ(divisionOf(milliseconds), 500);
}

TEST(Divisions, One_that_makes_no_sense_is_replaced_and_ticks_stay) {
    TrackBuilder track;
    track.tempo(300000).note(0, 60, 40);
    for (const int division : {0, 0xE700, 0x8001, 0xFF28}) {
        const host::PreparedSong song = prepareSong(songOf(division, track));
        EXPECT_EQ(song.bytes, songOf(480, track));
        EXPECT_THAT(song.notes, testing::ElementsAre(testing::HasSubstr("480")));
    }
}
