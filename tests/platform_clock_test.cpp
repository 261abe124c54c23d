// The clocks of the platform layer and the timers that run on them.
#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/linux/faults.h"
#include "platform/system.h"

namespace {

constexpr std::chrono::seconds kWatchdog{30};

// A timer that calls a function with the number of the callback, counted from 1. A killed timer's
// last callback may still be about to begin, so what it finds lives on to the end of the program.
class TestTimer {
public:
    explicit TestTimer(UINT period, std::function<void(TestTimer&, int)> work = nullptr,
                       UINT flags = TIME_PERIODIC)
        : m_state(newState()) {
        const std::lock_guard guard(m_state.mutex);
        m_state.timer = this;
        m_state.work = std::move(work);
        m_state.id = timeSetEvent(period, period, &TestTimer::run,
                                  reinterpret_cast<DWORD_PTR>(&m_state), flags);
    }
    ~TestTimer() {
        kill();
        std::unique_lock lock(m_state.mutex);
        m_state.changed.wait(lock, [this] { return !m_state.inside; });
        m_state.timer = nullptr;
        m_state.work = nullptr;
    }
    TestTimer(const TestTimer&) = delete;
    TestTimer& operator=(const TestTimer&) = delete;

    MMRESULT kill() {
        return timeKillEvent(id());
    }
    UINT id() {
        const std::lock_guard guard(m_state.mutex);
        return m_state.id;
    }
    int count() {
        const std::lock_guard guard(m_state.mutex);
        return m_state.count;
    }
    bool waitForCount(int count) {
        std::unique_lock lock(m_state.mutex);
        return m_state.changed.wait_for(lock, kWatchdog, [&] { return m_state.count >= count; });
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        TestTimer* timer = nullptr;
        std::function<void(TestTimer&, int)> work;
        UINT id = 0;
        int count = 0;
        bool inside = false;
    };

    static State& newState() {
        static std::mutex s_mutex;
        static auto& s_states = *new std::vector<std::unique_ptr<State>>;
        const std::lock_guard guard(s_mutex);
        return *s_states.emplace_back(std::make_unique<State>());
    }

    static void run(UINT id, UINT, DWORD_PTR user, DWORD_PTR, DWORD_PTR) {
        State& state = *reinterpret_cast<State*>(user);
        std::unique_lock lock(state.mutex);
        EXPECT_EQ(id, state.id);
        if (state.timer == nullptr) {
            return;
        }
        state.inside = true;
        const int number = state.count + 1;
        lock.unlock();
        if (state.work) {
            state.work(*state.timer, number);
        }
        lock.lock();
        state.count = number;
        state.inside = false;
        state.changed.notify_all();
    }

