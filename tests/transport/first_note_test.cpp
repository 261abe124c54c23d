// The walk to the first note: what it sends, in which order, with which pauses, and where it ends.
#include <tuple>

#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::uint32_t kGap =
    150; ///< milliseconds; long enough to count pauses on a real clock too

// System time of each message on output 0.
std::vector<DWORD> times;

const char kInitText[MMINIT_TEXT_SIZE] = "F0 11 F7";
constexpr const char* kGmReset = "0: F0 7E 7F 09 01 F7";

TrackBuilder& addReset(TrackBuilder& track) {
    return track.systemExclusive({0x7E, 0x7F, 0x09, 0x01});
}

} // namespace

class FirstNote : public EngineTest {
protected:
    FirstNote() {
        settings.initSysExText = kInitText;
    }

    /// Starts the engine anew and opens the song.
    void startWith(const SongBuilder& song, int options = 0, int endOnBeat = 0) {
        mm_Close(mm1);
        mm_EndEngine();
        start();
        ASSERT_EQ(open(song, options, endOnBeat), 1) << "error " << mm_GetLastError();
        sent();
    }

    /// What the walk sends.
    std::vector<std::string> walk() {
        EXPECT_EQ(mm_PlayFirstNote(mm1), 1);
        return sent();
    }

    /// How many gaps pass before each message, and after the last one.
    std::vector<int> pauses() {
        times = {machine::time()};
        machine::output(0).onMessage = [] { times.push_back(machine::time()); };
        walk();
        times.push_back(machine::time());
        std::vector<int> counts;
        for (std::size_t i = 1; i < times.size(); ++i) {
            counts.push_back(static_cast<int>((times[i] - times[i - 1]) / kGap));
        }
        return counts;
    }
};

TEST_F(FirstNote, Sends_the_set_up_in_order_and_stands_on_the_first_note) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.timeSignature(3, 3).controller(3, 0, 1).controller(3, 32, 2).program(3, 5);
    track.event({0xA3, 60, 7}).event({0xD3, 9}).event({0xE3, 1, 0x42}).controller(3, 10, 0);
    track.at(30).timeSignature(6, 2).controller(3, 7, 100).controller(3, 64, 127);
    track.at(40).noteOff(3, 60).note(3, 61, 10);
    startWith(song, kAllOptions);
    mm_SetChannelDevice(mm1, 3, 1, 0);
    mm_SetChannelOut(mm1, 3, 14, 0);
    mm_SetVolume(mm1, 3, 50);
    EXPECT_THAT(walk(),
                ElementsAre("1: BE 00 01", "1: BE 20 02", "1: CE 05", "1: AE 3C 07", "1: DE 09",
                            "1: EE 01 42", "1: BE 0A 40", "1: BE 07 7F", "1: BE 40 7F"));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_PROGRAM, 3, 0x50201}, Posted{MMN_PAN, 3, 0},
                                      Posted{MMN_VOLUME, 3, 100}));
    EXPECT_EQ(mm_GetTicks(mm1), 40u) << "a note-off is a note as well";
    EXPECT_EQ(+MM1.eventPlay, MM1.events + MM1.eventIndex);
    EXPECT_EQ(+MM1.eventPlay->kind, 0x83);
    EXPECT_EQ(+MM1.click.nextClick, 40u);
    EXPECT_EQ(+MM1.click.timeSigTick, 30u);
    EXPECT_EQ(+MM1.beatsPerBar, 6);
    EXPECT_EQ(+MM1.beatUnit, 4);
    EXPECT_EQ(+MM1.playing, 0);
}

TEST_F(FirstNote, Applies_a_patch_override_and_the_tempo_percentage) {
    SongBuilder song;
    song.track().controller(2, 0, 1).controller(2, 32, 2).program(2, 5).tempo(500000).note(2, 60,
                                                                                           9);
    startWith(song, MMOPT_CHANNELS | MMOPT_TEMPO);
    const MMPATCH patch{0, 0, 40, 0};
    mm_SetPatch(mm1, 2, &patch);
    mm_SetTempo(mm1, 600000, 10);
    EXPECT_THAT(walk(), ElementsAre("0: B2 00 00", "0: B2 20 00", "0: C2 28"));
    EXPECT_THAT(posted(),
                ElementsAre(Posted{MMN_PROGRAM, 2, 0x50201}, Posted{MMN_PATCH, 2, 40 << 16},
                            Posted{MMN_TEMPO, 1, 450000}));
    EXPECT_EQ(+MM1.tempo, 450000u * 256);
}

