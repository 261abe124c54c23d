// A window without frame and menu, as large as the screen that it is on.
#include "desktop/full_screen.h"

namespace desktop {

void FullScreen::toggle(HWND window) {
    m_on = !m_on;
    if (!m_on) {
        SetWindowLongPtrW(window, GWL_STYLE, m_style);
        SetMenu(window, m_menu);
        SetWindowPlacement(window, &m_before);
        SetWindowPos(window, nullptr, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
        return;
    }
    m_before.length = sizeof m_before;
    GetWindowPlacement(window, &m_before);
    m_style = GetWindowLongPtrW(window, GWL_STYLE);
    m_menu = GetMenu(window);
    MONITORINFO screen{};
    screen.cbSize = sizeof screen;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &screen);
    const RECT& area = screen.rcMonitor;
    SetMenu(window, nullptr);
    SetWindowLongPtrW(window, GWL_STYLE, m_style & ~static_cast<LONG_PTR>(WS_OVERLAPPEDWINDOW));
    SetWindowPos(window, HWND_TOP, area.left, area.top, area.right - area.left,
                 area.bottom - area.top, SWP_NOOWNERZORDER | SWP_FRAMECHANGED);
}

} // namespace desktop
