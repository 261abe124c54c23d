// Start-up and shut-down: outputs, players, timer period, and calls that are refused.
#include <array>

#include "tests/support/engine_test.h"

using ::testing::ElementsAre;

namespace {

constexpr MMRESULT kAllocated = 4;
constexpr std::uint32_t kNoteOn = 0x643C90;

} // namespace

class StartUp : public EngineTest {
protected:
    /// A machine without an engine on it.
    void prepareMachine() {
        start();
        mm_EndEngine();
    }
};

TEST_F(StartUp, Without_outputs_a_song_plays_in_silence) {
    outputs = 0;
    start();
    SongBuilder song;
    song.track().note(0, 60, 48);
    play(song);
    playToEnd();
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_END, 0, 0}));
}

TEST_F(StartUp, Opens_the_first_32_outputs_and_closes_each_once) {
    outputs = machine::kMaxOutputs;
    settings.deviceIndex1 = 31;
    settings.deviceIndex2 = 0;
    start();
    mm_ShortMessage(mm1, kNoteOn);
    mm_ShortMessage(mm2, kNoteOn);
    EXPECT_THAT(sent(), ElementsAre("31: 90 3C 64", "0: 90 3C 64"));
    mm_EndEngine();
    mm_EndEngine();
    for (int i = 0; i < machine::kMaxOutputs; ++i) {
        const int times = i < 32 ? 1 : 0;
        EXPECT_EQ(machine::output(i).opened, times) << i;
        EXPECT_EQ(machine::output(i).resets, times) << i;
        EXPECT_EQ(machine::output(i).closed, times) << i;
    }
}

TEST_F(StartUp, Binds_the_players_as_flags_and_device_indexes_ask) {
    struct Case {
        std::uint16_t flags; // bits from 4 on are not read
        std::uint32_t index1, index2;
        bool player1, player2;
    };
    for (const Case& one : std::to_array<Case>({{0x0000, 0, 1, true, false},
                                                {0x0001, 0, 1, true, true},
                                                {0x0003, 0, 1, true, false},
                                                {0xFFF5, 0, 1, true, true},
                                                {0xFFFA, 0, 1, true, false},
                                                {0x0001, 2, 31, false, false},
                                                {0x0001, 32, 0x80000000, false, false},
                                                {0x0001, 0xFFFFFFFF, 0, false, true}})) {
        settings.flags = one.flags;
        settings.deviceIndex1 = one.index1;
        settings.deviceIndex2 = one.index2;
        start();
        EXPECT_EQ(mm1 != nullptr, one.player1) << one.index1;
        EXPECT_EQ(mm2 != nullptr, one.player2) << one.flags << ", " << one.index2;
        EXPECT_EQ(+MM2.hmo, mm2);
        mm_EndEngine();
    }
}

TEST_F(StartUp, An_output_that_no_longer_opens_leaves_no_handle_of_the_earlier_run) {
    prepareMachine();
    machine::output(1).openResult = kAllocated;
    start();
    EXPECT_NE(mm1, nullptr);
    EXPECT_EQ(mm2, nullptr);
    mm_EndEngine();
    EXPECT_EQ(machine::output(0).closed, 2);
    EXPECT_EQ(machine::output(1).closed, 1);
}

TEST_F(StartUp, The_timer_period_is_held_within_what_the_timer_can_do) {
    struct Case {
        unsigned longest;
        std::int16_t wanted, period;
    };
    prepareMachine();
    for (const Case& one : std::to_array<Case>({{500, 0, 5},
                                                {500, 4, 5},
                                                {500, 20, 20},
                                                {500, 501, 500},
                                                {500, -1, 500},
                                                {500, -32768, 500},
                                                {65535, 32767, 32767},
                                                {1000000, 20, 20},
                                                {1000000, -1, 32767}})) {
        machine::setTimerLimits(5, one.longest);
        settings.timerPeriod = one.wanted;
        start();
        EXPECT_EQ(g_timerPeriod, one.period) << one.wanted << " within " << one.longest;
        mm_EndEngine();
    }
    machine::setTimerLimits(0, 0);
}

TEST_F(StartUp, Is_refused_while_the_engine_runs_and_without_settings_or_lock) {
    start();
    MMINIT other = settings;
    other.timerPeriod = 33;
    other.deviceIndex1 = 1;
    HMIDIOUT handle = nullptr;
    g_lastError.store(7);
    EXPECT_EQ(mm_InitEngine(&other, &handle, &handle), 0);
    mm_EndEngine();
    other.lock = nullptr;
    EXPECT_EQ(mm_InitEngine(&other, &handle, &handle), 0);
    EXPECT_EQ(mm_InitEngine(nullptr, &handle, &handle), 0);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(mm_GetLastError(), 7u);
    EXPECT_EQ(+MM1.hmo, mm1);
    EXPECT_EQ(g_timerPeriod, 10);
    EXPECT_EQ(machine::output(0).opened, 1);
    EXPECT_EQ(mm_InitEngine(&settings, nullptr, nullptr), 1) << "handles need not be taken";
}

TEST_F(StartUp, After_a_shut_down_with_open_songs_works_again) {
    SongBuilder song;
    song.track().note(0, 60, 9600);
    start();
    mm_SetMasterTranspose(3);
    play(song);
    ASSERT_EQ(mm_Open(mm2, song.write().c_str(), 0, 0, 0, nullptr), 1);
    mm_StartSync(mm2);
    mm_EndEngine();
    EXPECT_EQ(+MM1.playing + MM2.playing, 0);
    EXPECT_EQ(mm_GetUnits(mm1), 480) << "getters keep answering";
    sent();
    machine::passPeriods(5, 10);
    EXPECT_THAT(sent(), ElementsAre());
    settings.resetGap = -5;
    start();
    EXPECT_EQ(g_masterTranspose, 0);
    EXPECT_EQ(g_resetGap, 0) << "a gap below 0 counts as 0";
    mm_Close(mm1);
    play(song);
    ticks(1);
    EXPECT_THAT(sent(0x90), ElementsAre("0: 90 3C 64"));
}
