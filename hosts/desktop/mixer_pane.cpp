// Draws the mixer and takes what is done to it.
#include "desktop/mixer_pane.h"

#include <windowsx.h>

#include <cmath>
#include <utility>

#include "desktop/colours.h"
#include "desktop/mixer_values.h"
#include "shared/gm_names.h"
#include "shared/wide_text.h"

namespace desktop {

namespace {

constexpr int kStep = 4;
constexpr int kPageStep = 16;
constexpr int kCentre = 64;
constexpr double kLightThreshold = 0.02;
constexpr std::array<const wchar_t*, kMixerCells> kHeadings = {
    L"", L"Channel", L"Volume", L"Pan", L"Reverb", L"Chorus", L"M", L"S"};
/// Where there is no room for those.
constexpr std::array<const wchar_t*, kMixerCells> kShortHeadings = {
    L"", L"Channel", L"Vol.", L"Pan", L"Rev.", L"Cho.", L"M", L"S"};

COLORREF mixed(COLORREF from, COLORREF to, double part) {
    const auto channel = [part](int a, int b) {
        return static_cast<BYTE>(a + std::lround(part * (b - a)));
    };
    return RGB(channel(GetRValue(from), GetRValue(to)), channel(GetGValue(from), GetGValue(to)),
               channel(GetBValue(from), GetBValue(to)));
}

std::wstring levelText(MixerCell cell, int value) {
    if (cell != MixerCell::Pan) {
        return std::to_wstring(value);
    }
    if (value == kCentre) {
        return L"C";
    }
    return value < kCentre ? L"L" + std::to_wstring(kCentre - value)
                           : L"R" + std::to_wstring(value - kCentre);
}

} // namespace

MixerPane::MixerPane(HWND parent, int id, Change change) : m_change(std::move(change)) {
    create(
        {.className = L"KaraokeMixer", .style = WS_CHILD | WS_TABSTOP, .parent = parent, .id = id});
}

void MixerPane::setScale(const Scale& scale) {
    m_scale = scale;
    relayout();
}

/// In a small window the letters become smaller than usual rather than being cut.
void MixerPane::relayout() {
    m_boxes = layoutMixer(clientSize(window()), m_scale);
    const int rowHeight = m_boxes.channels.front().front().height();
    m_font = interfaceFont(m_scale, rowHeight);
    InvalidateRect(window(), nullptr, FALSE);
}

const host::ChannelActivity& MixerPane::activity(int channel) const {
    return m_state.channels[static_cast<std::size_t>(channel)];
}

const host::ChannelSettings& MixerPane::settings(int channel) const {
    return m_state.settings.channels[static_cast<std::size_t>(channel)];
}

void MixerPane::show(const SessionState& state) {
    for (int channel = 0; channel < kMixerChannels; ++channel) {
        const auto index = static_cast<std::size_t>(channel);
        if (state.channels[index] != m_state.channels[index] ||
            state.settings.channels[index] != m_state.settings.channels[index] ||
            state.song != m_state.song) {
            const MixerRow& row = m_boxes.channels[index];
            const RECT area = {row.front().left, row.front().top, row.back().right,
                               row.back().bottom};
            InvalidateRect(window(), &area, FALSE);
        }
    }
    m_state = state;
}

std::wstring MixerPane::nameOf(int channel) const {
    std::wstring name = std::to_wstring(channel + 1);
    if (channel == host::kDrumChannel) {
        return name + L"  Drums";
    }
    if (const int program = activity(channel).program; program >= 0) {
        name += L"  " + host::toWide(host::instrumentName(program));
    }
    return name;
}

void MixerPane::drawHeading(HDC dc, const MixerRow& row) {
    const auto fits = [&](std::size_t i) {
        return textSize(dc, kHeadings[i]).width <= row[i].width();
    };
    bool allFit = true;
    for (std::size_t i = 0; i < row.size(); ++i) {
        allFit = allFit && fits(i);
    }
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool name = static_cast<MixerCell>(i) == MixerCell::Name;
        drawText(dc, row[i], (allFit ? kHeadings : kShortHeadings)[i], kPanelFaint,
                 name ? Align::Left : Align::Centre);
    }
}

