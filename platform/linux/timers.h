// What the real and the manual clock share: the description of a timer, and the operations of a
// clock.
#pragma once

#include <cstdint>

#include "platform/linux/system_names.h"

struct TimerSettings {
    UINT id;
    UINT period; ///< milliseconds
    LPTIMECALLBACK callback;
    DWORD_PTR user;
    bool periodic;

    void call() const {
        callback(id, 0, user, 0, 0);
    }
};

/// Time and the timers that run on it. Safe for any thread.
class Clock {
public:
    virtual ~Clock() = default;

    /// The engine's own reading of the time.
    virtual std::uint64_t readMilliseconds() = 0;
    /// Never changes the time.
    virtual std::uint64_t microseconds() const = 0;
    /// False when the timer cannot be started.
    virtual bool startTimer(const TimerSettings& settings) = 0;
    /// No callback begins afterwards; one may be under way. False when there is no such timer.
    /// Never waits for the callback, which may itself wait for a lock of the caller's.
    virtual bool stopTimer(UINT id) = 0;
    virtual void stopAllTimers() = 0;
};
