// The window that shows the words, inside the main window or in one of their own.
#pragma once

#include "desktop/window.h"
#include "desktop/words_view.h"

namespace desktop {

/// Takes the keyboard, so that the keys of the transport work without a modifier while nothing else has it.
class WordsPane : public Window {
public:
    /// @param commands  gets the WM_COMMANDs of its keys
    WordsPane(HWND parent, int id, HWND commands);

    /// Shows a moment, drawing as little as has changed.
    void show(const WordsMoment& moment);

private:
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    void refit();

    HWND m_commands;
    WordsView m_view;
    WordsMoment m_moment;
    WordsPicture m_picture;
    BackBuffer m_buffer;
};

} // namespace desktop
