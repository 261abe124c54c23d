// The play ranges as the timer follows them. The songs move exactly two ticks a period.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

namespace {

constexpr int kDivision = 100;

std::vector<std::string> operator+(std::vector<std::string> lines,
                                   const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

const std::vector<std::string> kAllNotesOff = sweep(123);
const std::vector<std::string> kResets = sweep(121);

} // namespace

class PlayRanges : public EngineTest {
protected:
    /// A note with the number of every tenth tick from 0 to 100, which is the end of the song.
    static SongBuilder scale() {
        SongBuilder song(kDivision);
        TrackBuilder& track = song.track();
        for (int tick = 0; tick <= 100; tick += 10) {
            track.at(static_cast<std::uint32_t>(tick)).noteOn(0, tick);
        }
        return song;
    }

    void playRanges(const SongBuilder& song, std::initializer_list<MMLOOP> ranges,
                    int options = 0) {
        MMLOOP table[MM_MAX_LOOPS];
        std::fill(std::begin(table), std::end(table), MMLOOP{0, MMLOOP_UNUSED, 0, 0, 0, 0});
        std::copy(ranges.begin(), ranges.end(), table);
        ASSERT_EQ(open(song, options), 1);
        mm_SetLoop(mm1, table);
        mm_StartSync(mm1);
        posted();
        sent();
    }

    static MMLOOP range(std::uint32_t first, std::uint32_t end, std::int16_t repeats = 1) {
        return {0, first, end, 0, repeats, 0};
    }

    /// The numbers of the notes played since the last call.
    std::vector<int> notes() {
        std::vector<int> numbers;
        for (const std::string& line : sent(0x90)) {
            numbers.push_back(std::stoi(line.substr(6, 2), nullptr, 16));
        }
        return numbers;
    }

    Posted end() const {
        return {MMN_END, reinterpret_cast<WPARAM>(mm1), 0};
    }
};

TEST_F(PlayRanges, A_range_repeats_with_silence_a_reset_and_two_notifications_each_time) {
    start();
    playRanges(scale(), {range(0, 20, 3)});
    ticks(9);
    EXPECT_THAT(sent(), ElementsAre("0: 90 00 64", "0: 90 0A 64"));
    EXPECT_THAT(posted(), IsEmpty());
    ticks(1); // reaches 20 and goes on one period past 0
    EXPECT_EQ(+MM1.ticks, 2U);
    EXPECT_THAT(sent(),
                ElementsAreArray(kAllNotesOff + kResets + std::vector<std::string>{"0: 90 00 64"}));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_LOOP, 0, 0}, Posted{MMN_LOOP, 0, 0}));
    ticks(9);
    EXPECT_EQ(posted().size(), 2U);
    EXPECT_EQ(+MM1.loops[0].repeats, 1);
    EXPECT_EQ(+MM1.loops[0].repeatsSet, 3);
    ticks(8);
    EXPECT_THAT(notes(), ElementsAre(10, 0, 10));
    ticks(1);
    EXPECT_THAT(sent(), ElementsAreArray(kAllNotesOff));
    EXPECT_THAT(posted(), ElementsAre(end()));
    EXPECT_EQ(+MM1.playing, 0);
}

TEST_F(PlayRanges, A_range_that_begins_where_the_last_one_ended_follows_without_a_break) {
    start();
    playRanges(scale(), {range(0, 20), range(20, 41), range(41, 50)});
    ticks(10);
    EXPECT_EQ(+MM1.ticks, 20U);
    EXPECT_THAT(sent(), ElementsAre("0: 90 00 64", "0: 90 0A 64", "0: 90 14 64"));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_LOOP, 0, 20}));
    ticks(11); // 42 lies past the second range's end, which the third one begins with
    EXPECT_THAT(sent(), ElementsAre("0: 90 1E 64", "0: 90 28 64"));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_LOOP, 0, 41}));
}

TEST_F(PlayRanges, A_jump_leaves_out_what_lies_between_and_takes_the_state_along) {
    start();
    SongBuilder song = scale();
    song.track().at(25).program(4, 33).tempo(250000);
    playRanges(song, {range(0, 15), range(60, 0)}, MMOPT_POSITION | MMOPT_TEMPO | MMOPT_CHANNELS);
    ticks(7);
    EXPECT_THAT(notes(), ElementsAre(0, 10));
    ticks(1);                   // 16 is past the end
    EXPECT_EQ(+MM1.ticks, 64U); // one period at twice the speed
    EXPECT_THAT(sent(), ElementsAreArray(kAllNotesOff + kResets +
                                         std::vector<std::string>{"0: B4 00 00", "0: B4 20 00",
                                                                  "0: C4 21", "0: 90 3C 64"}));
    EXPECT_THAT(posted(),
                ElementsAre(Posted{MMN_PROGRAM, 4, 33 << 16}, Posted{MMN_TEMPO, 2, 250000},
                            Posted{MMN_POSITION, 0, 60}, Posted{MMN_LOOP, 0, 60}));
    playToEnd();
    EXPECT_THAT(notes(), ElementsAre(70, 80, 90));
}

