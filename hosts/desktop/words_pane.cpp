// Draws the words as they change.
#include "desktop/words_pane.h"

#include "desktop/resource.h"

namespace desktop {

namespace {

/// The command of a key that is pressed alone; 0 = none.
int commandOf(WPARAM key) {
    switch (key) {
    case VK_SPACE:
        return ID_PLAY;
    case VK_LEFT:
        return ID_BACK;
    case VK_RIGHT:
        return ID_FORWARD;
    case VK_HOME:
        return ID_REWIND;
    case VK_UP:
        return ID_KEY_UP;
    case VK_DOWN:
        return ID_KEY_DOWN;
    case VK_PRIOR:
        return ID_PREVIOUS;
    case VK_NEXT:
        return ID_NEXT;
    case VK_OEM_PLUS:
    case VK_ADD:
        return ID_FASTER;
    case VK_OEM_MINUS:
    case VK_SUBTRACT:
        return ID_SLOWER;
    default:
        return 0;
    }
}

} // namespace

WordsPane::WordsPane(HWND parent, int id, HWND commands) : m_commands(commands) {
    create({.className = L"KaraokeWords",
            .style = WS_CHILD | WS_VISIBLE | WS_TABSTOP,
            .parent = parent,
            .id = id});
}

void WordsPane::show(const WordsMoment& moment) {
    m_moment = moment;
    m_view.fit(clientSize(window()), moment.song);
    WordsPicture picture = m_view.pictureOf(moment);
    if (picture == m_picture) {
        return;
    }
    if (picture.sameButSung(m_picture)) {
        const RECT row = toRect(m_view.layout().rows.current);
        InvalidateRect(window(), &row, FALSE);
    } else {
        InvalidateRect(window(), nullptr, FALSE);
    }
    m_picture = std::move(picture);
}

void WordsPane::refit() {
    m_view.fit(clientSize(window()), m_moment.song);
    m_picture = m_view.pictureOf(m_moment);
    InvalidateRect(window(), nullptr, FALSE);
}

LRESULT WordsPane::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        refit();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        m_buffer.paint(window(), [this](HDC dc) { m_view.draw(dc, m_picture); });
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(window());
        return 0;
    case WM_LBUTTONDBLCLK:
        SendMessageW(m_commands, WM_COMMAND, ID_FULL_SCREEN, 0);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_KEYDOWN:
        if (const int command = commandOf(wParam); command != 0) {
            SendMessageW(m_commands, WM_COMMAND, static_cast<WPARAM>(command), 0);
            return 0;
        }
        return defaultAnswer(message, wParam, lParam);
    default:
        return defaultAnswer(message, wParam, lParam);
    }
}

} // namespace desktop
