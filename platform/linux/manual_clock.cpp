// Manual time: periods run in order, each at its exact time, with no lock held during a callback.
#include "platform/linux/manual_clock.h"

#include <algorithm>

void ManualClock::restart(std::uint64_t milliseconds) {
    const std::lock_guard guard(m_mutex);
    m_timers.clear();
    m_now = milliseconds;
}

void ManualClock::advance(std::uint64_t milliseconds) {
    Lock lock(m_mutex);
    if (m_runner == std::this_thread::get_id()) {
        m_now += milliseconds;
        return;
    }
    m_idle.wait(lock, [this] { return m_runner == std::thread::id(); });
    runUntil(lock, m_now + milliseconds);
}

std::uint64_t ManualClock::readMilliseconds() {
    Lock lock(m_mutex);
    const std::uint64_t answer = m_now;
    if (m_runner == std::thread::id()) {
        runUntil(lock, answer + 1);
    } else {
        ++m_now;
    }
    return answer;
}

std::uint64_t ManualClock::microseconds() const {
    constexpr std::uint64_t kMicrosecondsPerMillisecond = 1000;
    return m_now * kMicrosecondsPerMillisecond;
}

bool ManualClock::startTimer(const TimerSettings& settings) {
    const std::lock_guard guard(m_mutex);
    m_timers.push_back({settings, m_now + settings.period});
    return true;
}

bool ManualClock::stopTimer(UINT id) {
    const std::lock_guard guard(m_mutex);
    return std::erase_if(m_timers, [id](const Timer& timer) { return timer.settings.id == id; }) >
           0;
}

void ManualClock::stopAllTimers() {
    const std::lock_guard guard(m_mutex);
    m_timers.clear();
}

// The target stands still while callbacks let time pass themselves, or the loop might never end.
void ManualClock::runUntil(Lock& lock, std::uint64_t target) {
    m_runner = std::this_thread::get_id();
    TimerSettings settings = {};
    while (takeDue(target, settings)) {
        lock.unlock();
        settings.call();
        lock.lock();
    }
    m_now = std::max<std::uint64_t>(m_now, target);
    m_runner = std::thread::id();
    m_idle.notify_one();
}

// Of timers due at the same time the one started first goes first.
ManualClock::Timer* ManualClock::earliest() {
    const auto found = std::min_element(
        m_timers.begin(), m_timers.end(),
        [](const Timer& left, const Timer& right) { return left.due < right.due; });
    return found == m_timers.end() ? nullptr : &*found;
}

bool ManualClock::takeDue(std::uint64_t target, TimerSettings& settings) {
    Timer* timer = earliest();
    if (timer == nullptr || timer->due > target) {
        return false;
    }
    m_now = std::max<std::uint64_t>(m_now, timer->due);
    settings = timer->settings;
    timer->due += settings.period;
    if (!settings.periodic) {
        m_timers.erase(m_timers.begin() + (timer - m_timers.data()));
    }
    return true;
}
