// Starting, halting and going on.
#include <cstring>
#include <utility>

#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Transport = void(CORVMO_CALL*)(HMIDIOUT);

// The busy flag and the play state while each message of a halting call was under way.
std::vector<std::pair<std::uint32_t, int>> seen;

SongBuilder longSong() {
    SongBuilder song;
    song.track().at(48).noteOn(1, 60).at(9600).noteOff(1, 60);
    return song;
}

} // namespace

class PlayState : public EngineTest {
protected:
    void playLongSong() {
        start();
        play(longSong());
        seen.clear();
    }
};

TEST_F(PlayState, Stop_and_pause_silence_the_routes_and_keep_the_position) {
    const std::pair<Transport, std::uint32_t> halts[] = {{mm_StopSync, 1}, {mm_PauseSync, 0}};
    playLongSong();
    mm_SetChannelOut(mm1, 3, 12, 0);
    mm_SetChannelDevice(mm1, 5, 1, 0);
    auto silence = sweep(0x78);
    silence[3] = "0: BC 78 00";
    silence[5] = "1: B5 78 00";
    for (const auto& [halt, busy] : halts) {
        mm_StartSync(mm1);
        ticks(7);
        sent();
        const std::uint32_t position = mm_GetTicks(mm1);
        machine::output(0).onMessage = [] { seen.emplace_back(g_busy, +MM1.playing); };
        halt(mm1);
        machine::output(0).onMessage = nullptr;
        EXPECT_EQ(sent(), silence);
        EXPECT_EQ(std::exchange(seen, {}), std::vector(15, std::pair(busy, 0)));
        EXPECT_EQ(g_busy, 0u);
        ticks(50);
        EXPECT_EQ(+MM1.playing, 0);
        EXPECT_EQ(mm_GetTicks(mm1), position);
        EXPECT_THAT(sent(), IsEmpty());
        halt(mm1);
        EXPECT_EQ(sent(), silence) << "a halted player is silenced again";
        EXPECT_EQ(mm_GetTicks(mm1), position);
    }
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(PlayState, Start_and_restart_go_on_where_the_song_stands_with_a_fresh_remainder) {
    for (const Transport go : {mm_StartSync, mm_ReStartSync}) {
        playLongSong();
        ticks(3);
        EXPECT_EQ(mm_GetTicks(mm1), 28u) << "3 periods of 9.6 ticks";
        mm_StopSync(mm1);
        sent();
        MM1.tickStep = 0;
        go(mm1);
        EXPECT_THAT(sent(), IsEmpty());
        EXPECT_EQ(+MM1.playing, 1);
        EXPECT_EQ(mm_GetTicks(mm1), 28u);
        EXPECT_EQ(+MM1.tickRemainder, 0u);
        EXPECT_EQ(+MM1.tickStep, 480u * 10 * 256000);
        ticks(1);
        EXPECT_EQ(mm_GetTicks(mm1), 37u) << "9.6 without the 0.8 carried before";
        EXPECT_NE(+MM1.tickRemainder, 0u);
        go(mm1);
        EXPECT_EQ(+MM1.playing, 1) << "still playing";
        EXPECT_EQ(+MM1.tickRemainder, 0u);
        mm_Close(mm1);
        mm_EndEngine();
    }
}

TEST_F(PlayState, A_player_without_a_song_cannot_be_started) {
    start();
    mm_SetLoop(mm1, nullptr);
    mm_StartSync(mm1);
    mm_ReStartSync(mm2);
    EXPECT_EQ(+MM1.playing, 0);
    EXPECT_EQ(+MM2.playing, 0);
    EXPECT_EQ(openBytes({'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 1, 0, 96}), 0);
    mm_StartSync(mm1);
    EXPECT_EQ(+MM1.playing, 0) << "a song that failed to open";
    ASSERT_EQ(open(longSong()), 1);
    mm_Close(mm1);
    mm_StartSync(mm1);
    EXPECT_EQ(+MM1.playing, 0) << "a closed song";
}

TEST_F(PlayState, A_song_without_play_ranges_gets_the_whole_song_when_it_is_started) {
    start();
    for (const auto& [endOnBeat, passes] : {std::pair(0, 1), std::pair(1, 32767)}) {
        ASSERT_EQ(open(longSong(), 0, endOnBeat), 1);
        mm_StartSync(mm1);
        EXPECT_EQ(+MM1.playing, 1);
        EXPECT_EQ(+MM1.curLoop, &MM1.loops[0]);
        EXPECT_EQ(+MM1.numLoops, 1);
        EXPECT_EQ(+MM1.loops[0].end, MM1.events[MM1.eventCount - 1].time);
        EXPECT_EQ(+MM1.loops[0].repeats, passes);
        mm_SetNextLocator(mm1, 100, MMLOCATOR_NO_NEXT);
        mm_StartSync(mm1);
        EXPECT_EQ(+MM1.loops[0].end, 100u) << "ranges that were set stay";
    }
}

class Closing : public EngineTest {
protected:
    static std::vector<std::string> silenceOn(const std::vector<std::string>& routes) {
        std::vector<std::string> lines;
        for (const char* controller : {"40", "42", "79", "7B", "78"}) {
            for (std::string line : routes) {
                lines.push_back(line.replace(6, 2, controller));
            }
        }
        return lines;
    }
};

TEST_F(Closing, Silences_the_routes_as_they_stood_and_then_sets_the_default_ones) {
    start();
    play(longSong());
    ticks(6);
    mm_SetChannelDevice(mm1, 5, 1, 0);
    mm_SetChannelOut(mm1, 15, 2, 0);
    sent();
    seen.clear();
    machine::output(0).onMessage = [] { seen.emplace_back(g_busy, MM1.playing + MM1.division); };
    mm_Close(mm1);
    EXPECT_EQ(seen, std::vector(75, std::pair(std::uint32_t{0}, 0))) << "the flag is free again";
    auto routes = sweep(0);
    routes[5] = "1: B5 00 00";
    routes[15] = "0: B2 00 00";
    EXPECT_EQ(sent(), silenceOn(routes));
    for (int channel = 0; channel < 16; ++channel) {
        EXPECT_EQ(mm_GetChannelOut(mm1)[channel], channel);
        EXPECT_EQ(+MM1.channelDevice[channel], mm1);
    }
    ticks(20);
    EXPECT_THAT(sent(), IsEmpty());
    mm_Close(mm1);
    EXPECT_EQ(sent(), silenceOn(sweep(0)));
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(Closing, Clears_every_byte_but_the_players_own) {
    settings.mode1 = MMMODE_XG;
    start();
    MIDIOUT expected{};
    expected.hmo = mm1;
    expected.mode = MMMODE_XG;
    expected.longBufferMem = MM1.longBufferMem;
    expected.longBuffer = MM1.longBuffer;
    expected.longHeaderMem = MM1.longHeaderMem;
    expected.longHeader = MM1.longHeader;
    for (int channel = 0; channel < 16; ++channel) {
        expected.channelDevice[channel] = mm1;
        expected.channelOut[channel] = static_cast<std::uint8_t>(channel);
    }
    play(longSong(), kAllOptions, 1);
    ticks(20);
    const auto fill = [](void* field, std::size_t size) { std::memset(field, 0x55, size); };
    fill(&MM1.patch, offsetof(MIDIOUT, eventPos) - offsetof(MIDIOUT, patch));
    fill(&MM1.loops, offsetof(MIDIOUT, markers) - offsetof(MIDIOUT, loops));
    fill(&MM1.replaceNotes, sizeof MM1.replaceNotes);
    fill(&MM1.reserved1, sizeof MM1.reserved1);
    mm_Close(mm1);
    EXPECT_EQ(std::memcmp(&MM1, &expected, sizeof expected), 0);
}

TEST_F(Closing, Frees_every_block_of_the_song_once_and_leaves_the_other_player_playing) {
    start();
    play(longSong());
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.systemExclusive(Bytes(300, 1)).systemExclusive(Bytes(20, 2));
    track.systemExclusive(Bytes(94, 3)).note(0, 60, 10);
    for (const char* function : {"GlobalAlloc", "GlobalFree"}) {
        machine::failCall(function, 0);
    }
    ASSERT_EQ(mm_Open(mm2, song.write().c_str(), 0, 0, 0, nullptr), 1);
    mm_Close(mm2);
    const int blocks = machine::callCount("GlobalAlloc");
    EXPECT_EQ(blocks, 8) << "file copy, six tables, one message that is too long for its slot";
    EXPECT_EQ(machine::callCount("GlobalFree"), blocks);
    mm_Close(mm2);
    EXPECT_EQ(machine::callCount("GlobalFree"), blocks);
    EXPECT_EQ(+MM1.playing, 1);
    EXPECT_EQ(mm_GetNumEvents(mm1), 2);
}
