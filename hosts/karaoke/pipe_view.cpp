// The view for pipes and files.
#include "karaoke/pipe_view.h"

#include <cstdio>

#include "karaoke/line_text.h"
#include "karaoke/output_error.h"
#include "karaoke/song_status.h"
#include "shared/time_text.h"

namespace karaoke {

namespace {

constexpr std::uint32_t kBarsApart = 4;

void print(const std::string& line) {
    if (std::printf("%s\n", line.c_str()) < 0 || std::fflush(stdout) != 0) {
        throw OutputError();
    }
}

} // namespace

void PipeView::begin(const Desk& desk) {
    m_controls = &desk.controls;
    m_follower.emplace(song().lines, song().timeline);
    m_next = 0;
    m_bar = 0;
    print(titleText(desk));
}

const host::Song& PipeView::song() const {
    return m_controls->song();
}

void PipeView::update() {
    const int lyric = m_controls->shownLyric();
    const int chord = m_controls->shownChord();
    const bool back = lyric < m_follower->lastLyric() || chord < m_follower->lastChord();
    m_follower->jumpTo(lyric, chord);
    if (back) {
        m_next = song().lines.empty() ? 0 : m_follower->lineAt(m_controls->shownPosition());
    }
    while (m_next < song().lines.size() && m_follower->complete(m_next)) {
        printLine(m_next++);
    }
    if (song().lines.empty()) {
        printBar();
    }
}

void PipeView::printLine(std::size_t line) {
    print(lineText(song().lines[line], song().timeline));
}

void PipeView::printBar() {
    const std::uint32_t tick = m_controls->position();
    const std::uint32_t bar = song().bars.at(tick).bar;
    if (m_bar == 0 || bar >= m_bar + kBarsApart || bar < m_bar) {
        m_bar = bar;
        print("[" + host::timeWithTenths(song().timeline.secondsAt(tick)) + "] bar " +
              std::to_string(bar));
    }
}

void PipeView::finish(bool toItsEnd) {
    // Words after the last note are never announced.
    while (toItsEnd && m_next < song().lines.size()) {
        printLine(m_next++);
    }
}

} // namespace karaoke
