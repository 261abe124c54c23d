// The terminal that the program runs in.
#include "karaoke/terminal.h"

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "karaoke/output_error.h"
#include "karaoke/terminal_mode.h"

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
    guardTerminal(kGiveBack);
    readKeysAtOnce();
    write(std::string(kTake));
}

/// Signals stay the terminal's affair.
void Terminal::readKeysAtOnce() {
    termios settings{};
    const bool foreground = ::isatty(STDIN_FILENO) == 1 && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
    if (foreground && ::tcgetattr(STDIN_FILENO, &settings) == 0) {
        settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &settings);
    }
}

void Terminal::giveBack() {
    if (m_taken.exchange(false)) {
        restoreTerminal();
    }
}

void Terminal::write(const std::string& text) {
    if (!writeAll(text)) {
        throw OutputError();
    }
}

} // namespace karaoke