    State& m_state;
};

class Gate {
public:
    void open() {
        const std::lock_guard guard(m_mutex);
        m_open = true;
        m_opened.notify_all();
    }
    bool pass() {
        std::unique_lock lock(m_mutex);
        return m_opened.wait_for(lock, kWatchdog, [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_open = false;
};

std::uint64_t milliseconds() {
    return corvmo_GetClock() / 1000;
}

class ManualClockTest : public testing::Test {
protected:
    ManualClockTest() {
        corvmo_UseManualClock(0);
    }
    ~ManualClockTest() override {
        corvmo_UseRealClock();
    }
};

class RealClockTest : public testing::Test {
protected:
    ~RealClockTest() override {
        faults::clear();
    }
};

} // namespace

TEST_F(ManualClockTest, Runs_the_periods_of_all_timers_in_order_and_at_their_exact_times) {
    using Run = std::pair<char, std::uint64_t>;
    std::vector<Run> runs;
    corvmo_AdvanceClock(100);
    TestTimer slow(10, [&](TestTimer&, int) { runs.emplace_back('s', milliseconds()); });
    corvmo_AdvanceClock(1);
    TestTimer fast(3, [&](TestTimer&, int) { runs.emplace_back('f', milliseconds()); });
    corvmo_AdvanceClock(2);
    EXPECT_TRUE(runs.empty());
    corvmo_AdvanceClock(17);

    const std::vector<Run> expected = {{'f', 104}, {'f', 107}, {'s', 110}, {'f', 110},
                                       {'f', 113}, {'f', 116}, {'f', 119}, {'s', 120}};
    EXPECT_EQ(runs, expected);
    EXPECT_EQ(milliseconds(), 120u);
}

TEST_F(ManualClockTest, Passes_one_millisecond_with_every_reading_of_the_engine) {
    corvmo_UseManualClock(500);
    TestTimer timer(2);
    EXPECT_EQ(timeGetTime(), 500u);
    EXPECT_EQ(timer.count(), 0);
    EXPECT_EQ(timeGetTime(), 501u);
    EXPECT_EQ(timer.count(), 1);
    EXPECT_EQ(corvmo_GetClock(), 502000u);
    EXPECT_EQ(corvmo_GetClock(), 502000u);
}

TEST_F(ManualClockTest, Wraps_the_milliseconds_and_not_the_microseconds) {
    corvmo_UseManualClock(0xFFFFFFFF);
    EXPECT_EQ(timeGetTime(), 0xFFFFFFFFu);
    EXPECT_EQ(timeGetTime(), 0u);
    EXPECT_EQ(corvmo_GetClock(), 0x100000001u * std::uint64_t{1000});
}

TEST_F(ManualClockTest, Makes_up_later_for_periods_that_pass_inside_a_callback) {
    std::vector<std::uint64_t> runs;
    int depth = 0;
    TestTimer timer(2, [&](TestTimer&, int number) {
        EXPECT_EQ(++depth, 1) << "a callback began inside another";
        runs.push_back(milliseconds());
        if (number == 1) {
            corvmo_AdvanceClock(4);
            timeGetTime();
        }
        --depth;
    });
    corvmo_AdvanceClock(4);
    EXPECT_EQ(runs, (std::vector<std::uint64_t>{2, 7}));
    EXPECT_EQ(milliseconds(), 7u);
    corvmo_AdvanceClock(1);
    EXPECT_EQ(runs, (std::vector<std::uint64_t>{2, 7, 7, 8}));
}

TEST_F(ManualClockTest, Ends_a_pause_while_another_thread_is_inside_a_callback) {
    Gate inside;
    Gate release;
    TestTimer timer(1, [&](TestTimer&, int number) {
        if (number == 1) {
            inside.open();
            EXPECT_TRUE(release.pass());
        }
    });
    std::thread advancing([] { corvmo_AdvanceClock(3); });
    ASSERT_TRUE(inside.pass());
    const DWORD start = timeGetTime();
    while (timeGetTime() - start < 5) {
    }
    EXPECT_EQ(timer.kill(), TIMERR_NOERROR) << "does not wait for the callback";
    release.open();
    advancing.join();
    EXPECT_EQ(timer.count(), 1);
}

TEST_F(ManualClockTest, A_killed_timer_stays_silent) {
    TestTimer timer(1, [](TestTimer& self, int number) {
        if (number == 3) {
            EXPECT_EQ(self.kill(), TIMERR_NOERROR);
        }
    });
    TestTimer once(2, nullptr, 0);
    corvmo_AdvanceClock(10);
    EXPECT_EQ(timer.count(), 3);
    EXPECT_EQ(once.count(), 1);
    EXPECT_NE(timer.kill(), TIMERR_NOERROR);
    EXPECT_NE(once.kill(), TIMERR_NOERROR);
    EXPECT_NE(timeKillEvent(0), TIMERR_NOERROR);
}

TEST_F(RealClockTest, Keeps_its_deadlines_and_catches_up_after_a_late_callback) {
    constexpr std::uint64_t kPeriod = 2000;
    Gate release;
    Gate punctual;
    const std::uint64_t before = corvmo_GetClock();
    std::uint64_t after = ~std::uint64_t{0};
    Gate started;
    TestTimer other(1);
    TestTimer timer(2, [&](TestTimer&, int number) {
        EXPECT_TRUE(started.pass());
        const std::uint64_t now = corvmo_GetClock();
        const auto due = static_cast<std::uint64_t>(number) * kPeriod;
        EXPECT_GE(now + 1, before + due) << "callback " << number << " came early";
        if (number == 5) {
            EXPECT_TRUE(release.pass());
        } else if (number > 5 && now < after + due + kPeriod / 2) {
            punctual.open();
        }
    });
    after = corvmo_GetClock();
    started.open();
    ASSERT_TRUE(timer.waitForCount(4));
    ASSERT_TRUE(other.waitForCount(other.count() + 40));
    release.open();
    EXPECT_TRUE(punctual.pass()) << "the periods that passed meanwhile are lost";
}

TEST_F(RealClockTest, Is_killed_by_a_caller_that_holds_the_lock_its_callback_waits_for) {
    CRITICAL_SECTION lock;
    InitializeCriticalSection(&lock);
    Gate underWay;
    {
        TestTimer timer(1, [&](TestTimer&, int) {
            underWay.open();
            EnterCriticalSection(&lock);
            LeaveCriticalSection(&lock);
        });
        EnterCriticalSection(&lock);
        ASSERT_TRUE(underWay.pass());
        EXPECT_EQ(timer.kill(), TIMERR_NOERROR);
        const int ended = timer.count();
        LeaveCriticalSection(&lock);

        TestTimer other(1);
        ASSERT_TRUE(other.waitForCount(20));
        EXPECT_LE(timer.count(), ended + 1) << "only the callback under way may still end";
        EXPECT_NE(timer.kill(), TIMERR_NOERROR);
    }
    DeleteCriticalSection(&lock);
}

TEST_F(RealClockTest, Is_killed_by_its_own_callback) {
    TestTimer timer(1, [](TestTimer& self, int number) {
        if (number == 3) {
            EXPECT_EQ(self.kill(), TIMERR_NOERROR);
        }
    });
    TestTimer once(1, nullptr, 0);
    TestTimer other(1);
    ASSERT_TRUE(timer.waitForCount(3));
    ASSERT_TRUE(other.waitForCount(other.count() + 20));
    EXPECT_EQ(timer.count(), 3);
    EXPECT_EQ(once.count(), 1);
}

TEST_F(RealClockTest, Can_be_started_and_killed_from_several_threads_at_once) {
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([] {
            for (int round = 0; round < 25; ++round) {
                TestTimer timer(1);
                EXPECT_TRUE(timer.waitForCount(round % 2));
                EXPECT_EQ(timer.kill(), TIMERR_NOERROR);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(RealClockTest, Refuses_periods_outside_its_limits) {
    TIMECAPS caps = {};
    ASSERT_EQ(timeGetDevCaps(&caps, sizeof caps), TIMERR_NOERROR);
    EXPECT_EQ(caps.wPeriodMin, 1u);
    EXPECT_EQ(caps.wPeriodMax, 65535u);
    EXPECT_EQ(TestTimer(0).id(), 0u);
    EXPECT_EQ(TestTimer(65536).id(), 0u);
    EXPECT_EQ(timeSetEvent(1, 1, nullptr, 0, TIME_PERIODIC), 0u);

    faults::setTimerLimits(5, 20);
    ASSERT_EQ(timeGetDevCaps(&caps, sizeof caps), TIMERR_NOERROR);
    EXPECT_EQ(caps.wPeriodMin, 5u);
    EXPECT_EQ(caps.wPeriodMax, 20u);
    for (UINT period : {4u, 21u}) {
        EXPECT_EQ(timeBeginPeriod(period), TIMERR_NOCANDO);
        EXPECT_EQ(timeEndPeriod(period), TIMERR_NOCANDO);
        EXPECT_EQ(TestTimer(period).id(), 0u);
    }
    for (UINT period : {5u, 20u}) {
        EXPECT_EQ(timeBeginPeriod(period), TIMERR_NOERROR);
        EXPECT_EQ(timeEndPeriod(period), TIMERR_NOERROR);
        EXPECT_NE(TestTimer(period).id(), 0u);
    }
}
