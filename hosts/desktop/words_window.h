// A second window with the words alone, for another screen.
#pragma once

#include <memory>

#include "desktop/full_screen.h"
#include "desktop/words_pane.h"

namespace desktop {

class WordsWindow : public Window {
public:
    /// @param commands  gets the WM_COMMANDs of the words' keys
    explicit WordsWindow(HWND commands);

    void show(const WordsMoment& moment);
    void toggleFullScreen();
    bool fullScreen() const {
        return m_fullScreen.on();
    }

private:
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;

    HWND m_commands;
    std::unique_ptr<WordsPane> m_pane;
    FullScreen m_fullScreen;
};

} // namespace desktop
