// Where the song stands.
#include "desktop/position_bar.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "desktop/colours.h"
#include "shared/time_text.h"
#include "shared/wide_text.h"

namespace desktop {

namespace {

constexpr double kArrowSeconds = 5;
constexpr double kPageSeconds = 30;
constexpr const wchar_t* kLongestText = L"000:00 / 000:00   bar 0000:00";
constexpr int kKnobHalf = 3;
constexpr int kTrackMargin = 4;

} // namespace

PositionBar::PositionBar(HWND parent, int id, Actions actions) : m_actions(std::move(actions)) {
    create({.className = L"KaraokePosition",
            .style = WS_CHILD | WS_VISIBLE | WS_TABSTOP,
            .parent = parent,
            .id = id});
}

void PositionBar::setFont(HFONT font) {
    m_font = font;
    const MeasuringContext context;
    const Selected selected(context.handle(), font);
    m_textWidth = textSize(context.handle(), kLongestText).width;
    InvalidateRect(window(), nullptr, FALSE);
}

Box PositionBar::track() const {
    const Size size = clientSize(window());
    return Box{0, 0, std::max(size.width - m_textWidth, 1), size.height}.inner(kTrackMargin);
}

int PositionBar::xOf(std::uint32_t tick) const {
    const Box bar = track();
    const double end = m_song ? std::max<double>(m_song->endTick, 1) : 1;
    return bar.left + static_cast<int>(bar.width() * std::min(tick / end, 1.0));
}

std::uint32_t PositionBar::tickAt(int x) const {
    const Box bar = track();
    const double part = std::clamp(static_cast<double>(x - bar.left) / bar.width(), 0.0, 1.0);
    return m_song ? static_cast<std::uint32_t>(part * m_song->endTick) : 0;
}

std::wstring PositionBar::timeText(std::uint32_t tick) const {
    if (!m_song) {
        return {};
    }
    const host::BarPosition place = m_song->bars.at(tick);
    return host::toWide(host::timeInSeconds(m_song->timeline.secondsAt(tick)) + " / " +
                        host::timeInSeconds(m_song->seconds()) + "   bar " +
                        std::to_string(place.bar) + ":" + std::to_string(place.beat));
}

void PositionBar::show(const SessionState& state) {
    const int before = xOf(m_position);
    const bool sameLoop = m_loop == state.loop && m_loopStart == state.loopStart;
    const bool sameSong = m_song == state.song;
    m_song = state.song;
    m_position = state.position;
    m_loop = state.loop;
    m_loopStart = state.loopStart;
    std::wstring text = timeText(m_dragFrom ? m_dragTo : m_position);
    if (text != m_text || xOf(m_position) != before || !sameLoop || !sameSong) {
        m_text = std::move(text);
        InvalidateRect(window(), nullptr, FALSE);
    }
}

void PositionBar::drawTrack(HDC dc) const {
    const Box bar = track();
    fill(dc, bar, kTrough);
    if (!m_song) {
        return;
    }
    const int here = xOf(m_dragFrom ? m_dragTo : m_position);
    fill(dc, {bar.left, bar.top, here, bar.bottom}, kLevel);
    const int half = bar.height() / 2;
    if (m_loop) {
        const std::uint32_t end = m_loop->end == 0 ? m_song->endTick : m_loop->end;
        fill(dc, {xOf(m_loop->start), bar.top + half, xOf(end), bar.bottom}, kLoopRange);
    }
    if (m_loopStart) {
        const int x = xOf(*m_loopStart);
        fill(dc, {x, bar.top + half, x + kKnobHalf, bar.bottom}, kLoopRange);
    }
    for (const host::Marker& marker : m_song->markers) {
        const int x = xOf(marker.tick);
        fill(dc, {x, bar.top, x + 1, bar.top + half}, kMarkerTick);
    }
    fill(dc, {here - kKnobHalf, bar.top, here + kKnobHalf, bar.bottom}, kPanelText);
}

void PositionBar::draw(HDC dc) const {
    const Size size = clientSize(window());
    const Box all = {0, 0, size.width, size.height};
    fill(dc, all, GetFocus() == window() ? kFocus : kPanel);
    fill(dc, all.inner(1), kPanel);
    drawTrack(dc);
    const Selected selected(dc, m_font);
    drawText(dc, {track().right + kTrackMargin, 0, size.width, size.height}, m_text, kPanelText,
             Align::Centre);
}

void PositionBar::endDrag(bool shift) {
    const std::uint32_t from = *std::exchange(m_dragFrom, std::nullopt);
    ReleaseCapture();
    if (shift) {
        m_actions.loop(from, m_dragTo);
    } else {
        m_actions.seek(m_dragTo);
    }
}

bool PositionBar::key(WPARAM key) {
    switch (key) {
    case VK_LEFT:
    case VK_DOWN:
        m_actions.seekSeconds(-kArrowSeconds);
        return true;
    case VK_RIGHT:
    case VK_UP:
        m_actions.seekSeconds(kArrowSeconds);
        return true;
    case VK_PRIOR:
        m_actions.seekSeconds(-kPageSeconds);
        return true;
    case VK_NEXT:
        m_actions.seekSeconds(kPageSeconds);
        return true;
    case VK_HOME:
        m_actions.seek(0);
        return true;
    default:
        return false;
    }
}

LRESULT PositionBar::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
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
        return DLGC_WANTARROWS;
    case WM_KEYDOWN:
        return key(wParam) ? 0 : defaultAnswer(message, wParam, lParam);
    case WM_LBUTTONDOWN:
        SetFocus(window());
        if (m_song) {
            SetCapture(window());
            m_dragFrom = m_dragTo = tickAt(GET_X_LPARAM(lParam));
        }
        return 0;
    case WM_MOUSEMOVE:
    case WM_LBUTTONUP:
        if (m_dragFrom) {
            m_dragTo = tickAt(GET_X_LPARAM(lParam));
            m_text = timeText(m_dragTo);
            InvalidateRect(window(), nullptr, FALSE);
            if (message == WM_LBUTTONUP) {
                endDrag((wParam & MK_SHIFT) != 0);
            }
        }
        return 0;
    case WM_CAPTURECHANGED:
        m_dragFrom.reset();
        return 0;
    default:
        return defaultAnswer(message, wParam, lParam);
    }
}

} // namespace desktop
