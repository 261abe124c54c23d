// The engine's guards, always taken in this order: the host's lock, then the busy flag. None of them
// waits for an engine that is not running: they come up empty instead, and the call does nothing.
#pragma once

#include <atomic>

#include "corvmo32_records.h"
#include "engine/globals.h"

/// True between a successful start-up and shut-down. Any thread.
inline bool engineRunning() noexcept {
    return g_engineState.load() == EngineState::Running;
}

/// Holds the host's lock.
class EngineLock {
public:
    EngineLock() noexcept;
    ~EngineLock() {
        if (m_lock != nullptr) {
            LeaveCriticalSection(m_lock);
        }
    }
    EngineLock(const EngineLock&) = delete;
    EngineLock& operator=(const EngineLock&) = delete;
    explicit operator bool() const noexcept {
        return m_lock != nullptr;
    }

private:
    CRITICAL_SECTION* m_lock; ///< the one that was entered: a later start-up may bring another
};

/// Waits until the busy flag is clear, without claiming it; false when the engine is not running.
bool waitUntilIdle() noexcept;

/// Waits for the busy flag and holds it.
class BusyClaim {
public:
    enum class Wait : bool { No, Yes };

    /// Without waiting, comes up empty when the flag is set.
    explicit BusyClaim(Wait wait = Wait::Yes) noexcept
        : m_held(claimIfIdle() || (wait == Wait::Yes && waitToClaim())) {}
    ~BusyClaim() {
        release();
    }
    BusyClaim(const BusyClaim&) = delete;
    BusyClaim& operator=(const BusyClaim&) = delete;
    explicit operator bool() const noexcept {
        return m_held;
    }

    /// Gives the flag back before the end of the scope.
    void release() noexcept {
        if (m_held) {
            g_busy.store(0, std::memory_order_release);
            m_held = false;
        }
    }

    /// Leaves the flag set for good: only shut-down does.
    void keep() noexcept {
        m_held = false;
    }

private:
    static bool claimIfIdle() noexcept {
        std::uint32_t idle = 0;
        return engineRunning() &&
               g_busy.compare_exchange_strong(idle, 1, std::memory_order_acq_rel);
    }
    /// False when the engine does not run.
    static bool waitToClaim() noexcept;

    bool m_held;
};

/// Counts a timer callback in and out, so that shut-down can wait for those under way.
class TickInFlight {
public:
    TickInFlight() noexcept;
    ~TickInFlight();
    TickInFlight(const TickInFlight&) = delete;
    TickInFlight& operator=(const TickInFlight&) = delete;

    /// Waits until no callback is under way, but not for ever: a host may wrongly hold its lock.
    static void waitForAll() noexcept;
};

/// Keeps long messages of one player apart. Taken inside the other two guards or without them.
class LongMessageGuard {
public:
    explicit LongMessageGuard(const MIDIOUT& player) noexcept;
    ~LongMessageGuard();
    LongMessageGuard(const LongMessageGuard&) = delete;
    LongMessageGuard& operator=(const LongMessageGuard&) = delete;

private:
    std::atomic<bool>& m_underWay;
};
