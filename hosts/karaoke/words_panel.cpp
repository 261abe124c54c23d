// The words of the full-screen player.
#include <algorithm>

#include "karaoke/panels.h"
#include "karaoke/text_width.h"
#include "shared/chord_places.h"
#include "shared/time_text.h"

namespace karaoke {

namespace {

constexpr int kChordGap = 1;   ///< columns between two chord names
constexpr int kCalmRows = 10;  ///< from so many on, lines are set apart
constexpr int kRoomyRows = 22; ///< from so many on, further apart
constexpr int kMostNext = 3;   ///< lines beneath the one that is sung

class WordsPanel {
public:
    WordsPanel(Canvas& canvas, const Rows& rows, const Desk& desk, const ShownWords& words)
        : m_canvas(canvas), m_rows(rows), m_words(words),
          m_chords(desk.controls.song().chordCount() > 0),
          m_gap(rows.count >= kRoomyRows ? 2 : (rows.count >= kCalmRows ? 1 : 0)) {}

    void draw() {
        const std::size_t current = m_words.current();
        const int above = m_rows.count >= kRoomyRows ? 2 : 1;
        const int whole = above * (1 + m_gap) + (1 + kMostNext) * (lineRows() + m_gap) - m_gap;
        const int free = std::max(m_rows.count - whole, 0);
        const int top = m_rows.first + free / 2 + above * (1 + m_gap);
        drawBefore(current, top, above);
        int row = drawLine(current, top);
        const std::size_t last = std::min(current + kMostNext + 1, m_words.lines().size());
        for (std::size_t next = current + 1; next < last && row + lineRows() <= end(); ++next) {
            row = drawLine(next, row);
        }
    }

private:
    int end() const {
        return m_rows.first + m_rows.count;
    }
    int lineRows() const {
        return m_chords ? 2 : 1;
    }

    /// A count-in or the length of a pause takes the place of what was sung last.
    void drawBefore(std::size_t current, int top, int above) {
        int row = top - 1 - m_gap;
        const std::string signs = countOrPause();
        if (!signs.empty()) {
            const bool counting = m_words.countIn() > 0;
            centre(row, signs, counting ? Style::CountIn : Style::Dim);
            row -= 1 + m_gap;
            --above;
        }
        for (std::size_t line = current; line > 0 && above > 0; --above, row -= 1 + m_gap) {
            --line;
            centre(row, textOfLine(m_words.lines()[line]), Style::Dim);
        }
    }

    std::string countOrPause() const {
        std::string signs;
        for (int beat = m_words.countIn(); beat > 0; --beat) {
            signs += signs.empty() ? "●" : " ●";
        }
        if (signs.empty() && m_words.pause() > 0) {
            signs = "♪ " + host::timeInSeconds(m_words.pause());
        }
        return signs;
    }

    static std::string textOfLine(const host::Line& line) {
        std::string text = line.words();
        if (line.syllables.empty()) {
            for (const host::Chord& chord : line.chords) {
                text += (text.empty() ? "" : "  ") + chord.name;
            }
        }
        return text;
    }

    void centre(int row, const std::string& text, Style style) {
        const int width = m_canvas.columns() - 2 * kMargin;
        const std::string shown = fitted(text, width);
        m_canvas.put(row, (m_canvas.columns() - columnsOf(shown)) / 2, shown, style);
    }

    /// @return the row behind the line and the gap that follows it
    int drawLine(std::size_t index, int row) {
        const host::Line& line = m_words.lines()[index];
        const bool now = index == m_words.current();
        const std::vector<int> edges = syllableColumns(line);
        const std::vector<int> places = host::chordPlaces(line, edges, columnsOf, kChordGap);
        int width = edges.back();
        if (!places.empty()) {
            width = std::max(width, places.back() + columnsOf(line.chords.back().name));
        }
        const int left = std::max((m_canvas.columns() - width) / 2, kMargin);
        if (m_chords) {
            drawChords(line, places, left, row, now);
            ++row;
        }
        drawSyllables(line, edges, left, row, now);
        return row + 1 + m_gap;
    }

    void drawChords(const host::Line& line, const std::vector<int>& places, int left, int row,
                    bool now) {
        for (std::size_t i = 0; i < line.chords.size(); ++i) {
            const host::Chord& chord = line.chords[i];
            const bool sounds = chord.index == m_words.follower().lastChord();
            const Style style = sounds ? Style::ChordNow : Style::Chord;
            m_canvas.put(row, left + places[i], chord.name, now ? style : Style::Dim);
        }
    }

    void drawSyllables(const host::Line& line, const std::vector<int>& edges, int left, int row,
                       bool now) {
        for (std::size_t i = 0; i < line.syllables.size(); ++i) {
            const host::Syllable& syllable = line.syllables[i];
            const bool sung = m_words.follower().sung(syllable);
            const Style style = sung ? Style::Sung : Style::Coming;
            m_canvas.put(row, left + edges[i], syllable.text, now ? style : Style::Dim);
        }
    }

    Canvas& m_canvas;
    Rows m_rows;
    const ShownWords& m_words;
    bool m_chords;
    int m_gap;
};

/// A song without words shows its name where they would be.
void drawName(Canvas& canvas, const Rows& rows, const host::Song& song) {
    const int row = rows.first + rows.count / 2 - 1;
    const int width = canvas.columns() - 2 * kMargin;
    const auto centre = [&](int where, const std::string& text, Style style) {
        const std::string shown = fitted(text, width);
        canvas.put(where, (canvas.columns() - columnsOf(shown)) / 2, shown, style);
    };
    centre(row, "♪  " + song.title + "  ♪", Style::Coming);
    centre(row + 1, song.subtitle, Style::Dim);
}

} // namespace

void drawWords(Canvas& canvas, const Rows& rows, const Desk& desk, const ShownWords& words) {
    if (words.lines().empty()) {
        drawName(canvas, rows, desk.controls.song());
    } else {
        WordsPanel(canvas, rows, desk, words).draw();
    }
}

} // namespace karaoke
