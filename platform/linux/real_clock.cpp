// The monotonic clock and its timer threads. A thread keeps absolute deadlines, so that it neither
// drifts nor loses a period when one comes late.
#include "platform/linux/real_clock.h"

#include <pthread.h>
#include <sys/prctl.h>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <system_error>
#include <thread>

namespace {

using SteadyClock = std::chrono::steady_clock;

// Above ordinary real-time work, below the audio threads that a stalled timer must not hold up.
constexpr int kTimerPriority = 50;
constexpr unsigned long kTimerSlackNanoseconds = 1;
// How long the end of the program waits for a callback that does not return.
constexpr std::chrono::seconds kLongestEnding{2};

void raisePriority() {
    const sched_param priority = {kTimerPriority};
    // Where it is not granted the timer runs like any other thread, with its wake-ups not lumped
    // together.
    if (pthread_setschedparam(pthread_self(), SCHED_FIFO, &priority) != 0) {
        prctl(PR_SET_TIMERSLACK, kTimerSlackNanoseconds, 0UL, 0UL, 0UL);
    }
}

} // namespace

class TimerThread {
public:
    explicit TimerThread(const TimerSettings& settings)
        : m_settings(settings), m_thread([this] { run(); }) {}
    ~TimerThread() {
        m_thread.join();
    }
    TimerThread(const TimerThread&) = delete;
    TimerThread& operator=(const TimerThread&) = delete;

    UINT id() const {
        return m_settings.id;
    }

    bool runsHere() const {
        return m_thread.get_id() == std::this_thread::get_id();
    }

    void stop() {
        const std::lock_guard guard(m_mutex);
        m_stopping = true;
        m_changed.notifyAll();
    }

    bool ended() {
        const std::lock_guard guard(m_mutex);
        return m_ended;
    }

    bool waitForEnd(SteadyClock::time_point deadline) {
        const std::lock_guard guard(m_mutex);
        while (!m_ended && m_changed.waitUntil(m_mutex, deadline)) {
        }
        return m_ended;
    }

private:
    void run() {
        pthread_setname_np(pthread_self(), "corvmo timer");
        raisePriority();
        const std::chrono::milliseconds period(m_settings.period);
        auto due = m_start + period;
        bool goesOn = true;
        while (goesOn && waitFor(due)) {
            m_settings.call();
            due += period;
            goesOn = m_settings.periodic;
        }
        const std::lock_guard guard(m_mutex);
        m_ended = true;
        m_changed.notifyAll();
    }

    // True = time for the callback; false = stopped.
    bool waitFor(SteadyClock::time_point due) {
        const std::lock_guard guard(m_mutex);
        while (!m_stopping && SteadyClock::now() < due) {
            m_changed.waitUntil(m_mutex, due);
        }
        return !m_stopping;
    }

    const TimerSettings m_settings;
    const SteadyClock::time_point m_start = SteadyClock::now();
    PriorityMutex m_mutex;
    Condition m_changed;
    bool m_stopping = false;
    bool m_ended = false;
    std::thread m_thread;
};

RealClock::RealClock() = default;

// The library may be unloaded after this: no thread may be left in its code.
RealClock::~RealClock() {
    stopAllTimers();
    const auto deadline = SteadyClock::now() + kLongestEnding;
    for (auto& timer : m_stopped) {
        if (timer->runsHere() || !timer->waitForEnd(deadline)) {
            // Its callback hangs or ends the program itself: joining would hang the end of the
            // program.
            static_cast<void>(timer.release());
        }
    }
}

std::uint64_t RealClock::microseconds() const {
    const auto sinceOrigin = SteadyClock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(sinceOrigin).count());
}

std::uint64_t RealClock::readMilliseconds() {
    constexpr std::uint64_t kMicrosecondsPerMillisecond = 1000;
    return microseconds() / kMicrosecondsPerMillisecond;
}

bool RealClock::startTimer(const TimerSettings& settings) {
    const std::lock_guard guard(m_mutex);
    collectEnded();
    try {
        m_running.push_back(std::make_unique<TimerThread>(settings));
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

bool RealClock::stopTimer(UINT id) {
    const std::lock_guard guard(m_mutex);
    collectEnded();
    const auto found = std::find_if(m_running.begin(), m_running.end(),
                                    [id](const auto& timer) { return timer->id() == id; });
    if (found == m_running.end()) {
        return false;
    }
    (*found)->stop();
    m_stopped.push_back(std::move(*found));
    m_running.erase(found);
    return true;
}

void RealClock::stopAllTimers() {
    const std::lock_guard guard(m_mutex);
    for (auto& timer : m_running) {
        timer->stop();
        m_stopped.push_back(std::move(timer));
    }
    m_running.clear();
    collectEnded();
}

// Joins threads that have nothing left to do, so it never waits for a callback. A timer's own
// thread never counts as ended here.
void RealClock::collectEnded() {
    const auto ended = [](const auto& timer) { return timer->ended(); };
    std::erase_if(m_stopped, ended);
    std::erase_if(m_running, ended);
}
