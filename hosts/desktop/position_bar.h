// The bar that shows where the song stands, and moves it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "desktop/gdi.h"
#include "desktop/session_state.h"
#include "desktop/window.h"

namespace desktop {

/// Dragging moves the song when the button is let go; with Shift it marks a stretch to repeat. Arrow keys, Page
/// Up, Page Down and Home move it too.
class PositionBar : public Window {
public:
    struct Actions {
        std::function<void(std::uint32_t)> seek;
        std::function<void(double)> seekSeconds;
        std::function<void(std::uint32_t, std::uint32_t)> loop;
    };

    PositionBar(HWND parent, int id, Actions actions);

    void show(const SessionState& state);
    void setFont(HFONT font);
    /// The part that is dragged on, in client coordinates.
    Box track() const;

private:
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    void draw(HDC dc) const;
    void drawTrack(HDC dc) const;
    std::wstring timeText(std::uint32_t tick) const;
    std::uint32_t tickAt(int x) const;
    int xOf(std::uint32_t tick) const;
    void endDrag(bool shift);
    bool key(WPARAM key);

    Actions m_actions;
    std::shared_ptr<const host::Song> m_song;
    std::uint32_t m_position = 0;
    std::optional<host::PlayRange> m_loop;
    std::optional<std::uint32_t> m_loopStart;
    std::optional<std::uint32_t> m_dragFrom;
    std::uint32_t m_dragTo = 0;
    std::wstring m_text;
    int m_textWidth = 0;
    HFONT m_font = nullptr;
    BackBuffer m_buffer;
};

} // namespace desktop
