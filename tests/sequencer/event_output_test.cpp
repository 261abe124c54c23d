// What a due event becomes on the device: notes, timing events, system-exclusive and other messages.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

/// Every option but the texts', whose start records are due at once.
constexpr int kNoTexts = kAllOptions & ~(MMOPT_LYRICS | MMOPT_CHORDS);

} // namespace

class EventOutput : public EngineTest {
protected:
    using Events = std::initializer_list<std::initializer_list<int>>;

    /// Opens and starts a song whose events stand at its beginning, where the first period plays them.
    void prepare(Events events, int options = 0) {
        SongBuilder song;
        TrackBuilder& track = song.track();
        for (const auto& event : events) {
            track.event(event);
        }
        track.at(4800).noteOff(15, 0);
        play(song, options);
    }

    /// What one period sends.
    std::vector<std::string> next() {
        ticks(1);
        return sent();
    }
};

TEST_F(EventOutput, Transpositions_are_added_one_after_the_other_each_clamped) {
    start();
    prepare({{0x90, 120, 100}, {0x81, 5, 64}, {0x92, 60, 1}});
    mm_SetTranspose(mm1, 12, 0);
    mm_SetMasterTranspose(-12);
    mm_SetKeyShift(mm1, 1, -20, 0);
    mm_SetKeyShift(mm1, 2, 3, 0);
    sent();
    EXPECT_THAT(next(), ElementsAre("0: 90 73 64", "0: 81 00 40", "0: 92 3F 01"));
    prepare({{0x90, 5, 100}, {0x90, 125, 100}});
    mm_SetTranspose(mm1, -10, 0);
    mm_SetMasterTranspose(127);
    mm_SetKeyShift(mm1, 0, -7, 0);
    sent();
    EXPECT_THAT(next(), ElementsAre("0: 90 78 64", "0: 90 78 64"));
}

TEST_F(EventOutput, Drum_notes_take_replacements_and_the_key_shift_alone) {
    start();
    prepare({{0x92, 36, 100}, {0x82, 36, 0}, {0x92, 38, 100}, {0x92, 40, 100}, {0x99, 36, 100}});
    const MMNOTEPAIR pairs[10] = {{-1, 9}, {36, 38}, {38, 50}, {36, 99}, {40, -3},
                                  {-1, 0}, {-1, 0},  {-1, 0},  {-1, 0},  {-1, 0}};
    mm_SetReplaceNotes(mm1, 0, pairs, 0);
    mm_SetTranspose(mm1, 12, 0);
    mm_SetMasterTranspose(5);
    mm_SetChannelOut(mm1, 2, 9, 0);
    mm_SetChannelOut(mm1, 9, 3, 0);
    mm_SetKeyShift(mm1, 2, 1, 0);
    mm_SetKeyShift(mm1, 9, 2, 0);
    sent();
    EXPECT_THAT(next(), ElementsAre("0: 99 27 64", "0: 89 27 00", "0: 99 33 64", "0: 99 01 64",
                                    "0: 93 37 64"))
        << "song channel 9 goes elsewhere and is transposed by 12, 5 and 2";
}

TEST_F(EventOutput, No_transposition_is_a_matter_of_the_output_channel) {
    start();
    prepare({{0x92, 60, 100}, {0x95, 60, 100}, {0x99, 60, 100}});
    mm_SetChannelOut(mm1, 2, 5, 0);
    mm_SetChannelOut(mm1, 5, 2, 0);
    mm_SetNoTranspose(mm1, 5, 1);
    mm_SetNoTranspose(mm1, 9, 7);
    mm_SetTranspose(mm1, 12, 0);
    mm_SetKeyShift(mm1, 2, 1, 0);
    mm_SetKeyShift(mm1, 9, 1, 0);
    EXPECT_THAT(next(), ElementsAre("0: 95 3C 64", "0: 92 48 64", "0: 99 3C 64"));
}

TEST_F(EventOutput, Velocities_change_by_a_percentage_truncated_toward_zero) {
    start();
    prepare({{0x90, 60, 100}, {0x91, 60, 1}, {0x91, 60, 127}, {0x92, 60, 90}, {0x83, 60, 64}});
    mm_SetVelocity(mm1, 0, 50);
    mm_SetVelocity(mm1, 1, -50);
    mm_SetVelocity(mm1, 2, -100);
    mm_SetVelocity(mm1, 3, -200);
    EXPECT_THAT(next(), ElementsAre("0: 90 3C 7F", "0: 91 3C 01", "0: 91 3C 40", "0: 92 3C 00",
                                    "0: 83 3C 00"));
}

