// The mixer: what each channel plays and how loud, and what the listener makes of it.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "desktop/gdi.h"
#include "desktop/mixer_layout.h"
#include "desktop/session_state.h"
#include "desktop/window.h"

namespace desktop {

/// Mouse: levels are dragged, double clicks put them back, the wheel steps them. Keys: arrows move, plus and
/// minus step, Space toggles mute and solo, Delete puts back.
class MixerPane : public Window {
public:
    using Change = std::function<void(int channel, const host::ChannelSettings& settings)>;

    MixerPane(HWND parent, int id, Change change);

    void show(const SessionState& state);
    void setScale(const Scale& scale);
    const MixerBoxes& boxes() const {
        return m_boxes;
    }

private:
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    void relayout();
    void draw(HDC dc) const;
    static void drawHeading(HDC dc, const MixerRow& row);
    void drawChannel(HDC dc, int channel) const;
    void drawLevel(HDC dc, const Box& box, MixerCell cell, int value) const;
    static void drawSwitch(HDC dc, const Box& box, const wchar_t* text, bool on, COLORREF colour);
    static void drawLight(HDC dc, const Box& box, const host::ChannelActivity& activity);
    std::wstring nameOf(int channel) const;

    void set(MixerPlace place, const host::ChannelSettings& settings);
    void setByMouse(int x);
    bool key(WPARAM key);
    void moveFocus(int cells, int channels);
    LRESULT mouse(UINT message, int x, int y);
    void wheel(int steps, POINT screen);
    const host::ChannelActivity& activity(int channel) const;
    const host::ChannelSettings& settings(int channel) const;

    Change m_change;
    MixerBoxes m_boxes;
    Scale m_scale{Scale::kUsualDpi};
    Font m_font;
    SessionState m_state;
    MixerPlace m_focus;
    std::optional<MixerPlace> m_drag;
    BackBuffer m_buffer;
};

} // namespace desktop
