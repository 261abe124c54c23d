// How far a long task has come, in one row of a terminal.
#include "karaoke/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "shared/time_text.h"

namespace karaoke {

namespace {

constexpr std::chrono::milliseconds kBetweenRows{100};
constexpr double kTooEarlyToTell = 0.02; ///< part up to which the time left is a guess
constexpr int kWidth = 30;

} // namespace

ProgressBar::ProgressBar(std::string name)
    : m_name(std::move(name)), m_visible(::isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    if (m_visible) {
        std::fputs("\r\x1b[K", stderr);
    }
}

void ProgressBar::show(double part) {
    const Clock::time_point now = Clock::now();
    if (!m_visible || now < m_next) {
        return;
    }
    m_next = now + kBetweenRows;
    const double done = std::clamp(part, 0.0, 1.0);
    const auto filled = static_cast<std::size_t>(done * kWidth);
    std::string left;
    if (done > kTooEarlyToTell) {
        const double spent = std::chrono::duration<double>(now - m_start).count();
        left = host::timeInSeconds(spent / done - spent + 1) + " left";
    }
    std::fprintf(stderr, "\r\x1b[K%s [%s%s] %3.0f %% %s", m_name.c_str(),
                 std::string(filled, '#').c_str(), std::string(kWidth - filled, '.').c_str(),
                 done * 100, left.c_str());
}

} // namespace karaoke