TEST_F(EventOutput, A_fade_scales_velocities_after_the_percentage_and_a_fade_in_hides_a_fade_out) {
    start();
    const auto level = [](std::int32_t base, std::uint32_t length) {
        MMFADE fade{};
        for (int i = 0; i < 5; ++i) {
            fade.segmentEnd[i] = length;
            fade.base[i] = base;
        }
        return fade;
    };
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.noteOn(0, 60, 101).noteOn(1, 60, 1).event({0x80, 60, 64});
    track.at(10).noteOn(0, 60, 100).at(4800).noteOff(0, 60);
    play(song, MMOPT_NOTES);
    const MMFADE in = level(51200, 10);
    const MMFADE out = level(25600, 100000);
    mm_SetFadeOut(mm1, &out);
    mm_SetFadeIn(mm1, &in);
    mm_SetVelocity(mm1, 0, 100); // 101 becomes 127, half of it is 63
    EXPECT_THAT(next(), ElementsAre("0: 90 3C 3F", "0: 91 3C 00", "0: 80 3C 3F"));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_NOTEON, 0, 0}, Posted{MMN_NOTEOFF, 1, 0},
                                      Posted{MMN_NOTEOFF, 0, 0}));
    EXPECT_THAT(next(), ElementsAre("0: 90 3C 1F")) << "a quarter of 127 once the fade-in is over";
    const MMFADE loud = level(204800, 100);
    prepare({{0x90, 60, 100}});
    mm_SetFadeIn(mm1, &loud);
    EXPECT_THAT(next(), ElementsAre("0: 90 3C 7F"));
}

TEST_F(EventOutput, A_muted_channel_sends_everything_but_notes_and_still_reports_them) {
    start();
    prepare({{0x94, 60, 100}, {0xB4, 11, 90}, {0xC4, 8}, {0x84, 60, 0}, {0x95, 60, 100}},
            MMOPT_NOTES);
    mm_SetMute(mm1, 4, 2, 0);
    EXPECT_THAT(next(), ElementsAre("0: B4 0B 5A", "0: B4 00 00", "0: B4 20 00", "0: C4 08",
                                    "0: 95 3C 64"));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_NOTEON, 4, 0}, Posted{MMN_NOTEOFF, 4, 0},
                                      Posted{MMN_NOTEON, 5, 0}));
}

TEST_F(EventOutput, Notes_are_reported_by_song_channel_and_only_when_asked) {
    start();
    prepare({{0x93, 60, 0}, {0x83, 61, 100}}, kNoTexts & ~MMOPT_NOTES);
    ticks(1);
    EXPECT_THAT(posted(), IsEmpty());
    prepare({{0x93, 60, 0}, {0x93, 61, 100}, {0x83, 61, 100}}, MMOPT_NOTES);
    mm_SetChannelOut(mm1, 3, 7, 0);
    ticks(1);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_NOTEOFF, 3, 0}, Posted{MMN_NOTEON, 3, 0},
                                      Posted{MMN_NOTEOFF, 3, 0}));
}

