// The words alone.
#include "desktop/words_window.h"

#include <shellapi.h>

#include "desktop/resource.h"
#include "desktop/system_features.h"

namespace desktop {

namespace {

constexpr Size kFirstSize = {800, 450};

} // namespace

WordsWindow::WordsWindow(HWND commands) : m_commands(commands) {
    create({.className = L"KaraokeWordsWindow",
            .title = L"Words",
            .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN});
    const Scale scale(dpiOf(window()));
    DragAcceptFiles(window(), TRUE);
    m_pane = std::make_unique<WordsPane>(window(), ID_WORDS, commands);
    SetWindowPos(window(), nullptr, 0, 0, scale(kFirstSize.width), scale(kFirstSize.height),
                 SWP_NOMOVE | SWP_NOZORDER);
    ShowWindow(window(), SW_SHOWNORMAL);
}

void WordsWindow::show(const WordsMoment& moment) {
    m_pane->show(moment);
}

void WordsWindow::toggleFullScreen() {
    m_fullScreen.toggle(window());
}

LRESULT WordsWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        if (m_pane) {
            MoveWindow(m_pane->window(), 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
        }
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFOCUS:
        if (m_pane) {
            SetFocus(m_pane->window());
        }
        return 0;
    case WM_DROPFILES:
    case WM_COMMAND:
        return SendMessageW(m_commands, message, wParam, lParam);
    case WM_CLOSE:
        PostMessageW(m_commands, WM_COMMAND, ID_WORDS_WINDOW, 0);
        return 0;
    default:
        return defaultAnswer(message, wParam, lParam);
    }
}

} // namespace desktop
