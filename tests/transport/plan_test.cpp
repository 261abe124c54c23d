// Play ranges, the next locator and the rewind: what they make of the plan. The tick's tests play it.
#include <array>

#include "tests/support/engine_test.h"

using ::testing::IsEmpty;

namespace {

using Table = std::array<MMLOOP, MM_MAX_LOOPS>;

/// A table with these ranges first and unused records after them.
Table tableOf(std::initializer_list<MMLOOP> ranges) {
    Table table;
    table.fill({0, MMLOOP_UNUSED, 0, 0, 0, 0});
    std::copy(ranges.begin(), ranges.end(), table.begin());
    return table;
}

/// The ranges of player 1 that are in use, as they stand.
std::string plan() {
    EXPECT_EQ(+MM1.curLoop, &MM1.loops[MM1.loopIndex]);
    std::string text;
    for (int i = 0; i < MM1.numLoops; ++i) {
        const MMLOOP& range = MM1.loops[i];
        text += (i == 0 ? "" : ", ") + std::to_string(range.start) + "-" +
                std::to_string(range.end) + " x" + std::to_string(range.repeats) + "/" +
                std::to_string(range.repeatsSet) + (range.endLocked != 0 ? " locked" : "");
    }
    return text;
}

} // namespace

class Plan : public EngineTest {
protected:
    /// A song that ends at tick 9600.
    void openSong(int endOnBeat = 0) {
        SongBuilder song;
        song.track().noteOn(0, 60).at(9600).noteOff(0, 60);
        ASSERT_EQ(open(song, 0, endOnBeat), 1);
    }
};

TEST_F(Plan, A_table_is_copied_with_its_passes_and_open_ends_filled_in) {
    start();
    openSong();
    const Table table = tableOf({{1, 0, 1920, 77, 2, 9}, {0, 3840, 0, 0, -5, 0}});
    mm_SetLoop(mm1, table.data());
    EXPECT_EQ(plan(), "0-1920 x2/2 locked, 3840-9600 x1/1");
    EXPECT_EQ(+MM1.loops[0].reserved, 77u);
    EXPECT_EQ(+MM1.loopsSet, 1);
    mm_StartSync(mm1);
    playToEnd();
    EXPECT_EQ(plan(), "0-1920 x1/2 locked, 3840-9600 x1/1") << "counted down";
    EXPECT_EQ(+MM1.loopIndex, 1);
    Table full;
    full.fill({0, 10, 20, 0, 3, 0});
    mm_SetLoop(mm1, full.data());
    EXPECT_EQ(+MM1.numLoops, 10);
    EXPECT_EQ(+MM1.loopIndex, 0);
    EXPECT_EQ(+MM1.loops[9].repeats, 3);
}

TEST_F(Plan, Null_is_the_whole_song_once_or_practically_for_ever) {
    start();
    for (const int endOnBeat : {0, 1, -1}) {
        openSong(endOnBeat);
        const Table table = tableOf({{1, 50, 60, 77, 2, 0}, {0, 70, 80, 0, 1, 0}});
        mm_SetLoop(mm1, table.data());
        mm_SetLoop(mm1, nullptr);
        EXPECT_EQ(plan(), endOnBeat == 0 ? "0-9600 x1/1 locked" : "0-9600 x32767/32767 locked");
        EXPECT_EQ(+MM1.loops[0].reserved, 77u) << "kept, as the lock is";
    }
}

