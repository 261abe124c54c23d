// The machine's monotonic clock, with a thread of its own for every timer.
#pragma once

#include <memory>
#include <vector>

#include "platform/linux/priority_mutex.h"
#include "platform/linux/timers.h"

class TimerThread;

class RealClock final : public Clock {
public:
    RealClock();
    ~RealClock() override;

    std::uint64_t readMilliseconds() override;
    std::uint64_t microseconds() const override;
    bool startTimer(const TimerSettings& settings) override;
    bool stopTimer(UINT id) override;
    void stopAllTimers() override;

private:
    void collectEnded();

    PriorityMutex m_mutex;
    std::vector<std::unique_ptr<TimerThread>> m_running;
    std::vector<std::unique_ptr<TimerThread>>
        m_stopped; ///< told to end, perhaps still in the callback
};
