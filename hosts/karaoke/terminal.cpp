// The terminal that the program runs in.
#include "karaoke/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "karaoke/output_error.h"

namespace karaoke {

namespace {

constexpr std::string_view kTake = "\x1b[?25l\x1b[?7l";
constexpr std::string_view kGiveBack = "\x1b[0m\x1b[?7h\x1b[?25h";
constexpr TerminalSize kUsualSize = {80, 24};

bool writeAll(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// A program in the background that changes the terminal's settings would be stopped.
bool inForeground() {
    return ::isatty(STDIN_FILENO) == 1 && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

} // namespace

bool Terminal::usable() {
    const char* const kind = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && kind != nullptr && *kind != '\0' &&
           std::strcmp(kind, "dumb") != 0;
}

Terminal::~Terminal() {
    giveBack();
}

TerminalSize Terminal::size() const {
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        return kUsualSize;
    }
    return {size.ws_col, size.ws_row};
}

void Terminal::take() {
    if (m_taken.exchange(true)) {
        return;
    }
    stopEcho();
    write(std::string(kTake));
}

void Terminal::stopEcho() {
    m_echoStopped = inForeground() && ::tcgetattr(STDIN_FILENO, &m_before) == 0;
    if (m_echoStopped) {
        termios quiet = m_before;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &quiet);
    }
}

void Terminal::giveBack() {
    if (!m_taken.exchange(false)) {
        return;
    }
    writeAll(kGiveBack);
    if (m_echoStopped && inForeground()) {
        ::tcsetattr(STDIN_FILENO, TCSANOW, &m_before);
    }
}

void Terminal::write(const std::string& text) {
    if (!writeAll(text)) {
        throw OutputError();
    }
}

} // namespace karaoke