void MixerPane::drawLevel(HDC dc, const Box& box, MixerCell cell, int value) const {
    const Box bar = box.inner(1);
    fill(dc, bar, kTrough);
    const int x = bar.left + bar.width() * value / kMostValue;
    const int zero = cell == MixerCell::Pan ? bar.left + bar.width() / 2 : bar.left;
    fill(dc, {std::min(x, zero), bar.top, std::max(x, zero), bar.bottom}, kLevel);
    drawText(dc, bar, levelText(cell, value), kPanelText, Align::Centre);
}

void MixerPane::drawSwitch(HDC dc, const Box& box, const wchar_t* text, bool on, COLORREF colour) {
    fill(dc, box.inner(1), on ? colour : kTrough);
    drawText(dc, box, text, on ? kComing : kPanelFaint, Align::Centre);
}

void MixerPane::drawLight(HDC dc, const Box& box, const host::ChannelActivity& activity) {
    const int size = std::min(box.width(), box.height()) - 2;
    const int top = box.top + (box.height() - size) / 2;
    const double level = activity.sounding > 0 ? std::max(activity.level, 0.35) : activity.level;
    const Selected brush(dc, GetStockObject(DC_BRUSH));
    const Selected pen(dc, GetStockObject(NULL_PEN));
    SetDCBrushColor(dc, level < kLightThreshold ? kLightOff
                                                : mixed(kLightOff, kLightOn, std::min(level, 1.0)));
    Ellipse(dc, box.left, top, box.left + size + 1, top + size + 1);
}

void MixerPane::drawChannel(HDC dc, int channel) const {
    const MixerRow& row = m_boxes.channels[static_cast<std::size_t>(channel)];
    const bool silent = m_state.settings.silences(channel);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const auto cell = static_cast<MixerCell>(i);
        switch (cell) {
        case MixerCell::Light:
            drawLight(dc, row[i], activity(channel));
            break;
        case MixerCell::Name:
            drawText(dc, row[i], nameOf(channel), silent ? kPanelFaint : kPanelText);
            break;
        case MixerCell::Mute:
            drawSwitch(dc, row[i], L"M", settings(channel).muted, kMuted);
            break;
        case MixerCell::Solo:
            drawSwitch(dc, row[i], L"S", settings(channel).solo, kSolo);
            break;
        default:
            drawLevel(dc, row[i], cell, shownValue(cell, activity(channel), settings(channel)));
        }
    }
}

void MixerPane::draw(HDC dc) const {
    const Size size = clientSize(window());
    fill(dc, {0, 0, size.width, size.height}, kPanel);
    const Selected selected(dc, m_font.handle());
    for (const MixerRow& heading : m_boxes.headings) {
        drawHeading(dc, heading);
    }
    for (int channel = 0; channel < kMixerChannels; ++channel) {
        drawChannel(dc, channel);
    }
    if (GetFocus() == window()) {
        const auto channel = static_cast<std::size_t>(m_focus.channel);
        const RECT cell = toRect(m_boxes.channels[channel][static_cast<std::size_t>(m_focus.cell)]);
        const HBRUSH brush = CreateSolidBrush(kFocus);
        FrameRect(dc, &cell, brush);
        DeleteObject(brush);
    }
}

void MixerPane::set(MixerPlace place, const host::ChannelSettings& settings) {
    // Shown at once; the session's own answer follows.
    m_state.settings.channels[static_cast<std::size_t>(place.channel)] = settings;
    InvalidateRect(window(), nullptr, FALSE);
    m_change(place.channel, settings);
}

