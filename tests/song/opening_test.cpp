// What opening sets and leaves alone, what it sends, and that nothing is lost over many songs.
#include "tests/song/song_test.h"

using ::testing::Each;
using ::testing::ElementsAre;

namespace {

constexpr MMPATCH kPatch = {3, 4, 5, 1};
constexpr MMCLICK kClick = {1, 1, 9, 76, 127, 77, 90, 123, 456};

SongBuilder smallSong() {
    SongBuilder song;
    song.track().at(480).note(0, 60, 96);
    return song;
}

} // namespace

class Opening : public EngineTest {
protected:
    std::int16_t openWith(int options, const MMCLICK* click) {
        return mm_Open(mm1, smallSong().write().c_str(), static_cast<std::uint16_t>(options), -1, 7,
                       click);
    }
};

TEST_F(Opening, A_player_gets_its_starting_values) {
    start();
    const MMNOTEPAIR pairs[10] = {};
    mm_SetPatch(mm1, 15, &kPatch);
    mm_SetReplaceNotes(mm1, 9, pairs, 0);
    mm_SetChannelDevice(mm1, 2, 1, 0);
    mm_SetChannelOut(mm1, 2, 11, 0);
    mm_SetVolume(mm1, 2, -20);
    ASSERT_EQ(openWith(0x25, &kClick), 1);
    EXPECT_THAT((std::vector<int>{MM1.format, MM1.trackCount, MM1.division, MM1.beatsPerBar,
                                  MM1.beatUnit, MM1.markerCount, MM1.resetCount, MM1.textLineIndex,
                                  MM1.info.keySignature, MM1.endOnBeat, MM1.playing, MM1.volume[2],
                                  g_noResetArg.load(), MM1.eventCount}),
                ElementsAre(1, 1, 480, 4, 4, 0, 0, 3, -1, 7, 0, -20, -1, 3));
    EXPECT_EQ(+MM1.options, 0x25u);
    EXPECT_EQ(mm_GetTempo(mm1), 500000u);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("0 \r"));
    EXPECT_THAT(chordLines(MM1), ElementsAre("0 \r"));
    EXPECT_TRUE(MM1.eventPlay == MM1.events && MM1.lyricPlay == MM1.lyrics &&
                MM1.chordPlay == MM1.chords && MM1.fileData == nullptr);
    for (int channel = 0; channel < 16; ++channel) {
        EXPECT_EQ(+MM1.patch[channel].program, MMPATCH_NO_OVERRIDE);
        EXPECT_EQ(+MM1.songPatch[channel].program, MMPATCH_NO_OVERRIDE);
        EXPECT_EQ(+MM1.channelDevice[channel], mm1);
        EXPECT_EQ(MM1.channelOut[channel], channel);
    }
    EXPECT_THAT(std::vector<int>(&MM1.replaceNotes[0].from, &MM1.replaceNotes[9].to + 1), Each(-1));
    EXPECT_EQ(+MM1.click.clickVelocity, 90);
    EXPECT_EQ(MM1.click.timeSigTick + MM1.click.nextClick, 0u);
    EXPECT_EQ(+MM1.tracks[0].parsed, 1);
    EXPECT_EQ(+MM1.tracks[0].time, 576u);
    EXPECT_EQ(+MM1.tracks[0].readPos, +MM1.fileSize);
}

TEST_F(Opening, A_scan_leaves_settings_and_device_alone_and_fills_in_what_a_song_lacks) {
    settings.flags |= MMINIT_RESETONOPEN;
    start();
    mm_SetPatch(mm1, 3, &kPatch);
    mm_SetChannelDevice(mm1, 2, 1, 0);
    mm_SetChannelOut(mm1, 2, 11, 0);
    MM1.songPatch[4].program = 66;
    MM1.click = kClick;
    g_resetTime = 4711;
    sent();
    ASSERT_EQ(mm_Scan(mm1, smallSong().write().c_str()), 1);
    EXPECT_THAT(sent(), ElementsAre());
    EXPECT_EQ(g_resetTime, 4711u);
    EXPECT_EQ(+MM1.options, static_cast<std::uint32_t>(MMOPT_SCAN));
    EXPECT_THAT((std::vector<int>{MM1.patch[3].program, MM1.songPatch[4].program, MM1.channelOut[2],
                                  static_cast<int>(MM1.click.nextClick)}),
                ElementsAre(5, 66, 11, 456));
    EXPECT_EQ(+MM1.channelDevice[2], g_devices[1]);
    EXPECT_EQ(+mm_GetInfo(mm1)->firstTempo, 500000u);
    EXPECT_EQ(+mm_GetInfo(mm1)->keySignature, 0);
    EXPECT_EQ(mm_GetNumEvents(mm1), 2);
}

