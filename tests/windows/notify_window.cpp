// The host's window and its message loop.
#include "tests/windows/notify_window.h"

#include <algorithm>
#include <utility>

namespace {

constexpr UINT kWatchdog = 60000; ///< milliseconds
constexpr UINT_PTR kWatchdogTimer = 1;

} // namespace

NotifyWindow::NotifyWindow()
    : window_(CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                              nullptr)) {}

NotifyWindow::~NotifyWindow() {
    DestroyWindow(window_);
}

void NotifyWindow::receive(const MSG& message) {
    if (message.message >= WM_USER) {
        received_.push_back({message.message, message.wParam, message.lParam});
    } else if (message.message == WM_TIMER) {
        expired_ = true;
    } else {
        DispatchMessageA(&message);
    }
}

bool NotifyWindow::waitFor(UINT message, int count) {
    const auto arrived = [&] {
        return std::count_if(received_.begin(), received_.end(), [&](const Posted& posted) {
                   return posted.message == message;
               }) >= count;
    };
    expired_ = false;
    SetTimer(window_, kWatchdogTimer, kWatchdog, nullptr);
    MSG next;
    while (!arrived() && !expired_ && GetMessageA(&next, window_, 0, 0) > 0) {
        receive(next);
    }
    KillTimer(window_, kWatchdogTimer);
    return arrived();
}

std::vector<Posted> NotifyWindow::take() {
    MSG next;
    while (PeekMessageA(&next, window_, 0, 0, PM_REMOVE) != 0) {
        receive(next);
    }
    return std::exchange(received_, {});
}
