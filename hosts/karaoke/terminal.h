// The terminal that the program runs in.
#pragma once

#include <atomic>
#include <string>

namespace karaoke {

struct TerminalSize {
    int columns;
    int rows;
};

/// Standard output as a terminal: while it is taken, the cursor is hidden, long lines are cut instead of
/// wrapped, and typed keys are not echoed but
/// handed over one by one.
class Terminal {
public:
    /// Whether standard output is a terminal that understands escape sequences.
    static bool usable();

    Terminal() = default;
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    TerminalSize size() const;
    void take();
    /// Gives the terminal back as it was. Any thread; the second call does nothing.
    void giveBack();
    /// @throws OutputError  when the terminal is gone
    void write(const std::string& text);

private:
    static void readKeysAtOnce();

    std::atomic<bool> m_taken = false;
};

} // namespace karaoke
