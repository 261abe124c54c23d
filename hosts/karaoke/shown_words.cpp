// The words of a song as a view shows them now.
#include "karaoke/shown_words.h"

#include <algorithm>

#include "karaoke/text_width.h"
#include "karaoke/wrapped_lines.h"
#include "shared/count_in.h"

namespace karaoke {

namespace {

constexpr double kPauseToTell = 6; ///< seconds

} // namespace

void ShownWords::update(int columns) {
    const bool fits = m_follower && m_columns == columns &&
                      m_percent == m_controls.tempoPercent() &&
                      m_encoding == m_controls.song().encoding;
    if (!fits) {
        fit(columns);
    }
    m_follower->jumpTo(m_controls.shownLyric(), m_controls.shownChord());
}

void ShownWords::fit(int columns) {
    m_columns = columns;
    m_percent = m_controls.tempoPercent();
    m_encoding = m_controls.song().encoding;
    m_follower.reset();
    m_lines = wrapLines(m_controls.song().lines, std::max(columns, 1));
    m_follower.emplace(m_lines, m_controls.song().timeline);
}

std::size_t ShownWords::coming() const {
    const auto line = std::find_if(m_lines.begin(), m_lines.end(), [this](const host::Line& each) {
        return each.syllables.empty() ? each.tick() > m_controls.shownPosition()
                                      : !m_follower->sung(each.syllables.front());
    });
    return static_cast<std::size_t>(line - m_lines.begin());
}

std::size_t ShownWords::current() const {
    return countIn() > 0 ? coming() : m_follower->lineAt(m_controls.shownPosition());
}

int ShownWords::countIn() const {
    return host::countIn(m_lines, coming(), m_controls.song().timeline, m_controls.shownPosition());
}

double ShownWords::pause() const {
    const std::size_t next = coming();
    if (next >= m_lines.size() || m_lines[next].syllables.empty()) {
        return 0;
    }
    const host::Timeline& timeline = m_controls.song().timeline;
    const double left =
        timeline.secondsAt(m_lines[next].tick()) - timeline.secondsAt(m_controls.shownPosition());
    const bool sung = next == 0 || m_follower->complete(next - 1);
    return sung && left >= kPauseToTell ? left : 0;
}

std::vector<int> syllableColumns(const host::Line& line) {
    std::vector<int> columns = {0};
    for (const host::Syllable& syllable : line.syllables) {
        columns.push_back(columns.back() + columnsOf(syllable.text));
    }
    return columns;
}

} // namespace karaoke
