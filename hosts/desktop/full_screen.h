// Makes a window cover its whole screen, and puts it back.
#pragma once

#include <windows.h>

namespace desktop {

class FullScreen {
public:
    bool on() const {
        return m_on;
    }
    void toggle(HWND window);

private:
    bool m_on = false;
    WINDOWPLACEMENT m_before{};
    LONG_PTR m_style = 0;
    HMENU m_menu = nullptr;
};

} // namespace desktop
