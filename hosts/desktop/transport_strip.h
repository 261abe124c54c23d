// The buttons and numbers below the song: play, stop, loop, tempo, key, metronome and the rest. Ordinary controls,
// which Tab and Alt with the underlined letter reach.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "desktop/gdi.h"
#include "desktop/main_layout.h"
#include "desktop/session_state.h"

namespace desktop {

class TransportStrip {
public:
    /// Makes the controls in the window, which gets their WM_COMMAND.
    explicit TransportStrip(HWND parent);

    void setFont(HFONT font, const Scale& scale);
    /// How wide each item has to be for its text.
    std::vector<StripItem> items() const;
    /// @param boxes  one for each item; empty ones are hidden
    void place(const std::vector<Box>& boxes);
    void show(const SessionState& state);

    /// The number in the tempo or key field, when it has just been changed by the listener to one that makes
    /// sense.
    std::optional<int> enteredSpeed();
    std::optional<int> enteredKey();

private:
    struct Item {
        HWND control;
        std::vector<std::wstring> texts; ///< that it may show: it has to be wide enough for all
        bool beginsGroup = false;
        HWND label = nullptr; ///< of a number
        HWND spin = nullptr;
    };

    void addButton(int id, std::vector<std::wstring> texts, bool beginsGroup, DWORD style);
    struct Number {
        int id;
        int labelId;
        int spinId;
        const wchar_t* label;
        const wchar_t* widest;
        int lowest;
        int highest;
        bool beginsGroup;
    };
    void addNumber(const Number& number);
    HWND control(int id) const;
    int widthOf(const std::wstring& text) const;
    void showNumber(int id, int value);
    std::optional<int> entered(int id, int lowest, int highest);

    HWND m_parent;
    HFONT m_font = nullptr;
    Scale m_scale{Scale::kUsualDpi};
    int m_numberHeight = 0;
    std::vector<Item> m_items;
    std::map<int, int> m_numbers; ///< what each number was shown as, by its control
    bool m_showing = false;       ///< the program, not the listener, is changing a number
};

} // namespace desktop
