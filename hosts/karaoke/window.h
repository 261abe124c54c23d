// A window that receives the engine's notifications.
#pragma once

#include "corvmo32_linux.h"

namespace karaoke {

class Window {
public:
    Window() : m_window(corvmo_CreateWindow()) {}
    ~Window() {
        corvmo_DestroyWindow(m_window);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    HWND handle() const {
        return m_window;
    }

private:
    HWND m_window;
};

} // namespace karaoke
