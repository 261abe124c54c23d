// Timer ticks that come late, in bunches or not at all, while other threads of the host call the engine and an
// output is slow. Every round plays differently: --gtest_repeat makes minutes of it.
#include <atomic>
#include <functional>
#include <random>
#include <thread>
#include <vector>

#include "tests/support/engine_test.h"
#include "tests/whole/host_threads.h"
#include "tests/whole/random_song.h"

using ::testing::IsEmpty;

namespace {

constexpr std::uint32_t kPeriods = 1500;
constexpr int kSongTicks = 2 * static_cast<int>(kPeriods);
constexpr int kSlowMessages = 100;

void delaySomeMessages() {
    static std::atomic<int> messages{0};
    if (++messages % kSlowMessages == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

class HostileTiming : public EngineTest {
protected:
    HostileTiming() {
        settings.timerPeriod = 1;
    }

    /// Plays the song for kPeriods periods while each of the calls is made on a thread of its own.
    void playAgainst(const std::vector<std::function<void(std::mt19937&)>>& calls) {
        const Watchdog watchdog;
        start();
        play(messageEveryTick(0xA0, kSongTicks));
        for (int i = 0; i < outputs; ++i) {
            machine::output(i).onMessage = delaySomeMessages;
        }
        std::atomic<bool> over{false};
        std::vector<std::thread> threads;
        for (const auto& call : calls) {
            threads.emplace_back([&call, &over, seed = nextSeed()] {
                std::mt19937 random(seed);
                while (!over) {
                    call(random);
                    std::this_thread::yield();
                }
            });
        }
        driveTimer();
        over = true;
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    /// Messages with a number that arrived; each is the one after the last.
    std::uint32_t arrivedInOrder() {
        int arrived = 0;
        for (const Sent& sent : history()) {
            if ((sent.bytes[0] & 0xF0) == 0xA0) {
                EXPECT_EQ(sent.bytes[1] << 7 | sent.bytes[2], arrived++);
            }
        }
        return static_cast<std::uint32_t>(arrived);
    }

private:
    /// One period after another, in bunches, and some long after the one before.
    void driveTimer() {
        std::mt19937 random(nextSeed());
        for (std::uint32_t passed = 0; passed < kPeriods;) {
            const auto bunch = static_cast<std::uint32_t>(anyOf(random, 1, 4));
            const std::uint32_t count = std::min(bunch * bunch, kPeriods - passed);
            ticks(static_cast<int>(count));
            passed += count;
            std::this_thread::sleep_for(std::chrono::microseconds(anyOf(random, 0, 10) * 500));
        }
    }
};

TEST_F(HostileTiming, No_period_is_lost_to_calls_that_hold_the_lock) {
    const std::string other = messageEveryTick(0xE0, kSongTicks).write();
    playAgainst({[this](std::mt19937& random) { callBesideTicks(random, mm1); },
                 [this](std::mt19937&) {
                     EnterCriticalSection(&lock);
                     mm_PauseSync(mm1);
                     mm_ReStartSync(mm1);
                     LeaveCriticalSection(&lock);
                 },
                 [this, &other](std::mt19937& random) { playBriefly(random, mm2, other); }});
    EXPECT_EQ(mm_GetTicks(mm1), kPeriods);
    mm_Close(mm1);
    EXPECT_EQ(arrivedInOrder(), kPeriods + 1);
    EXPECT_THAT(stillSounding(history()), IsEmpty());
}

TEST_F(HostileTiming, A_period_that_falls_into_a_setting_is_lost_whole) {
    const std::string other = messageEveryTick(0xE0, kSongTicks).write();
    playAgainst({[this](std::mt19937& random) { changeSetting(random, mm1); },
                 [this](std::mt19937& random) { callBesideTicks(random, mm1); },
                 [this](std::mt19937& random) { changeSetting(random, mm2); },
                 [this, &other](std::mt19937& random) { playBriefly(random, mm2, other); }});
    const std::uint32_t position = mm_GetTicks(mm1);
    EXPECT_LE(position, kPeriods);
    mm_Close(mm1);
    EXPECT_EQ(arrivedInOrder(), position + 1);
    EXPECT_THAT(stillSounding(history()), IsEmpty());
}
