// A clock that stands until it is told to go on, and runs its timers on the thread that tells it.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/linux/timers.h"

class ManualClock final : public Clock {
public:
    /// Drops every timer and sets the time.
    void restart(std::uint64_t milliseconds);

    /// Lets time pass and runs what falls due. Waits while another thread does so; inside a
    /// callback only time passes, and the periods are made up for at the next chance.
    void advance(std::uint64_t milliseconds);

    /// Answers the time and then lets one millisecond pass, without ever waiting for another
    /// thread.
    std::uint64_t readMilliseconds() override;
    std::uint64_t microseconds() const override;
    bool startTimer(const TimerSettings& settings) override;
    bool stopTimer(UINT id) override;
    void stopAllTimers() override;

private:
    struct Timer {
        TimerSettings settings;
        std::uint64_t due; ///< milliseconds
    };
    using Lock = std::unique_lock<std::mutex>;

    void runUntil(Lock& lock, std::uint64_t target);
    Timer* earliest();
    bool takeDue(std::uint64_t target, TimerSettings& settings);

    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::atomic<std::uint64_t> m_now = 0; ///< milliseconds; changed with the mutex held
    std::vector<Timer> m_timers;          ///< in the order they were started
    std::thread::id m_runner;             ///< the thread that runs callbacks; none when idle
};