void MixerPane::setByMouse(int x) {
    const Box& box = m_boxes.channels[static_cast<std::size_t>(m_drag->channel)]
                                     [static_cast<std::size_t>(m_drag->cell)];
    const int value = (x - box.left) * kMostValue / std::max(box.width() - 1, 1);
    set(*m_drag,
        withValue(m_drag->cell, value, activity(m_drag->channel), settings(m_drag->channel)));
}

LRESULT MixerPane::mouse(UINT message, int x, int y) {
    const std::optional<MixerPlace> place = mixerPlaceAt(m_boxes, x, y);
    if (message == WM_MOUSEMOVE) {
        if (m_drag) {
            setByMouse(x);
        }
        return 0;
    }
    SetFocus(window());
    if (!place) {
        return 0;
    }
    m_focus = *place;
    if (!isLevel(place->cell)) {
        set(*place, toggled(place->cell, settings(place->channel)));
    } else if (message == WM_LBUTTONDBLCLK) {
        set(*place, asWritten(place->cell, settings(place->channel)));
    } else {
        m_drag = place;
        SetCapture(window());
        setByMouse(x);
    }
    return 0;
}

void MixerPane::wheel(int steps, POINT screen) {
    ScreenToClient(window(), &screen);
    const std::optional<MixerPlace> place = mixerPlaceAt(m_boxes, screen.x, screen.y);
    if (place && isLevel(place->cell)) {
        set(*place, stepped(place->cell, steps * kStep, activity(place->channel),
                            settings(place->channel)));
    }
}

void MixerPane::moveFocus(int cells, int channels) {
    constexpr int kFirst = static_cast<int>(MixerCell::Volume);
    constexpr int kLast = static_cast<int>(MixerCell::Solo);
    m_focus.cell =
        static_cast<MixerCell>(std::clamp(static_cast<int>(m_focus.cell) + cells, kFirst, kLast));
    m_focus.channel = std::clamp(m_focus.channel + channels, 0, kMixerChannels - 1);
    InvalidateRect(window(), nullptr, FALSE);
}

bool MixerPane::key(WPARAM key) {
    const auto step = [this](int by) {
        if (isLevel(m_focus.cell)) {
            set(m_focus,
                stepped(m_focus.cell, by, activity(m_focus.channel), settings(m_focus.channel)));
        }
    };
    switch (key) {
    case VK_LEFT:
        moveFocus(-1, 0);
        return true;
    case VK_RIGHT:
        moveFocus(1, 0);
        return true;
    case VK_UP:
        moveFocus(0, -1);
        return true;
    case VK_DOWN:
        moveFocus(0, 1);
        return true;
    case VK_ADD:
    case VK_OEM_PLUS:
        step(kStep);
        return true;
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        step(-kStep);
        return true;
    case VK_PRIOR:
        step(kPageStep);
        return true;
    case VK_NEXT:
        step(-kPageStep);
        return true;
    case VK_SPACE:
        if (!isLevel(m_focus.cell)) {
            set(m_focus, toggled(m_focus.cell, settings(m_focus.channel)));
        }
        return true;
    case VK_DELETE:
        set(m_focus, asWritten(m_focus.cell, settings(m_focus.channel)));
        return true;
    default:
        return false;
    }
}

LRESULT MixerPane::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        relayout();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        m_buffer.paint(window(), [this](HDC dc) { draw(dc); });
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(window(), nullptr, FALSE);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_KEYDOWN:
        return key(wParam) ? 0 : defaultAnswer(message, wParam, lParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_MOUSEMOVE:
        return mouse(message, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
    case WM_LBUTTONUP:
        ReleaseCapture();
        return 0;
    case WM_CAPTURECHANGED:
        m_drag.reset();
        return 0;
    case WM_MOUSEWHEEL:
        wheel(GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA,
              {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return 0;
    default:
        return defaultAnswer(message, wParam, lParam);
    }
}

} // namespace desktop
