// Signals that end or suspend the program, taken by a thread of their own.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace karaoke {

/// While it lives, SIGINT, SIGTERM and SIGHUP are only noted, and the main thread is to end the program. When
/// it does not within a moment, because it is held up in a call, the watching thread does. Make it before any
/// other thread, so that all have these signals blocked.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// @return the signal that asks to stop; 0 = none yet
    int received() const {
        return m_received;
    }
    /// Whether a signal asks to stop. A main thread that has asked and knows gets time to close.
    bool stopping();
    /// Whether SIGTSTP has come since the last call.
    bool takeSuspend() {
        return m_suspend.exchange(false);
    }
    /// What the watching thread does before it ends the program itself; empty = nothing.
    void setLastResort(std::function<void()> action);

    /// Exit code of a program that a signal has ended.
    static int exitCode(int signal);

private:
    void watch();
    void endUnlessClosed(int signal);

    std::atomic<int> m_received = 0;
    std::atomic<bool> m_suspend = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_acknowledged = false;
    bool m_closed = false;
    std::function<void()> m_lastResort;
    std::thread m_thread;
};

} // namespace karaoke
