// Which line of a song to look at.
#include "shared/line_follower.h"

#include <algorithm>

namespace host {

namespace {

constexpr double kLeadSeconds = 1.0; ///< a singer wants to see a line this long before it begins

} // namespace

LineFollower::LineFollower(const std::vector<Line>& lines, const Timeline& timeline)
    : m_lines(lines), m_timeline(timeline) {
    double lastEnd = 0;
    for (const Line& line : lines) {
        const double start = timeline.secondsAt(line.tick());
        // In a short pause the line before stays for half of it.
        m_handover.push_back(std::max(start - kLeadSeconds, (lastEnd + start) / 2));
        lastEnd = timeline.secondsAt(line.lastTick());
    }
}

void LineFollower::lyric(int index) {
    m_lyric = std::max(m_lyric, index);
}

void LineFollower::chord(int index) {
    m_chord = std::max(m_chord, index);
}

bool LineFollower::begun(const Line& line) const {
    if (!line.syllables.empty()) {
        return sung(line.syllables.front());
    }
    return !line.chords.empty() && played(line.chords.front());
}

bool LineFollower::allAnnounced(const Line& line) const {
    const bool words = line.syllables.empty() || sung(line.syllables.back());
    return words && (line.chords.empty() || played(line.chords.back()));
}

bool LineFollower::complete(std::size_t line) const {
    if (allAnnounced(m_lines[line])) {
        return true;
    }
    return std::any_of(m_lines.begin() + static_cast<std::ptrdiff_t>(line) + 1, m_lines.end(),
                       [this](const Line& later) { return begun(later); });
}

std::size_t LineFollower::lineAt(std::uint32_t tick) const {
    std::size_t current = 0;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        if (begun(m_lines[i])) {
            current = i;
        }
    }
    const std::size_t next = current + 1;
    if (next >= m_lines.size() || !begun(m_lines[current]) || !allAnnounced(m_lines[current])) {
        return current;
    }
    return m_timeline.secondsAt(tick) >= m_handover[next] ? next : current;
}

} // namespace host
