// The view for pipes and files.
#include "karaoke/pipe_view.h"

#include <cstdio>

#include "karaoke/line_text.h"
#include "karaoke/output_error.h"
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

void PipeView::begin(const host::Song& song) {
    m_song = &song;
    m_follower.emplace(song.lines, song.timeline);
    m_next = 0;
    m_bar = 0;
    const std::string separator = song.subtitle.empty() ? "" : " - ";
    print(song.title + separator + song.subtitle);
}

void PipeView::lyric(int index) {
    m_follower->lyric(index);
    printCompleteLines();
}

void PipeView::chord(int index) {
    m_follower->chord(index);
    printCompleteLines();
}

void PipeView::printLine(std::size_t line) {
    print(lineText(m_song->lines[line], m_song->timeline));
}

void PipeView::printCompleteLines() {
    while (m_next < m_song->lines.size() && m_follower->complete(m_next)) {
        printLine(m_next++);
    }
}

void PipeView::position(std::uint32_t tick) {
    const std::uint32_t bar = m_song->bars.at(tick).bar;
    const bool due = m_bar == 0 || bar >= m_bar + kBarsApart;
    if (!m_song->lines.empty() || !due) {
        return;
    }
    m_bar = bar;
    print("[" + host::timeWithTenths(m_song->timeline.secondsAt(tick)) + "] bar " +
          std::to_string(bar));
}

void PipeView::finish(bool toItsEnd) {
    // Words after the last note are never announced.
    while (toItsEnd && m_next < m_song->lines.size()) {
        printLine(m_next++);
    }
}

} // namespace karaoke
