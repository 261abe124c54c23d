// A window whose messages go to an object.
#pragma once

#include <windows.h>

#include "desktop/boxes.h"

namespace desktop {

/// Owns a window. Messages reach handle() from its creation on.
class Window {
public:
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND window() const {
        return m_window;
    }

protected:
    struct Creation {
        const wchar_t* className; ///< each of a class of its own name
        const wchar_t* title = L"";
        DWORD style = 0;
        DWORD extendedStyle = 0;
        Size size{};
        HWND parent = nullptr;
        int id = 0; ///< of a child window
        HMENU menu = nullptr;
    };

    Window() = default;
    void create(const Creation& creation);

    /// What a message is answered. Others go to defaultAnswer().
    virtual LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    LRESULT defaultAnswer(UINT message, WPARAM wParam, LPARAM lParam);

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window = nullptr;
};

} // namespace desktop
