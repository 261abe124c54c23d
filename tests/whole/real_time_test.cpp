// The engine on the real timer while other threads of the host call it. Meant for the thread sanitizer as
// much as for its own checks.
#include <atomic>
#include <random>
#include <thread>

#include "tests/support/engine_test.h"
#include "tests/whole/host_threads.h"
#include "tests/whole/random_song.h"

using ::testing::IsEmpty;

namespace {

constexpr int kMessages = 600;
constexpr std::uint32_t kSpacing = 3; ///< ticks; the whole takes about two seconds

/// Messages of a kind that carry running numbers, between notes and system-exclusive messages.
SongBuilder numbered(int kind) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (int i = 0; i < kMessages; ++i) {
        track.at(static_cast<std::uint32_t>(i) * kSpacing).event({kind | i % 16, i >> 7, i & 0x7F});
        track.event({(i & 1) == 0 ? 0x90 : 0x80, 60 + i / 2 % 12, 100}).controller(2, 10, i & 0x7F);
        if (i % 50 == 0) {
            track.systemExclusive({0x7D, 0x01}).program(1, i % 128).tempo(500000);
        }
    }
    track.at(kMessages * kSpacing + 48).noteOff(0, 0);
    return song;
}

} // namespace

class RealTime : public EngineTest {
protected:
    RealTime() {
        realTime = true;
        settings.timerPeriod = 1;
    }

    /// Waits until a player's song has ended.
    static bool waitForEnd(HMIDIOUT player) {
        for (;;) {
            const std::optional<Posted> end = machine::waitFor(MMN_END);
            if (!end || end->wParam == reinterpret_cast<WPARAM>(player)) {
                return end.has_value();
            }
        }
    }

    /// Calls by chance until the song is over, and sees the position never go back.
    void disturb(const std::atomic<bool>& over) {
        std::mt19937 random(1);
        std::uint32_t position = 0;
        while (!over) {
            const HMIDIOUT player = anyOf(random, 0, 1) == 0 ? mm1 : mm2;
            changeSetting(random, player);
            callBesideTicks(random, mm1);
            mm_SetTempo(mm1, 400000, static_cast<float>(anyOf(random, 0, 60)));
            mm_PauseSync(mm1);
            mm_ReStartSync(mm1);
            const std::uint32_t now = mm_GetTicks(mm1);
            EXPECT_GE(now, position);
            position = now;
            // Long messages take their time.
            machine::output(0).stillPlaying = anyOf(random, 0, 200);
            std::this_thread::yield();
        }
    }

    void playOther(const std::string& file, const std::atomic<bool>& over) {
        std::mt19937 random(2);
        while (!over) {
            playBriefly(random, mm2, file);
        }
    }
};

TEST_F(RealTime, A_song_plays_whole_while_settings_change_and_another_song_comes_and_goes) {
    const Watchdog watchdog;
    start();
    play(numbered(0xA0));
    const std::string other = numbered(0xE0).write();
    std::atomic<bool> over{false};
    std::thread disturbing([this, &over] { disturb(over); });
    std::thread playing([this, &other, &over] { playOther(other, over); });
    EXPECT_TRUE(waitForEnd(mm1));
    over = true;
    disturbing.join();
    playing.join();
    mm_Close(mm1);
    int arrived = 0;
    for (const Sent& sent : history()) {
        if ((sent.bytes[0] & 0xF0) == 0xA0) {
            ASSERT_EQ(sent.bytes[1] << 7 | sent.bytes[2], arrived++);
        }
    }
    EXPECT_EQ(arrived, kMessages);
    EXPECT_THAT(stillSounding(history()), IsEmpty());
}

TEST_F(RealTime, Songs_opened_at_the_same_time_keep_their_words_apart) {
    constexpr int kSyllables = 60;
    start();
    const auto file = [](char letter) {
        SongBuilder song;
        TrackBuilder& track = song.track();
        track.karaoke(0).karaoke(4, std::string(kSyllables, letter)).controller(0, 31, 127);
        for (int i = 0; i <= kSyllables; ++i) {
            track.at(static_cast<std::uint32_t>(i)).controller(0, 31, i);
        }
        track.noteOn(0, 60);
        return song.write();
    };
    const auto openOften = [](HMIDIOUT player, const std::string& name, char letter) {
        for (int i = 0; i < 50; ++i) {
            ASSERT_EQ(mm_Open(player, name.c_str(), 0, 0, 0, nullptr), 1);
            ASSERT_EQ(mm_GetNumLyrics(player), 1 + kSyllables);
            for (std::int16_t lyric = 1; lyric <= kSyllables; ++lyric) {
                ASSERT_EQ(mm_GetPointerLyrics(player, lyric)->text, std::string(1, letter));
            }
        }
    };
    const std::string first = file('a');
    const std::string second = file('b');
    std::thread other([&] { openOften(mm2, second, 'b'); });
    openOften(mm1, first, 'a');
    other.join();
}

TEST_F(RealTime, Two_songs_keep_the_timers_pace) {
    start();
    SongBuilder song(100);
    song.track().noteOn(0, 60).at(100).noteOn(0, 61).at(110).noteOff(0, 0);
    const std::string file = song.write();
    for (HMIDIOUT player : {mm1, mm2}) {
        ASSERT_EQ(mm_Open(player, file.c_str(), 0, 0, 0, nullptr), 1);
        mm_StartSync(player);
    }
    EXPECT_TRUE(waitForEnd(mm2));
    for (const int output : {0, 1}) {
        std::vector<std::uint64_t> times;
        for (const Sent& sent : history()) {
            if (sent.output == output && sent.bytes[0] == 0x90) {
                times.push_back(sent.time);
            }
        }
        ASSERT_EQ(times.size(), 2U);
        EXPECT_GE(times[1] - times[0], 450000U) << "a quarter note of half a second";
    }
}

TEST_F(RealTime, An_output_that_blocks_for_seconds_delays_the_rest_and_loses_nothing) {
    const Watchdog watchdog;
    start();
    const std::string file = numbered(0xA0).write();
    for (HMIDIOUT player : {mm1, mm2}) {
        ASSERT_EQ(mm_Open(player, file.c_str(), 0, 0, 0, nullptr), 1);
        mm_SetLoop(player, nullptr);
        mm_SetTempo(player, 500000, 90);
    }
    machine::output(0).onMessage = [] {
        machine::output(0).onMessage = nullptr;
        std::this_thread::sleep_for(std::chrono::seconds(2));
    };
    mm_StartSync(mm1);
    mm_StartSync(mm2);
    // Waits for the blocked tick, as any call under the lock.
    mm_CreateMap(mm2, 0);
    EXPECT_TRUE(waitForEnd(mm2));
    mm_StopSync(mm1);
    int arrived[2] = {};
    for (const Sent& sent : history()) {
        if ((sent.bytes[0] & 0xF0) == 0xA0) {
            ASSERT_EQ(sent.bytes[1] << 7 | sent.bytes[2], arrived[sent.output]++);
        }
    }
    EXPECT_EQ(arrived[0], kMessages);
    EXPECT_EQ(arrived[1], kMessages);
    EXPECT_THAT(stillSounding(history()), IsEmpty());
}
