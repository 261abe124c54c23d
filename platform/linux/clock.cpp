// The clock in use, and the system's time functions on it.
#include <atomic>
#include <mutex>

#include "platform/linux/faults.h"
#include "platform/linux/manual_clock.h"
#include "platform/linux/real_clock.h"
#include "platform/linux/timer_limits.h"

namespace {

RealClock g_realClock;

// Outlives every thread that may still read it.
ManualClock& manualClock() {
    static ManualClock& instance = *new ManualClock;
    return instance;
}

std::atomic<bool> g_manual = false;
std::atomic<UINT> g_lastTimerId = 0;

Clock& clockInUse() {
    if (g_manual) {
        return manualClock();
    }
    return g_realClock;
}

UINT nextTimerId() {
    UINT id = ++g_lastTimerId;
    while (id == 0) {
        id = ++g_lastTimerId;
    }
    return id;
}

} // namespace

DWORD timeGetTime() {
    return static_cast<DWORD>(clockInUse().readMilliseconds());
}

MMRESULT timeGetDevCaps(TIMECAPS* caps, UINT size) {
    if (faults::fails("timeGetDevCaps") || caps == nullptr || size < sizeof(TIMECAPS)) {
        return TIMERR_NOCANDO;
    }
    const TimerLimits limits = timerLimits();
    *caps = {limits.shortest, limits.longest};
    return TIMERR_NOERROR;
}

MMRESULT timeBeginPeriod(UINT period) {
    const bool granted = !faults::fails("timeBeginPeriod") && timerLimits().contain(period);
    return granted ? TIMERR_NOERROR : TIMERR_NOCANDO;
}

MMRESULT timeEndPeriod(UINT period) {
    const bool granted = !faults::fails("timeEndPeriod") && timerLimits().contain(period);
    return granted ? TIMERR_NOERROR : TIMERR_NOCANDO;
}

MMRESULT timeSetEvent(UINT delay, UINT, LPTIMECALLBACK callback, DWORD_PTR user, UINT flags) {
    if (faults::fails("timeSetEvent") || callback == nullptr || !timerLimits().contain(delay)) {
        return 0;
    }
    const bool periodic = (flags & TIME_PERIODIC) != 0;
    const UINT id = nextTimerId();
    return clockInUse().startTimer({id, delay, callback, user, periodic}) ? id : 0;
}

MMRESULT timeKillEvent(UINT timerId) {
    const bool stopped = !faults::fails("timeKillEvent") && clockInUse().stopTimer(timerId);
    return stopped ? TIMERR_NOERROR : MMSYSERR_INVALPARAM;
}

void corvmo_UseRealClock(void) {
    manualClock().stopAllTimers();
    g_manual = false;
}

void corvmo_UseManualClock(uint32_t start) {
    g_realClock.stopAllTimers();
    manualClock().restart(start);
    g_manual = true;
}

void corvmo_AdvanceClock(uint32_t milliseconds) {
    if (g_manual) {
        manualClock().advance(milliseconds);
    }
}

uint64_t corvmo_GetClock(void) {
    return clockInUse().microseconds();
}
