// The library on a 1 ms timer while threads of the host call everything and its outputs are slow. Every round
// plays differently: --gtest_repeat makes minutes of it.
#include <atomic>
#include <random>
#include <thread>

#include "tests/whole/host_threads.h"
#include "tests/whole/random_song.h"
#include "tests/windows/dll_test.h"

using ::testing::IsEmpty;

namespace {

constexpr std::uint32_t kTicks = 2000; ///< that are played
constexpr int kSongTicks = 2 * static_cast<int>(kTicks);

void delaySomeMessages() {
    constexpr int kSlowMessages = 150;
    static std::atomic<int> messages{0};
    if (++messages % kSlowMessages == 0) {
        Sleep(5);
    }
}

} // namespace

class DllThreads : public DllTest {
protected:
    void SetUp() override {
        load();
        settings.timerPeriod = 1;
        ASSERT_EQ(start(), 1);
        machine::output(0).onMessage = delaySomeMessages;
        machine::output(1).onMessage = delaySomeMessages;
    }

    /// Calls by chance, and sees the position never go back.
    void disturb(const std::atomic<bool>& over) {
        std::mt19937 random(nextSeed());
        std::uint32_t position = 0;
        while (!over) {
            changeSetting(random, anyOf(random, 0, 1) == 0 ? mm1 : mm2);
            callBesideTicks(random, mm1);
            mm_PauseSync(mm1);
            mm_ReStartSync(mm1);
            machine::output(0).stillPlaying = anyOf(random, 0, 200);
            const std::uint32_t now = mm_GetTicks(mm1);
            EXPECT_GE(now, position);
            position = now;
            std::this_thread::yield();
        }
    }
};

TEST_F(DllThreads, A_song_plays_whole_while_everything_is_called_and_another_comes_and_goes) {
    const Watchdog watchdog;
    const std::string other = messageEveryTick(0xE0, kSongTicks).write();
    play(mm1, messageEveryTick(0xA0, kSongTicks));
    std::atomic<bool> over{false};
    std::thread disturbing([this, &over] { disturb(over); });
    std::thread playing([this, &over, &other] {
        std::mt19937 random(nextSeed());
        while (!over) {
            playBriefly(random, mm2, other);
        }
    });
    while (mm_GetTicks(mm1) < kTicks) {
        Sleep(1);
    }
    over = true;
    disturbing.join();
    playing.join();
    mm_PauseSync(mm1);
    const std::uint32_t position = mm_GetTicks(mm1);
    mm_Close(mm1);
    const std::vector<Sent> log = machine::takeSent();
    std::uint32_t arrived = 0;
    for (const Sent& sent : log) {
        if ((sent.bytes[0] & 0xF0) == 0xA0) {
            ASSERT_EQ(static_cast<std::uint32_t>(sent.bytes[1] << 7 | sent.bytes[2]), arrived++);
        }
    }
    EXPECT_EQ(arrived, position + 1);
    EXPECT_THAT(stillSounding(log), IsEmpty());
}