TEST_F(Opening, The_reset_message_follows_the_mode_and_goes_out_before_the_file_is_read) {
    settings.flags |= MMINIT_RESETONOPEN;
    settings.mode1 = MMMODE_XG;
    settings.mode2 = MMMODE_GS;
    start();
    EXPECT_EQ(openBytes({'?'}), 0);
    EXPECT_THAT(sent(), ElementsAre("0: F0 43 10 4C 00 00 7E 00 F7"));
    EXPECT_NE(g_resetTime, 0u);
    mm_Open(mm2, smallSong().write().c_str(), 0, 1, 0, nullptr);
    EXPECT_THAT(sent(), ElementsAre("1: F0 41 10 42 12 40 00 7F 00 41 F7"))
        << "a request alone suppresses nothing";
}

TEST_F(Opening, The_reset_message_is_kept_back_on_request) {
    settings.flags |= MMINIT_RESETONOPEN | MMINIT_NORESET;
    start();
    ASSERT_EQ(openWith(0, nullptr), 1);
    EXPECT_THAT(sent(), ElementsAre());
    EXPECT_EQ(g_resetTime, 0u);
    mm_Close(mm1);
    sent();
    open(smallSong());
    EXPECT_THAT(sent(), ElementsAre("0: F0 7E 7F 09 01 F7"));
}

TEST_F(Opening, Any_other_handle_opens_player_2_and_becomes_its_route) {
    outputs = 3;
    start();
    ASSERT_EQ(mm_Open(g_devices[2], smallSong().write().c_str(), 0, 0, 0, nullptr), 1);
    EXPECT_EQ(+MM2.eventCount, 2);
    EXPECT_EQ(+MM1.eventCount, 0);
    EXPECT_EQ(+MM2.channelDevice[0], g_devices[2]);
    EXPECT_EQ(+MM2.channelDevice[15], g_devices[2]);
}

TEST_F(Opening, An_open_player_is_closed_first) {
    start();
    SongBuilder first;
    first.track().lyric("words").marker("A").systemExclusive({0x7D}).note(0, 60, 96);
    play(first);
    ticks(2);
    mm_SetVolume(mm1, 0, 5);
    mm_SetChannelOut(mm1, 0, 8, 0);
    sent();
    ASSERT_EQ(open(smallSong()), 1);
    const std::vector<std::string> silence = sent();
    ASSERT_EQ(silence.size(), 80u);
    EXPECT_EQ(silence.front(), "0: B8 40 00");
    EXPECT_EQ(silence.back(), "0: BF 78 00");
    EXPECT_EQ(+MM1.playing, 0);
    EXPECT_EQ(+MM1.volume[0], 0);
    EXPECT_EQ(+MM1.sysexCount, 0);
    EXPECT_EQ(+MM1.curLoop, nullptr);
    EXPECT_THAT(lyricLines(MM1), ElementsAre("0 \r"));
    EXPECT_THAT(eventLines(MM1), ElementsAre("480 90 3C 64 00", "576 80 3C 40 00"));
}

TEST_F(Opening, Nothing_is_lost_over_a_thousand_songs_and_failures) {
    start();
    SongBuilder rich = smallSong();
    rich.track().lyric("words").systemExclusive(Bytes(300, 1)).karaoke(4, "line").note(1, 62, 96);
    const std::string good = rich.write();
    Bytes broken = rich.bytes();
    broken.insert(broken.end() - 3, {0, 0xF4});
    const std::string bad = writeFile(broken);
    for (const char* const function : {"GlobalAlloc", "GlobalFree", "CreateFileA", "CloseHandle"}) {
        machine::failCall(function, 0);
    }
    int opened = 0;
    for (int round = 0; round < 1000; ++round) {
        // Eight blocks a song: another one cannot be locked in every round.
        machine::failCall("GlobalLock", round % 11);
        opened += mm_Open(mm1, good.c_str(), 0, 0, 0, nullptr);
        opened += mm_Scan(round % 2 == 0 ? mm1 : mm2, round % 3 == 0 ? bad.c_str() : good.c_str());
        if (round % 5 == 0) {
            mm_Close(mm1);
        }
    }
    mm_Close(mm1);
    mm_Close(mm2);
    EXPECT_GT(opened, 500);
    EXPECT_LT(opened, 1700);
    EXPECT_GT(machine::callCount("GlobalAlloc"), 10000);
    EXPECT_EQ(machine::callCount("GlobalAlloc"), machine::callCount("GlobalFree"));
    EXPECT_EQ(machine::callCount("CreateFileA"), machine::callCount("CloseHandle"));
}