TEST_F(Plan, A_locator_replaces_the_plan_from_the_current_range_on) {
    struct Case {
        std::uint16_t locked;
        std::uint32_t newEnd, nextStart;
        const char* plan;
    };
    start();
    openSong();
    for (const Case& one : std::to_array<Case>({
             {0, MMLOCATOR_KEEP_END, MMLOCATOR_NO_NEXT, "3000-4000 x1/1 locked"},
             {0, 7680, MMLOCATOR_NO_NEXT, "3000-7680 x1/1 locked"},
             {0, MMLOCATOR_KEEP_END, 960, "3000-4000 x1/1, 960-9600 x1/7"},
             {0, 7680, 960, "3000-7680 x1/1, 960-9600 x1/7"},
             {0, 0, 0, "3000-0 x1/1, 0-9600 x1/7"},
             {1, MMLOCATOR_KEEP_END, MMLOCATOR_NO_NEXT, "3000-4000 x1/1 locked"},
             {1, 7680, MMLOCATOR_NO_NEXT, "3000-4000 x1/1 locked"},
             {1, MMLOCATOR_KEEP_END, 960, "3000-4000 x1/1, 960-9600 x1/7"},
             {1, 7680, 960, "3000-4000 x1/1, 960-9600 x1/7"},
         })) {
        const Table table =
            tableOf({{0, 0, 100, 0, 1, 0}, {one.locked, 3000, 4000, 5, 7, 0}, {0, 1, 2, 0, 1, 0}});
        mm_SetLoop(mm1, table.data());
        MM1.loopIndex = 1;
        MM1.curLoop = &MM1.loops[1];
        MM1.loopsSet = 0;
        mm_SetNextLocator(mm1, one.newEnd, one.nextStart);
        EXPECT_EQ(plan(), one.plan);
        EXPECT_EQ(+MM1.loopIndex, 0);
        EXPECT_EQ(+MM1.loopsSet, 1);
        for (int i = MM1.numLoops; i < MM_MAX_LOOPS; ++i) {
            EXPECT_EQ(+MM1.loops[i].start, MMLOOP_UNUSED) << i;
        }
    }
    EXPECT_EQ(mm_GetTicks(mm1), 0u) << "the position is not moved";
    mm_SetNextLocator(mm1, 5000, MMLOCATOR_NO_NEXT);
    EXPECT_EQ(plan(), "3000-5000 x1/1 locked") << "the next range had lifted the lock";
}

TEST_F(Plan, A_locator_without_a_current_range_starts_from_the_whole_song) {
    start();
    openSong(1);
    mm_SetNextLocator(mm1, 2000, 960);
    EXPECT_EQ(plan(), "0-2000 x1/1, 960-9600 x1/0");
    mm_SetNextLocator(mm2, 2000, 960); // no song: nothing to fault on
    EXPECT_EQ(+MM2.loops[1].end, 0u);
}

TEST_F(Plan, Rewind_halts_at_the_start_and_keeps_plan_tempo_and_settings) {
    start();
    openSong();
    const Table table = tableOf({{0, 0, 960, 0, 3, 0}});
    mm_SetLoop(mm1, table.data());
    mm_SetTempo(mm1, 500000, 50);
    mm_SetTranspose(mm1, 4, 0);
    mm_StartSync(mm1);
    ticks(60);
    MM1.click.timeSigTick = 5;
    MM1.lyricIndex = MM1.chordIndex = 1;
    MM1.beatsPerBar = 7;
    sent();
    posted();
    mm_RewindSync(mm1);
    EXPECT_THAT(sent(), IsEmpty()) << "no note is ended";
    EXPECT_THAT(posted(), IsEmpty());
    EXPECT_EQ(+MM1.playing, 0);
    EXPECT_EQ(+MM1.ticks + MM1.tickRemainder, 0u);
    EXPECT_EQ(+MM1.eventIndex + MM1.lyricIndex + MM1.chordIndex, 0);
    EXPECT_EQ(+MM1.eventPlay, +MM1.events);
    EXPECT_EQ(+MM1.lyricPlay, +MM1.lyrics);
    EXPECT_EQ(+MM1.chordPlay, +MM1.chords);
    EXPECT_EQ(+MM1.click.nextClick + MM1.click.timeSigTick, 0u);
    EXPECT_EQ(plan(), "0-960 x2/3") << "one pass is gone";
    EXPECT_EQ(+MM1.beatsPerBar, 7);
    EXPECT_EQ(mm_GetTempo(mm1), 250000u);
    mm_StartSync(mm1);
    ticks(1);
    EXPECT_THAT(sent(0x90), ::testing::ElementsAre("0: 90 40 64"));
}

TEST_F(Plan, Rewind_announces_position_chord_and_lyric_in_this_order_as_the_options_ask) {
    start();
    openSong();
    const Posted position{MMN_POSITION, 0, 0}, chord{MMN_CHORD, 0, 0}, lyric{MMN_LYRIC, 0, 0};
    const std::pair<std::uint32_t, std::vector<Posted>> cases[] = {{0x1C, {position, chord, lyric}},
                                                                   {0x2C, {position, chord, lyric}},
                                                                   {0x30, {position}},
                                                                   {0x08, {chord}},
                                                                   {0x04, {lyric}},
                                                                   {~0x3Cu, {}}};
    for (const auto& [options, expected] : cases) {
        mm_SetOptions(mm1, options);
        mm_RewindSync(mm1);
        EXPECT_EQ(posted(), expected) << options;
    }
}
