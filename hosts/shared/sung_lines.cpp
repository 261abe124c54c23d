// The words of a song in time.
#include "shared/sung_lines.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double kMillisecondsPerSecond = 1000;
constexpr long kLongestLastSyllable = 2000;
constexpr long kShortestLine = 10; ///< what the coarsest of the formats can express
constexpr std::string_view kWordJoiner = "\xE2\x81\xA0";

class Clock {
public:
    Clock(const Timeline& timeline, int offset) : m_timeline(timeline), m_offset(offset) {}
    long at(std::uint32_t tick) const {
        const double time = m_timeline.secondsAt(tick) * kMillisecondsPerSecond + m_offset;
        return std::max(std::lround(time), 0L);
    }

private:
    const Timeline& m_timeline;
    int m_offset;
};

SungLine lineWithoutEnds(const Line& line, const Clock& clock) {
    SungLine sung;
    for (const Syllable& syllable : line.syllables) {
        const long start = clock.at(syllable.tick);
        sung.syllables.push_back({start, start, syllable.text});
    }
    return sung;
}

/// @param limit  start of the next line
void setEnds(SungLine& line, long limit) {
    std::vector<SungSyllable>& syllables = line.syllables;
    for (std::size_t i = 0; i + 1 < syllables.size(); ++i) {
        syllables[i].end = syllables[i + 1].start;
    }
    const long last = syllables.back().start;
    const long earliest = std::max(last, line.start() + kShortestLine);
    syllables.back().end = std::max(std::min(last + kLongestLastSyllable, limit), earliest);
}

} // namespace

std::string SungLine::words() const {
    std::string all;
    for (const SungSyllable& syllable : syllables) {
        all += syllable.text;
    }
    return all;
}

std::vector<SungLine> sungLines(const Song& song, int offset) {
    const Clock clock(song.timeline, offset);
    std::vector<SungLine> lines;
    for (const Line& line : song.lines) {
        if (line.words().find_first_not_of(' ') != std::string::npos) {
            lines.push_back(lineWithoutEnds(line, clock));
        }
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool last = i + 1 == lines.size();
        setEnds(lines[i], last ? lines[i].end() + kLongestLastSyllable : lines[i + 1].start());
    }
    return lines;
}

std::string withoutMarkup(std::string_view text, std::string_view characters) {
    std::string plain;
    for (const char c : text) {
        plain += c;
        if (characters.find(c) != std::string_view::npos) {
            plain += kWordJoiner;
        }
    }
    return plain;
}

} // namespace host