TEST_F(PlayRanges, Ranges_may_go_back_and_overlap) {
    start();
    playRanges(scale(), {range(40, 60, 2), range(0, 25), range(20, 35)});
    playToEnd(); // the position is not moved to the first range's start
    EXPECT_THAT(notes(), ElementsAre(0, 10, 20, 30, 40, 50, 40, 50, 0, 10, 20, 20, 30));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_LOOP, 0, 40}, Posted{MMN_LOOP, 0, 40},
                                      Posted{MMN_LOOP, 0, 0}, Posted{MMN_LOOP, 0, 20}, end()));
}

TEST_F(PlayRanges, A_jump_discards_the_fraction_of_a_tick) {
    start();
    SongBuilder song(480);
    song.track().noteOn(0, 60).at(500).noteOn(0, 60).at(4800).noteOff(0, 60);
    playRanges(song, {range(0, 15), range(1000, 0)}); // forward, without a rewind on the way
    ticks(2);                                         // 19.2
    EXPECT_EQ(+MM1.ticks, 1009U);
    EXPECT_EQ(+MM1.tickRemainder, 76800000U);
    ticks(1);
    EXPECT_EQ(+MM1.ticks, 1019U);
}

TEST_F(PlayRanges, A_jump_past_the_end_of_the_song_stands_on_its_last_event) {
    start();
    playRanges(scale(), {range(0, 15), range(5000, 6000)});
    ticks(8);
    EXPECT_EQ(+MM1.ticks, 102U);
    EXPECT_THAT(notes(), ElementsAre(0, 10, 100));
    ticks(3000);
    EXPECT_EQ(+MM1.playing, 0);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_LOOP, 0, 5000}, end()));
}

TEST_F(PlayRanges, The_song_ends_without_the_events_of_its_last_tick) {
    start();
    play(scale());
    ticks(49);
    EXPECT_EQ(notes().back(), 90);
    ticks(1);
    EXPECT_THAT(sent(), ElementsAreArray(kAllNotesOff));
    EXPECT_THAT(posted(), ElementsAre(end()));
    ticks(10);
    EXPECT_EQ(+MM1.ticks, 100U);
    EXPECT_EQ(+MM1.eventIndex, 10);
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(PlayRanges, Nothing_more_is_played_after_the_last_event_of_a_longer_range) {
    start();
    playRanges(scale(), {range(0, 140)});
    ticks(69);
    EXPECT_EQ(notes().size(), 11U);
    EXPECT_EQ(+MM1.eventPlay, MM1.events + 10);
    EXPECT_EQ(+MM1.playing, 1);
    ticks(1);
    EXPECT_THAT(posted(), ElementsAre(end()));
}

TEST_F(PlayRanges, A_locator_set_while_playing_moves_the_end_and_the_continuation) {
    start();
    playRanges(scale(), {range(0, 20, 4), range(60, 0)});
    ticks(12); // the second pass
    posted();
    notes();
    mm_SetNextLocator(mm1, 46, 80);
    ticks(19);
    EXPECT_EQ(+MM1.ticks, 44U);
    ticks(1);
    EXPECT_EQ(+MM1.ticks, 82U);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_LOOP, 0, 80}));
    playToEnd();
    EXPECT_THAT(notes(), ElementsAre(10, 20, 30, 40, 80, 90));
}

TEST_F(PlayRanges, A_locator_behind_the_position_acts_in_the_next_period) {
    start();
    play(scale());
    ticks(20);
    notes();
    mm_SetNextLocator(mm1, 10, MMLOCATOR_NO_NEXT);
    ticks(1);
    EXPECT_THAT(posted(), ElementsAre(end()));
    EXPECT_EQ(+MM1.ticks, 42U);
    EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(PlayRanges, A_song_without_events_ends_at_once) {
    start();
    SongBuilder song;
    song.track();
    play(song);
    ticks(1);
    EXPECT_THAT(posted(), ElementsAre(end()));
}
