// One run of the engine in which each call of each system function fails in turn.
#include "tests/support/engine_test.h"

namespace {

/// Those that give something back are not among them: what the system keeps nobody can free.
constexpr const char* kFunctions[] = {
    "GlobalAlloc",           "GlobalLock",           "GlobalReAlloc",
    "CreateFileA",           "GetFileSize",          "ReadFile",
    "timeSetEvent",          "timeGetDevCaps",       "timeBeginPeriod",
    "timeEndPeriod",         "midiOutOpen",          "midiOutReset",
    "midiOutShortMsg",       "midiOutPrepareHeader", "midiOutLongMsg",
    "midiOutUnprepareHeader"};
constexpr int kMostCalls = 40; ///< of one function; after so many they are all alike

/// Words, a long message with a block of its own, an event list that has to grow, and something to play.
SongBuilder demandingSong() {
    SongBuilder song;
    TrackBuilder& words = song.track();
    words.karaoke(4, "Hello world").karaoke(8).systemExclusive(Bytes(200, 1));
    TrackBuilder& notes = song.track();
    notes.program(0, 5).controller(0, 7, 90).at(96);
    for (int i = 0; i < 32800; ++i) {
        notes.controller(1, 11, i % 128);
    }
    notes.note(0, 60, 96).note(9, 36, 96);
    return song;
}

bool isOneOf(std::uint32_t code, std::initializer_list<std::uint32_t> codes) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

} // namespace

class FailingSystem : public EngineTest {
protected:
    FailingSystem() : song(demandingSong().write()) {
        settings.flags |= MMINIT_RESETONOPEN;
    }

    /// Start-up to shut-down; false when the engine does not start or the song does not open.
    bool live() {
        g_lastError.store(0);
        const bool works = tryStart() == 1 && playSong();
        mm_Close(mm1);
        mm_EndEngine();
        return works;
    }

    bool playSong() {
        if (mm_Open(mm1, song.c_str(), kAllOptions, 0, 0, nullptr) == 0) {
            return false;
        }
        mm_SetLoop(mm1, nullptr);
        mm_PlayFirstNote(mm1);
        mm_StartSync(mm1);
        ticks(12);
        mm_CreateMap(mm1, 120);
        mm_SendMap(mm1, 120);
        ticks(60);
        mm_StopSync(mm1);
        return true;
    }

    /// Everything that a run sends, by output.
    std::vector<std::string> liveUnharmed() {
        sent();
        EXPECT_TRUE(live());
        return sent();
    }

    std::string song;
};

TEST_F(FailingSystem, Is_reported_leaks_nothing_and_the_next_run_works) {
    const std::vector<std::string> unharmed = liveUnharmed();
    int faults = 0;
    for (const char* const function : kFunctions) {
        int call = 1;
        for (; call <= kMostCalls; ++call) {
            SCOPED_TRACE(function + (" " + std::to_string(call)));
            machine::failCall(function, call);
            const bool works = live();
            const bool reached = machine::callCount(function) >= call;
            machine::failCall(function, 0);
            if (!reached) {
                break;
            }
            EXPECT_TRUE(works || isOneOf(mm_GetLastError(),
                                         {ENGINE_ERR_TIMER, ENGINE_ERR_ALLOC, ENGINE_ERR_LOCK,
                                          ENGINE_ERR_FILE, ENGINE_ERR_READ}))
                << mm_GetLastError();
            ASSERT_EQ(liveUnharmed(), unharmed);
        }
        EXPECT_GT(call, 1) << function << " was never called";
        faults += call - 1;
    }
    RecordProperty("faults", faults);
}

TEST_F(FailingSystem, Outputs_that_refuse_every_message_hold_nothing_up) {
    const std::vector<std::string> unharmed = liveUnharmed();
    machine::output(0).shortResult = MMSYSERR_INVALPARAM;
    machine::output(0).stillPlaying = 3;
    EXPECT_EQ(liveUnharmed(), unharmed) << "each message is tried once";
}
