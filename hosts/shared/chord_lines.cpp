// Puts the chords of a song into its lines.
#include <algorithm>
#include <iterator>

#include "shared/chord_names.h"
#include "shared/lyric_lines.h"

namespace host {

namespace {

constexpr int kToleranceParts =
    8; ///< a chord and a syllable this part of a quarter note apart agree
constexpr int kQuartersAfterLine = 4; ///< a later chord belongs to the pause after the line
constexpr std::size_t kChordsPerLine = 8;

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

class ChordPlacer {
public:
    ChordPlacer(std::vector<Line>& lines, int division)
        : m_lines(lines), m_tolerance(static_cast<std::uint32_t>(division / kToleranceParts)),
          m_reach(static_cast<std::uint32_t>(division * kQuartersAfterLine)) {}

    void take(Chord chord) {
        const std::size_t next = firstLineAfter(chord.tick);
        if (next != m_gap) {
            endGap();
            m_gap = next;
        }
        const bool beforeAll = next == 0;
        if (beforeAll || chord.tick > m_lines[next - 1].syllables.back().tick + m_reach) {
            m_apart.push_back(std::move(chord));
        } else {
            place(m_lines[next - 1], std::move(chord));
        }
    }

    void finish() {
        endGap();
        std::move(m_chordLines.begin(), m_chordLines.end(), std::back_inserter(m_lines));
        std::stable_sort(m_lines.begin(), m_lines.end(), [](const Line& left, const Line& right) {
            return left.tick() < right.tick();
        });
    }

private:
    std::size_t firstLineAfter(std::uint32_t tick) const {
        const auto line = std::find_if(m_lines.begin(), m_lines.end(), [&](const Line& candidate) {
            return candidate.tick() > tick + m_tolerance;
        });
        return static_cast<std::size_t>(line - m_lines.begin());
    }

    void place(Line& line, Chord chord) const {
        const auto syllable = std::find_if(
            line.syllables.begin(), line.syllables.end(),
            [&](const Syllable& candidate) { return candidate.tick + m_tolerance >= chord.tick; });
        chord.syllable = static_cast<std::size_t>(syllable - line.syllables.begin());
        line.chords.push_back(std::move(chord));
    }

    /// The chords of a stretch without words; a single one is not worth a line.
    void endGap() {
        if (m_apart.size() == 1 && m_gap > 0) {
            place(m_lines[m_gap - 1], std::move(m_apart.front()));
            m_apart.clear();
        }
        for (std::size_t first = 0; first < m_apart.size(); first += kChordsPerLine) {
            const std::size_t count = std::min(kChordsPerLine, m_apart.size() - first);
            const auto begin = m_apart.begin() + static_cast<std::ptrdiff_t>(first);
            Line line;
            line.chords.assign(begin, begin + static_cast<std::ptrdiff_t>(count));
            m_chordLines.push_back(std::move(line));
        }
        m_apart.clear();
    }

    std::vector<Line>& m_lines;
    std::uint32_t m_tolerance;
    std::uint32_t m_reach;
    std::size_t m_gap = 0;      ///< index of the line before which m_apart's chords are played
    std::vector<Chord> m_apart; ///< chords away from words, so far
    std::vector<Line> m_chordLines;
};

} // namespace

void placeChords(std::vector<Line>& lines, const std::vector<TimedBytes>& chords,
                 const TextDecoder& decoder, int division) {
    ChordPlacer placer(lines, division);
    for (std::size_t i = 1; i < chords.size(); ++i) {
        std::string name = trimmed(decoder.text(chords[i].bytes));
        if (isChordName(name)) {
            placer.take({chords[i].tick, static_cast<int>(i), std::move(name), 0});
        }
    }
    placer.finish();
}

} // namespace host