TEST_F(FirstNote, Pauses_after_each_message_and_each_stored_bank_select) {
    settings.eventGap = kGap;
    settings.firstNoteDelay = 3 * kGap;
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.controller(0, 7, 1).tempo(500000).timeSignature(4, 2).controller(0, 0, 1);
    track.controller(0, 32, 1).program(0, 1).systemExclusive({1}).note(0, 60, 10);
    startWith(song);
    // Volume; MSB, LSB and program after three gaps; the exclusive message; the note.
    EXPECT_THAT(pauses(), ElementsAre(0, 3, 0, 0, 1, 4));
}

TEST_F(FirstNote, Waits_after_the_last_reset_and_counts_the_others_down) {
    settings.resetGap = 2 * kGap;
    SongBuilder song;
    TrackBuilder& track = song.track();
    addReset(addReset(track).controller(0, 7, 1)).systemExclusive({2}).noteOn(0, 60).at(20);
    addReset(track).at(30).noteOff(0, 60);
    startWith(song);
    EXPECT_THAT(walk(), ElementsAre("0: B0 07 01", "0: F0 02 F7")) << "the last one follows later";
    EXPECT_EQ(+MM1.resetCount, 1);
    for (int again = 0; again < 2; ++again) {
        EXPECT_THAT(walk(), ElementsAre(kGmReset, "0: B0 07 01", kGmReset, "0: F0 02 F7"));
    }
    EXPECT_THAT(pauses(), ElementsAre(0, 2, 0, 2, 0));
}

TEST_F(FirstNote, Skips_resets_uncounted_only_when_the_engine_and_the_song_ask_for_it) {
    SongBuilder song;
    addReset(song.track()).note(0, 60, 10);
    for (const auto& [flag, request, sends] :
         {std::tuple(0, 1, true), std::tuple(int{MMINIT_NORESET}, 0, true),
          std::tuple(int{MMINIT_NORESET}, -1, false)}) {
        settings.flags = static_cast<std::uint16_t>(MMINIT_SYSEXSTORE | flag);
        startWith(song);
        const auto noReset = static_cast<std::int16_t>(request);
        ASSERT_EQ(mm_Open(mm1, song.write().c_str(), 0, noReset, 0, nullptr), 1);
        sent();
        EXPECT_EQ(walk().size(), sends ? 1u : 0u) << flag << ", " << request;
        EXPECT_EQ(+MM1.resetCount, sends ? 0 : 1);
    }
}

TEST_F(FirstNote, Sends_the_init_text_once_a_call_before_the_first_channel_message_or_note) {
    SongBuilder song;
    song.track().systemExclusive({2}).controller(0, 0, 1).controller(0, 7, 1).note(0, 60, 10);
    SongBuilder onlyNote;
    onlyNote.track().at(100).note(0, 60, 10);
    for (const int switchValue : {0, 2}) {
        settings.sendInitText = static_cast<std::int16_t>(switchValue);
        startWith(onlyNote);
        EXPECT_THAT(walk(), IsEmpty());
        EXPECT_EQ(mm_GetTicks(mm1), 100u);
    }
    settings.sendInitText = 1;
    startWith(onlyNote);
    EXPECT_THAT(walk(), ElementsAre("0: F0 11 F7"));
    startWith(song);
    for (int again = 0; again < 2; ++again) {
        EXPECT_THAT(walk(), ElementsAre("0: F0 02 F7", "0: F0 11 F7", "0: B0 07 01"));
    }
}

TEST_F(FirstNote, Leaves_out_karaoke_texts_system_events_and_messages_without_a_slot) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.karaoke(4, "words").event({0xF2, 1, 2}).event({0xF6}).event({0xF8}).event({0xFE});
    track.systemExclusive({2}).systemExclusive(Bytes(200, 7)).note(0, 60, 10);
    startWith(song);
    MM1.events[5].byte2 = 3; // the store has three messages
    const std::vector<std::string> log = walk();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].size(), 2 + 3 * 202u) << "the message that has its own block";
    settings.flags = MMINIT_SECONDPLAYER;
    startWith(song);
    EXPECT_THAT(walk(), IsEmpty()) << "without a store";
}

TEST_F(FirstNote, A_song_without_a_note_is_sent_and_leaves_the_position) {
    settings.firstNoteDelay = 100 * kGap;
    SongBuilder song;
    song.track().controller(0, 7, 1).at(960).controller(0, 7, 2);
    startWith(song, 0, 1);
    mm_SendMap(mm1, 480);
    sent();
    const std::int32_t index = MM1.eventIndex;
    const DWORD begin = machine::time();
    EXPECT_EQ(mm_PlayFirstNote(mm1), 0);
    EXPECT_LT(machine::time() - begin, 100 * kGap);
    EXPECT_THAT(sent(), ElementsAre("0: B0 07 01", "0: B0 07 02"));
    EXPECT_EQ(mm_GetTicks(mm1), 480u);
    EXPECT_EQ(+MM1.eventIndex, index);
    EXPECT_EQ(mm_PlayFirstNote(mm2), 0) << "no song at all";
}
