// The host's window and its message loop.
#include "tests/windows/notify_window.h"

#include <algorithm>
#include <utility>

namespace {

constexpr UINT kWatchdog = 60000; ///< milliseconds
constexpr UINT_PTR kWatchdogTimer = 1;

} // namespace

NotifyWindow::NotifyWindow()
    : m_window(CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                               nullptr)) {}

NotifyWindow::~NotifyWindow() {
    DestroyWindow(m_window);
}

void NotifyWindow::receive(const MSG& message) {
    if (message.message >= WM_USER) {
        m_received.push_back({message.message, message.wParam, message.lParam});
    } else if (message.message == WM_TIMER) {
        m_expired = true;
    } else {
        DispatchMessageA(&message);
    }
}

bool NotifyWindow::waitFor(UINT message, int count) {
    const auto arrived = [&] {
        return std::count_if(m_received.begin(), m_received.end(), [&](const Posted& posted) {
                   return posted.message == message;
               }) >= count;
    };
    m_expired = false;
    SetTimer(m_window, kWatchdogTimer, kWatchdog, nullptr);
    MSG next;
    while (!arrived() && !m_expired && GetMessageA(&next, m_window, 0, 0) > 0) {
        receive(next);
    }
    KillTimer(m_window, kWatchdogTimer);
    return arrived();
}

std::vector<Posted> NotifyWindow::take() {
    MSG next;
    while (PeekMessageA(&next, m_window, 0, 0, PM_REMOVE) != 0) {
        receive(next);
    }
    return std::exchange(m_received, {});
}
