// The state of the terminal that is given back on every way out.
#include "karaoke/terminal_mode.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>

namespace karaoke {

namespace {

constexpr int kCrashes[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

// Read by a signal handler, so that nothing of it may have a destructor.
struct Guarded {
    std::atomic<bool> taken = false;
    bool hasSettings = false;
    termios settings{};
    const char* sequence = nullptr;
    std::size_t length = 0;
};
Guarded g_guarded;

/// A program in the background that changes the terminal's settings would be stopped.
bool inForeground() {
    return ::isatty(STDIN_FILENO) == 1 && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

/// The default action is in force again while the handler runs.
void crashed(int signal) {
    restoreTerminal();
    ::raise(signal);
}

void catchCrashes() {
    struct sigaction action {};
    action.sa_handler = crashed;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (const int signal : kCrashes) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

void guardTerminal(std::string_view sequence) {
    g_guarded.sequence = sequence.data();
    g_guarded.length = sequence.size();
    g_guarded.hasSettings = inForeground() && ::tcgetattr(STDIN_FILENO, &g_guarded.settings) == 0;
    g_guarded.taken = true;
    catchCrashes();
}

void releaseTerminal() {
    g_guarded.taken = false;
}

void restoreTerminal() {
    if (!g_guarded.taken.exchange(false)) {
        return;
    }
    // A terminal that is gone has nothing to restore.
    static_cast<void>(!::write(STDOUT_FILENO, g_guarded.sequence, g_guarded.length));
    if (g_guarded.hasSettings && inForeground()) {
        ::tcsetattr(STDIN_FILENO, TCSANOW, &g_guarded.settings);
    }
}

} // namespace karaoke
