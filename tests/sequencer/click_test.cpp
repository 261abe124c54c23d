// The metronome: which beats sound, which are accents, and what goes to the device.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Click : public EngineTest {
protected:
    static constexpr MMCLICK kClick{1, 1, 9, 77, 127, 76, 100, 5, 5};

    /// Opens a song that moves two ticks a period and starts it.
    void playWithClick(const SongBuilder& song, const MMCLICK& click = kClick) {
        ASSERT_EQ(mm_Open(mm1, song.write().c_str(), 0, 0, 0, &click), 1);
        mm_StartSync(mm1);
        sent();
    }

    static SongBuilder silence(std::initializer_list<std::pair<int, int>> signatures = {},
                               std::uint32_t at = 0) {
        SongBuilder song(100);
        TrackBuilder& track = song.track();
        for (const auto& [beats, power] : signatures) {
            track.at(at).timeSignature(beats, power);
        }
        track.at(100000).noteOn(0, 1);
        return song;
    }

    /// The beats struck while the position moves on to a tick: "402 accent".
    std::vector<std::string> beatsUntil(std::uint32_t tick) {
        std::vector<std::string> beats;
        while (MM1.ticks < tick) {
            ticks(1);
            for (const std::string& line : sent(0x90)) {
                beats.push_back(std::to_string(MM1.ticks) +
                                (line == "1: 99 4D 7F" ? " accent" : " beat"));
            }
        }
        return beats;
    }
};

TEST_F(Click, Sounds_after_each_beat_and_ends_the_other_note_first) {
    start();
    playWithClick(silence());
    EXPECT_EQ(+MM1.click.timeSigTick, 0U);
    ticks(1);
    EXPECT_THAT(sent(), ElementsAre("1: 89 4C 00", "1: 99 4D 7F"));
    ticks(49);
    EXPECT_THAT(sent(), IsEmpty()) << "on the beat itself";
    ticks(1);
    EXPECT_THAT(sent(), ElementsAre("1: 89 4D 00", "1: 99 4C 64"));
    EXPECT_THAT(beatsUntil(520), ElementsAre("202 beat", "302 beat", "402 accent", "502 beat"));
}

TEST_F(Click, Counts_in_the_note_value_of_the_time_signature) {
    start();
    playWithClick(silence({{3, 2}}));
    EXPECT_THAT(beatsUntil(420),
                ElementsAre("2 accent", "102 beat", "202 beat", "302 accent", "402 beat"));
    playWithClick(silence({{3, 3}}));
    EXPECT_THAT(beatsUntil(220), ElementsAre("2 accent", "102 beat", "152 accent", "202 beat"))
        << "the first beat is struck before the signature is played";
    playWithClick(silence({{2, 1}}));
    EXPECT_THAT(beatsUntil(820), ElementsAre("2 accent", "102 accent", "202 beat", "402 accent",
                                             "602 beat", "802 accent"));
    playWithClick(silence({{2, 0}}));
    EXPECT_THAT(beatsUntil(1220),
                ElementsAre("2 accent", "102 accent", "402 beat", "802 accent", "1202 beat"));
}

TEST_F(Click, Counts_bars_from_the_signature_and_beats_from_the_start) {
    start();
    playWithClick(silence({{3, 2}}, 250));
    EXPECT_THAT(beatsUntil(720), ElementsAre("2 accent", "102 beat", "202 beat", "302 accent",
                                             "402 beat", "502 beat", "602 accent", "702 beat"));
}

TEST_F(Click, Strikes_one_beat_a_period_at_most) {
    start();
    playWithClick(silence());
    mm_SetTempo(mm1, 4000, 0); // 250 ticks a period
    EXPECT_THAT(beatsUntil(250), ElementsAre("250 accent")) << "the first beat, though two passed";
    EXPECT_EQ(+MM1.click.nextClick, 300U);
    EXPECT_THAT(beatsUntil(500), ElementsAre("500 beat"));
}

TEST_F(Click, Keeps_silent_without_a_beat_and_gives_no_accent_without_a_bar) {
    start();
    SongBuilder coarse(7);
    coarse.track().timeSignature(4, 5).at(1000).noteOn(0, 1); // a beat of 7 / 8 ticks
    playWithClick(coarse);
    ticks(5);
    sent();
    ticks(500);
    EXPECT_THAT(sent(), IsEmpty());
    playWithClick(silence({{0, 2}}));
    EXPECT_THAT(beatsUntil(220), ElementsAre("2 accent", "102 beat", "202 beat"));
    playWithClick(silence());
    MM1.beatUnit = 0;
    EXPECT_THAT(beatsUntil(220), IsEmpty());
}

TEST_F(Click, Waits_for_the_period_after_a_jump) {
    start();
    playWithClick(silence());
    mm_SetNextLocator(mm1, 50, 360);
    EXPECT_THAT(beatsUntil(361), ElementsAre("2 accent"));
    EXPECT_EQ(+MM1.ticks, 362U);
    EXPECT_THAT(beatsUntil(520), ElementsAre("364 beat", "402 accent", "502 beat"));
    mm_SendMap(mm1, 700);
    EXPECT_THAT(beatsUntil(820), ElementsAre("702 beat", "802 accent"));
}

TEST_F(Click, Is_off_unless_it_is_on_and_its_device_and_channel_exist) {
    start();
    MMCLICK broken[] = {kClick, kClick, kClick, kClick};
    broken[0].clickOn = 2;
    broken[1].clickDevice = 32;
    broken[2].clickDevice = -1;
    broken[3].clickChannel = 16;
    for (const MMCLICK& click : broken) {
        playWithClick(silence(), click);
        EXPECT_THAT(beatsUntil(220), IsEmpty());
    }
    MMCLICK wide = kClick;
    wide.clickChannel = 0x0109;
    wide.clickAccentNote = 0x01FF;
    wide.clickAccentVelocity = 0xFFF0;
    wide.clickNote = 0x0110;
    playWithClick(silence(), wide);
    ticks(1);
    EXPECT_THAT(sent(), ElementsAre("1: 89 10 00", "1: 99 7F 7F"));
}
