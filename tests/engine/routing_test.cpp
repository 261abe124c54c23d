// Which player a handle selects, and where a song channel's messages go.
#include <array>
#include <cstring>

#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Routing : public EngineTest {
protected:
    /// Default routes for both players.
    void startRouted() {
        start();
        mm_Close(mm1);
        mm_Close(mm2);
        sent();
    }
};

TEST_F(Routing, Handles_select_player_1_by_its_own_and_player_2_by_any_other) {
    outputs = 3;
    startRouted();
    EXPECT_EQ(mm_GetMM1(), &MM1);
    EXPECT_EQ(mm_GetMM2(), &MM2);
    EXPECT_EQ(mm_GetMM(mm1), &MM1);
    for (const HMIDIOUT other : {mm2, g_devices[2], HMIDIOUT{nullptr}}) {
        EXPECT_EQ(mm_GetMM(other), &MM2);
        mm_SetVolume(other, 3, 11);
        EXPECT_EQ(+MM2.volume[3], 11);
        MM2.volume[3] = 0;
    }
    EXPECT_EQ(+MM1.volume[3], 0);
    EXPECT_EQ(mm_GetInfo(g_devices[2]), &MM2.info);
}

TEST_F(Routing, Both_players_on_one_output_leave_player_2_out_of_reach_of_handles) {
    settings.deviceIndex2 = 0;
    start();
    EXPECT_EQ(mm1, mm2);
    EXPECT_EQ(mm_GetMM(mm2), &MM1);
    SongBuilder song;
    song.track().note(0, 60, 48);
    ASSERT_EQ(mm_Open(mm2, song.write().c_str(), 0, 0, 0, nullptr), 1);
    EXPECT_EQ(+MM1.eventCount, 2);
    EXPECT_EQ(+MM2.eventCount, 0);
    EXPECT_EQ(mm_GetMM(nullptr), &MM2) << "every other handle is player 2's";
}

TEST_F(Routing, A_channel_moves_to_another_output_and_is_silenced_on_the_old_one_if_asked) {
    startRouted();
    mm_SetChannelDevice(mm1, 6, 1, 0);
    mm_SetChannelDevice(mm1, 7, 1, 2);
    EXPECT_THAT(sent(), IsEmpty()) << "only a switch of 1 acts";
    mm_SetChannelOut(mm1, 6, 13, 1);
    EXPECT_THAT(sent(), ElementsAre("1: B6 78 00"));
    mm_SetChannelDevice(mm1, 6, 0, 1);
    EXPECT_THAT(sent(), ElementsAre("1: BD 78 00"));
    mm_SetChannelOut(mm1, 6, 2, -1);
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_EQ(mm_SetMIDIVolume(mm1, 6, 100), 0u);
    EXPECT_EQ(mm_SetMIDIVolume(mm1, 7, 100), 0u);
    EXPECT_EQ(mm_SetMIDIVolume(mm2, 6, 100), 0u);
    EXPECT_THAT(sent(), ElementsAre("0: B2 07 64", "1: B7 07 64", "1: B6 07 64"));
    EXPECT_EQ(g_busy, 0u);
}

TEST_F(Routing, Arguments_out_of_range_change_no_route_and_send_nothing) {
    startRouted();
    const MIDIOUT before = MM1;
    for (const std::int16_t wild : std::to_array<std::int16_t>({-1, 16, 256, 32767, -32768})) {
        mm_SetChannelDevice(mm1, wild, 1, 1);
        mm_SetChannelOut(mm1, wild, 1, 1);
        mm_SetChannelOut(mm1, 1, wild, 1);
    }
    for (const std::int16_t wild : std::to_array<std::int16_t>({-1, 32, 32767, -32768})) {
        mm_SetChannelDevice(mm1, 1, wild, 1);
    }
    EXPECT_EQ(std::memcmp(&before, &MM1, sizeof MM1), 0);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Routing, A_host_reads_and_writes_the_route_tables_in_place) {
    startRouted();
    ASSERT_EQ(static_cast<void*>(mm_GetChannelDevice(mm2)), &MM2.channelDevice);
    mm_SetChannelOut(mm2, 3, 8, 0);
    EXPECT_EQ(mm_GetChannelOut(mm2)[3], 8);
    mm_GetChannelOut(mm2)[3] = 0x4A;
    mm_SetMIDIChorus(mm2, 3, 1);
    EXPECT_THAT(sent(), ElementsAre("1: BA 5D 01")) << "a stray bit changes no message's kind";
}

TEST_F(Routing, A_raw_short_message_goes_to_any_handle_unchanged_and_answers_the_systems_code) {
    outputs = 3;
    start();
    EXPECT_EQ(mm_ShortMessage(g_devices[2], 0x00403CE5), 0u);
    EXPECT_THAT(sent(), ElementsAre("2: E5 3C 40"));
    machine::output(2).shortResult = 67;
    EXPECT_EQ(mm_ShortMessage(g_devices[2], 0x00403CE5), 67u);
}
