// The view for terminals.
#include "karaoke/terminal_view.h"

#include <algorithm>

#include "karaoke/song_status.h"
#include "karaoke/text_width.h"
#include "shared/chord_places.h"

namespace karaoke {

namespace {

constexpr const char* kPlain = "\x1b[0m";
constexpr const char* kBold = "\x1b[1m";
constexpr const char* kFaint = "\x1b[2m";
constexpr const char* kSung = "\x1b[1;33m";
constexpr const char* kChord = "\x1b[36m";
constexpr const char* kChordNow = "\x1b[1;36m";
constexpr const char* kEraseToLineEnd = "\x1b[K";
constexpr const char* kEraseToScreenEnd = "\x1b[J";
constexpr int kChordGap = 1; ///< columns between two chord names

std::string styled(const char* style, const std::string& text) {
    return text.empty() ? text : style + text + kPlain;
}

} // namespace

void TerminalView::begin(const Desk& desk) {
    m_desk = &desk;
    m_drawn.clear();
    m_words.emplace(desk.controls);
    m_terminal.take();
    m_size = m_terminal.size();
    const std::string title = fitted(titleText(desk), m_size.columns - 1);
    m_terminal.write(styled(kBold, title) + "\r\n");
    update();
}

TerminalView::Row TerminalView::chordRow(const host::Line& line) const {
    const std::vector<int> places =
        host::chordPlaces(line, syllableColumns(line), columnsOf, kChordGap);
    const int width = m_size.columns - 1;
    Row row;
    for (std::size_t i = 0; i < line.chords.size(); ++i) {
        const host::Chord& chord = line.chords[i];
        const int column = places[i];
        const int length = columnsOf(chord.name);
        if (column + length > width) {
            break;
        }
        const bool now = chord.index == m_words->follower().lastChord();
        row.text += std::string(static_cast<std::size_t>(column - row.columns), ' ');
        row.text += styled(now ? kChordNow : kChord, chord.name);
        row.columns = column + length;
    }
    return row;
}

TerminalView::Row TerminalView::wordRow(const host::Line& line) const {
    std::string sung;
    std::string coming;
    for (const host::Syllable& syllable : line.syllables) {
        (m_words->follower().sung(syllable) ? sung : coming) += syllable.text;
    }
    const int width = m_size.columns - 1;
    sung = fitted(sung, width);
    coming = fitted(coming, width - columnsOf(sung));
    return {styled(kSung, sung) + coming, columnsOf(sung) + columnsOf(coming)};
}

TerminalView::Row TerminalView::nextRow(const host::Line& line) const {
    std::string text = line.words();
    if (line.syllables.empty()) {
        for (const host::Chord& chord : line.chords) {
            text += (text.empty() ? "" : "  ") + chord.name;
        }
    }
    text = fitted(text, m_size.columns - 1);
    return {styled(kFaint, text), columnsOf(text)};
}

TerminalView::Row TerminalView::statusRow() const {
    const std::string notice = noticeText(*m_desk);
    const std::string text = notice.empty() ? statusText(*m_desk, m_size.columns - 1)
                                            : fitted(notice, m_size.columns - 1);
    return {styled(kFaint, text), columnsOf(text)};
}

std::vector<TerminalView::Row> TerminalView::compose() const {
    std::vector<Row> rows = {Row{}};
    const std::vector<host::Line>& lines = m_words->lines();
    if (!lines.empty()) {
        const std::size_t current = m_words->current();
        if (m_desk->controls.song().chordCount() > 0) {
            rows.push_back(chordRow(lines[current]));
        }
        rows.push_back(wordRow(lines[current]));
        rows.push_back(current + 1 < lines.size() ? nextRow(lines[current + 1]) : Row{});
    }
    rows.push_back(statusRow());
    // A screen with too few rows loses the last ones.
    rows.resize(std::min(rows.size(), static_cast<std::size_t>(std::max(m_size.rows - 1, 1))));
    return rows;
}

std::string TerminalView::toFirstRow() const {
    if (m_drawn.empty()) {
        return "\r";
    }
    // A terminal that has become narrower has wrapped the rows that were drawn.
    int rows = -1;
    for (const Row& row : m_drawn) {
        rows += std::max((row.columns + m_size.columns - 1) / m_size.columns, 1);
    }
    return rows == 0 ? "\r" : "\r\x1b[" + std::to_string(rows) + "A";
}

void TerminalView::draw(const std::vector<Row>& rows) {
    std::string frame = toFirstRow();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        frame += (i == 0 ? "" : "\r\n") + rows[i].text + kEraseToLineEnd;
    }
    m_terminal.write(frame + kEraseToScreenEnd);
    m_drawn = rows;
}

void TerminalView::update() {
    const TerminalSize size = m_terminal.size();
    const bool resized = size.columns != m_size.columns || size.rows != m_size.rows;
    m_size = size;
    m_words->update(m_size.columns - 1);
    const std::vector<Row> rows = compose();
    const bool same =
        std::equal(rows.begin(), rows.end(), m_drawn.begin(), m_drawn.end(),
                   [](const Row& left, const Row& right) { return left.text == right.text; });
    if (!same || resized) {
        draw(rows);
    }
}

/// The message takes the rows' place; they are drawn anew beneath it.
void TerminalView::report(const std::string& message) {
    if (m_drawn.empty()) {
        SongView::report(message);
        return;
    }
    m_terminal.write(toFirstRow() + kEraseToScreenEnd);
    m_drawn.clear();
    SongView::report(message);
}

void TerminalView::finish(bool /*toItsEnd*/) {
    m_terminal.write(toFirstRow() + kEraseToScreenEnd);
    m_drawn.clear();
    m_terminal.giveBack();
}

void TerminalView::suspend() {
    m_terminal.write("\r\n");
    m_drawn.clear();
    m_terminal.giveBack();
}

void TerminalView::resume() {
    m_terminal.take();
    update();
}

void TerminalView::abandon() {
    m_terminal.giveBack();
}

} // namespace karaoke
