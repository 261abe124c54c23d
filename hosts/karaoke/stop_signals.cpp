// Signals that end or suspend the program.
#include "karaoke/stop_signals.h"

#include <signal.h>
#include <unistd.h>

#include <chrono>

namespace karaoke {

namespace {

using namespace std::chrono_literals;

constexpr auto kTimeToNotice = 500ms;
constexpr auto kTimeToClose = 2s;
constexpr unsigned kSecondsOfLastResort = 2;
constexpr int kSignalExitBase = 128;
constexpr int kEndOfWatch = SIGUSR1; ///< sent by the destructor to the watching thread

sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGTSTP, kEndOfWatch}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

} // namespace

StopSignals::StopSignals() {
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    m_thread = std::thread([this] { watch(); });
}

StopSignals::~StopSignals() {
    {
        const std::lock_guard guard(m_mutex);
        m_closed = true;
    }
    m_changed.notify_all();
    pthread_kill(m_thread.native_handle(), kEndOfWatch);
    m_thread.join();
}

int StopSignals::exitCode(int signal) {
    return kSignalExitBase + signal;
}

bool StopSignals::stopping() {
    if (m_received == 0) {
        return false;
    }
    {
        const std::lock_guard guard(m_mutex);
        m_acknowledged = true;
    }
    m_changed.notify_all();
    return true;
}

void StopSignals::setLastResort(std::function<void()> action) {
    const std::lock_guard guard(m_mutex);
    m_lastResort = std::move(action);
}

void StopSignals::watch() {
    const sigset_t signals = watchedSignals();
    for (;;) {
        int signal = 0;
        sigwait(&signals, &signal);
        if (signal == kEndOfWatch) {
            return;
        }
        if (signal == SIGTSTP) {
            m_suspend = true;
            continue;
        }
        m_received = signal;
        endUnlessClosed(signal);
    }
}

void StopSignals::endUnlessClosed(int signal) {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, kTimeToNotice, [this] { return m_acknowledged || m_closed; });
    if (m_acknowledged && !m_closed) {
        m_changed.wait_for(lock, kTimeToClose, [this] { return m_closed; });
    }
    if (m_closed) {
        return;
    }
    // Nothing may hold up the last resort itself: the alarm ends the process.
    ::alarm(kSecondsOfLastResort);
    if (m_lastResort) {
        m_lastResort();
    }
    ::_exit(exitCode(signal));
}

} // namespace karaoke