TEST_F(EventOutput, A_tempo_event_is_changed_by_the_percentage_and_reported) {
    start();
    prepare({{0xFF, 0x51, 3, 0x07, 0xA1, 0x20}}, MMOPT_TEMPO); // 500000
    mm_SetTempo(mm1, 400000, 10);
    EXPECT_EQ(mm_GetTempo(mm1), 360000U);
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_EQ(+MM1.tempo, 0x6DDD000U);
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_TEMPO, 0, 450000}));
    prepare({{0xFF, 0x51, 3, 0xFF, 0xFF, 0xFF}, {0xFF, 0x51, 3, 0, 0, 0}});
    mm_SetTempo(mm1, 400000, -20);
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_EQ(mm_GetTempo(mm1), 0xFFFFFFU) << "held at the slowest; one of 0 leaves it";
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(EventOutput, A_time_signature_event_sets_the_beat_from_its_tick) {
    start();
    SongBuilder song;
    song.track().at(5).timeSignature(6, 3).at(4800).noteOff(0, 0);
    play(song, kNoTexts);
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_EQ(+MM1.beatsPerBar, 6);
    EXPECT_EQ(+MM1.beatUnit, 8);
    EXPECT_EQ(+MM1.click.timeSigTick, 5U);
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(EventOutput, Other_channel_messages_go_out_unchanged_on_the_route) {
    start();
    prepare(
        {{0xA1, 60, 33}, {0xD1, 44}, {0xE1, 1, 127}, {0xB1, 6, 5}, {0xB1, 38, 4}, {0xB1, 98, 3}});
    mm_SetOptions(mm1, kNoTexts);
    mm_SetChannelOut(mm1, 1, 14, 0);
    mm_SetChannelDevice(mm1, 1, 1, 0);
    mm_SetTranspose(mm1, 5, 0);
    mm_SetVelocity(mm1, 1, 50);
    mm_SetVolume(mm1, 1, 50);
    EXPECT_THAT(next(), ElementsAre("1: AE 3C 21", "1: DE 2C", "1: EE 01 7F", "1: BE 06 05",
                                    "1: BE 26 04", "1: BE 62 03"));
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(EventOutput, System_common_and_real_time_messages_of_a_song_are_not_sent) {
    start();
    prepare({{0xF1, 1}, {0xF2, 1, 2}, {0xF3, 1}, {0xF6}, {0xF8}, {0xFA}, {0xFB}, {0xFC}, {0xFE}});
    EXPECT_EQ(+MM1.eventCount, 10);
    EXPECT_THAT(next(), IsEmpty());
}

TEST_F(EventOutput, Data_bytes_of_a_broken_song_leave_as_they_stand) {
    start();
    prepare({{0x90, 200, 255}, {0xB0, 1, 128}, {0xB0, 7, 240}, {0xC0, 0xE4}, {0xE0, 0xF0, 0x80}},
            MMOPT_CHANNELS);
    EXPECT_THAT(next(), ElementsAre("0: 90 C8 FF", "0: B0 01 80", "0: B0 07 F0", "0: B0 00 00",
                                    "0: B0 20 00", "0: C0 E4", "0: E0 F0 80"));
}

class StoredMessages : public EventOutput {
protected:
    /// Short, inline at most, own block; its fill shows a copy that goes astray.
    static Bytes body(std::size_t length) {
        Bytes bytes(length - 2); // F0 and F7 are added
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<std::uint8_t>(i % 100);
        }
        return bytes;
    }

    static SongBuilder songOf(std::initializer_list<Bytes> bodies) {
        SongBuilder song;
        TrackBuilder& track = song.track();
        for (const Bytes& bytes : bodies) {
            track.systemExclusive(bytes);
        }
        track.at(4800).noteOff(0, 0);
        return song;
    }

    static Bytes whole(Bytes bytes) {
        bytes.insert(bytes.begin(), 0xF0);
        bytes.push_back(0xF7);
        return bytes;
    }
};

TEST_F(StoredMessages, Go_out_whole_on_the_players_own_output) {
    start();
    const std::initializer_list<Bytes> bodies = {{},       {0x42},    body(96),
                                                 body(97), body(300), body(4096)};
    play(songOf(bodies));
    mm_SetChannelDevice(mm1, 0, 1, 0);
    ticks(1);
    const std::vector<Sent> log = machine::takeSent();
    ASSERT_THAT(log, SizeIs(bodies.size()));
    std::size_t i = 0;
    for (const Bytes& bytes : bodies) {
        EXPECT_EQ(log[i].output, 0);
        EXPECT_EQ(log[i++].bytes, whole(bytes));
    }
}

TEST_F(StoredMessages, Include_karaoke_texts_and_leave_out_references_to_nothing) {
    start();
    play(songOf({{0x00, 0x20, 0x24, 0x00, 0x04, 'a'}, {0x11}, {0x22}}));
    MM1.events[1].byte2 = 3; // beyond the last message
    MM1.events[2].byte1 = 0xFF;
    EXPECT_THAT(next(), ElementsAre("0: F0 00 20 24 00 04 61 F7"));
    settings.flags = MMINIT_SECONDPLAYER;
    mm_Close(mm1);
    mm_EndEngine();
    start();
    play(songOf({{0x11}}));
    EXPECT_EQ(+MM1.eventCount, 1) << "no store, no reference";
    MM1.events[0].kind = 0xF0;
    MM1.events[0].time = 0;
    sent();
    EXPECT_THAT(next(), IsEmpty());
}

TEST_F(StoredMessages, Leave_out_resets_when_engine_and_song_both_ask_for_it) {
    const SongBuilder song = songOf({{0x7E, 0x7F, 0x09, 0x01}, {0x42}});
    constexpr std::int16_t kRequests[] = {0, 1};
    constexpr std::uint16_t kFlags[] = {0, MMINIT_NORESET};
    for (const std::uint16_t flag : kFlags) {
        settings.flags = static_cast<std::uint16_t>(MMINIT_SYSEXSTORE | flag);
        start();
        for (const std::int16_t request : kRequests) {
            ASSERT_EQ(mm_Open(mm1, song.write().c_str(), 0, request, 0, nullptr), 1);
            mm_StartSync(mm1);
            sent();
            EXPECT_EQ(next().size(), flag != 0 && request != 0 ? 1U : 2U);
            mm_Close(mm1);
        }
        mm_EndEngine();
    }
}
