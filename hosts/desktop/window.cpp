// Windows and their objects.
#include "desktop/window.h"

#include "desktop/resource.h"

namespace desktop {

Window::~Window() {
    if (m_window != nullptr) {
        SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
        DestroyWindow(m_window);
    }
}

void Window::create(const Creation& creation) {
    const HINSTANCE program = GetModuleHandleW(nullptr);
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = procedure;
    description.hInstance = program;
    description.hIcon = LoadIconW(program, MAKEINTRESOURCEW(IDI_KARAOKE));
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = creation.className;
    // The second window of a class finds it registered.
    RegisterClassExW(&description);
    const bool child = (creation.style & WS_CHILD) != 0;
    const int place = child ? 0 : CW_USEDEFAULT;
    const HMENU menu =
        child ? reinterpret_cast<HMENU>(static_cast<INT_PTR>(creation.id)) : creation.menu;
    CreateWindowExW(creation.extendedStyle, creation.className, creation.title, creation.style,
                    place, place, creation.size.width, creation.size.height, creation.parent, menu,
                    program, this);
}

LRESULT Window::defaultAnswer(UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(m_window, message, wParam, lParam);
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* const object = static_cast<Window*>(creation->lpCreateParams);
        object->m_window = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
    }
    auto* const object = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (object == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        object->m_window = nullptr;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return object->handle(message, wParam, lParam);
}

} // namespace desktop
