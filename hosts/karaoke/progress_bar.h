// How far a long task has come, with the time left, in one row of a terminal.
#pragma once

#include <chrono>
#include <string>

namespace karaoke {

/// Writes to standard error, and only if that is a terminal.
class ProgressBar {
public:
    /// @param name  of what is being done
    explicit ProgressBar(std::string name);
    /// Leaves an empty row.
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// May be called as often as one likes.
    /// @param part  0 to 1
    void show(double part);

    bool visible() const {
        return m_visible;
    }

private:
    using Clock = std::chrono::steady_clock;

    std::string m_name;
    bool m_visible;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_next;
};

} // namespace karaoke
