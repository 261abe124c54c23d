// The position bar of the full-screen player.
#include <algorithm>

#include "karaoke/panels.h"
#include "karaoke/text_width.h"

namespace karaoke {

namespace {

class PositionPanel {
public:
    PositionPanel(Canvas& canvas, const Desk& desk)
        : m_canvas(canvas), m_song(desk.controls.song()), m_desk(desk),
          m_width(canvas.columns() - 2 * kMargin) {}

    void drawBar(int row) const {
        const int place = columnOf(m_desk.controls.position());
        for (int column = 0; column < m_width; ++column) {
            const bool played = column < place;
            m_canvas.put(row, kMargin + column, played ? "━" : "─",
                         played ? Style::Played : Style::Dim);
        }
        drawLoops(row);
        for (const host::Marker& marker : m_song.markers) {
            m_canvas.put(row, kMargin + columnOf(marker.tick), "◆", Style::Chord);
        }
        m_canvas.put(row, kMargin + place, "●", Style::Place);
    }

    /// Names that would run into the one before are left out.
    void drawNames(int row) const {
        int free = 0;
        for (const host::Marker& marker : m_song.markers) {
            const int column = std::max(columnOf(marker.tick), 0);
            const int end = column + columnsOf(marker.name);
            if (column >= free && end <= m_width) {
                m_canvas.put(row, kMargin + column, marker.name, Style::Dim);
                free = end + 2;
            }
        }
    }

private:
    /// The bar tells time, not ticks: it moves evenly.
    int columnOf(std::uint32_t tick) const {
        const double whole = std::max(m_song.seconds(), 0.001);
        const double part = m_song.timeline.secondsAt(std::min(tick, m_song.endTick)) / whole;
        return std::min(static_cast<int>(part * m_width), m_width - 1);
    }

    void drawLoops(int row) const {
        for (const host::PlayRange& range : m_desk.controls.ranges()) {
            const int first = columnOf(range.start);
            const int last = columnOf(range.end == 0 ? m_song.endTick : range.end);
            for (int column = first + 1; column < last; ++column) {
                m_canvas.put(row, kMargin + column, "═", Style::Loop);
            }
            m_canvas.put(row, kMargin + first, "A", Style::Loop);
            m_canvas.put(row, kMargin + last, "B", Style::Loop);
        }
        if (m_desk.loopStart) {
            m_canvas.put(row, kMargin + columnOf(*m_desk.loopStart), "A", Style::Loop);
        }
    }

    Canvas& m_canvas;
    const host::Song& m_song;
    const Desk& m_desk;
    int m_width;
};

} // namespace

void drawPosition(Canvas& canvas, const Rows& rows, const Desk& desk) {
    const PositionPanel panel(canvas, desk);
    if (rows.count > 1) {
        panel.drawNames(rows.first);
    }
    panel.drawBar(rows.first + rows.count - 1);
}

} // namespace karaoke
