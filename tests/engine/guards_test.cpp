// Which calls wait for the busy flag, which for the host's lock, and which for neither.
#include <atomic>
#include <functional>
#include <thread>

#include "tests/support/engine_test.h"

namespace {

using Call = std::function<void()>;

constexpr MMPATCH kPatch{};
constexpr MMNOTEPAIR kPairs[10] = {};
constexpr MMFADE kFade{};

/// Lets another thread run on until it finishes or waits.
void giveWay(const std::atomic<bool>& entered) {
    while (!entered) {
        std::this_thread::yield();
    }
    for (int i = 0; i < 2000; ++i) {
        std::this_thread::yield();
    }
}

/// A call that wrongly does not wait has every chance to finish; one that waits never does.
void expectToWait(const Call& call, std::size_t number, const Call& letGo) {
    std::atomic<bool> entered{false};
    std::atomic<bool> finished{false};
    std::thread caller([&] {
        entered = true;
        call();
        finished = true;
    });
    giveWay(entered);
    EXPECT_FALSE(finished) << "call " << number;
    letGo();
    caller.join();
    EXPECT_EQ(g_busy, 0u) << "call " << number;
}

} // namespace

class Guards : public EngineTest {
protected:
    void openSong() {
        start();
        SongBuilder song;
        song.track().note(0, 60, 480);
        ASSERT_EQ(open(song), 1);
    }

    const std::vector<Call> setters = {
        [this] { mm_SetChannelDevice(mm1, 0, 0, 0); },
        [this] { mm_SetChannelOut(mm1, 0, 0, 0); },
        [this] { mm_SetNumLyrics(mm1, 1); },
        [this] { mm_SetNumChords(mm1, 1); },
        [this] { mm_SetOptions(mm1, 0); },
        [] { mm_SetWindow(machine::window()); },
        [this] { mm_SetPatch(mm1, 0, &kPatch); },
        [this] { mm_SetReplaceNotes(mm1, 0, kPairs, 0); },
        [this] { mm_SetVolume(mm1, 0, 1); },
        [this] { mm_SetMute(mm1, 0, 1, 0); },
        [this] { mm_SetKeyShift(mm1, 0, 1, 0); },
        [this] { mm_SetTranspose(mm1, 1, 0); },
        [] { mm_SetMasterTranspose(1); },
        [this] { mm_SetFadeIn(mm1, &kFade); },
        [this] { mm_SetFadeOut(mm1, &kFade); },
    };
    const std::vector<Call> transport = {
        [this] { mm_SetTempo(mm1, 500000, 0); },
        [this] { mm_SetLoop(mm1, nullptr); },
        [this] { mm_SetNextLocator(mm1, 5, 9); },
        [this] { mm_CreateMap(mm1, 0); },
        [this] { mm_RewindSync(mm1); },
        [this] { mm_StartSync(mm1); },
        [this] { mm_ReStartSync(mm1); },
        [this] { mm_PauseSync(mm1); },
        [this] { mm_StopSync(mm1); },
        [this] { mm_Close(mm1); },
    };
};

TEST_F(Guards, Setters_and_transport_calls_wait_for_the_busy_flag_and_leave_it_clear) {
    openSong();
    for (const auto& calls : {setters, transport}) {
        for (std::size_t i = 0; i < calls.size(); ++i) {
            g_busy = 1;
            expectToWait(calls[i], i, [] { g_busy = 0; });
        }
    }
}

TEST_F(Guards, Only_transport_calls_wait_for_the_hosts_lock) {
    openSong();
    EnterCriticalSection(&lock);
    for (const Call& call : setters) {
        std::thread(call).join();
    }
    g_busy = 1;
    std::thread([this] {
        const std::uint8_t message[] = {0xF0, 0xF7};
        mm_LongMessage(mm1, message, sizeof message);
        mm_Reset(mm1);
        mm_SetMIDIVolume(mm1, 0, 1);
        EXPECT_EQ(mm_PlayFirstNote(mm1), 1);
        EXPECT_EQ(mm_GetNumEvents(mm1), 2);
    }).join();
    g_busy = 0;
    LeaveCriticalSection(&lock);
    for (std::size_t i = 0; i < transport.size(); ++i) {
        EnterCriticalSection(&lock);
        expectToWait(transport[i], i, [this] { LeaveCriticalSection(&lock); });
    }
}

TEST_F(Guards, Calls_that_wait_while_the_engine_is_shut_down_do_nothing) {
    const Call tick = [] { machine::passPeriods(1, 10); };
    std::vector<Call> calls = transport;
    calls.push_back([this] { mm_SendMap(mm1, 0); });
    calls.push_back(tick); // shut-down waits for it, and then gives it up
    for (const Call& call : calls) {
        openSong();
        EnterCriticalSection(&lock);
        std::atomic<bool> entered{false};
        std::thread caller([&] {
            entered = true;
            call();
        });
        giveWay(entered);
        mm_EndEngine();
        sent();
        LeaveCriticalSection(&lock);
        caller.join();
        EXPECT_THAT(sent(), ::testing::IsEmpty());
        EXPECT_EQ(g_busy, 1u);
    }
    start(); // so that the song is closed
}

TEST_F(Guards, A_song_that_is_being_opened_while_the_engine_is_shut_down_is_given_up) {
    constexpr int kFirstCapacity = 32768; ///< events
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (int i = 0; i <= kFirstCapacity; ++i) {
        track.noteOn(0, 60);
    }
    start();
    EnterCriticalSection(&lock);
    std::int16_t opened = 1;
    std::thread caller([&] { opened = open(song); });
    while (mm_GetNumEvents(mm1) < kFirstCapacity) {
        std::this_thread::yield();
    }
    mm_EndEngine();
    LeaveCriticalSection(&lock);
    caller.join();
    EXPECT_EQ(opened, 0);
    start();
    EXPECT_EQ(open(song), 1);
}
