// A host's window: receives the engine's notifications in a message loop.
#pragma once

#include <vector>

#include "tests/support/machine.h"

class NotifyWindow {
public:
    NotifyWindow();
    ~NotifyWindow();
    NotifyWindow(const NotifyWindow&) = delete;
    NotifyWindow& operator=(const NotifyWindow&) = delete;

    HWND handle() const {
        return m_window;
    }

    /// Runs the message loop until a notification has arrived so many times since the last take(). False
    /// when a watchdog's time passes before.
    bool waitFor(UINT message, int count = 1);

    /// What arrived since the last call, in order; empties the queue.
    std::vector<Posted> take();

private:
    void receive(const MSG& message);

    HWND m_window;
    std::vector<Posted> m_received;
    bool m_expired = false;
};
