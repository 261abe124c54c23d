// Lines of a song divided into parts that fit a width.
#include "shared/wrapped_lines.h"

#include <algorithm>

namespace host {

namespace {

bool endsWord(const Line& line, std::size_t syllable) {
    return syllable + 1 == line.syllables.size() || line.syllables[syllable].text.ends_with(' ') ||
           line.syllables[syllable + 1].text.starts_with(' ');
}

/// The width that each part should take.
int partWidth(const Line& line, const WrapWidth& width, const TextMeasure& measure) {
    const int whole = measure(line.words());
    const int parts = std::max((whole + width.most - 1) / width.most, 1);
    return parts == 1 ? width.most : std::min(width.most, whole / parts + width.slack);
}

/// Index after the last syllable of the part that begins with one.
std::size_t partEnd(const Line& line, std::size_t first, int width, const TextMeasure& measure) {
    std::size_t wordEnd = first;
    int taken = 0;
    for (std::size_t i = first; i < line.syllables.size(); ++i) {
        taken += measure(line.syllables[i].text);
        if (taken > width && i > first) {
            return wordEnd > first ? wordEnd : i;
        }
        if (endsWord(line, i)) {
            wordEnd = i + 1;
        }
    }
    return line.syllables.size();
}

Line partOf(const Line& line, std::size_t first, std::size_t end) {
    Line part;
    part.syllables.assign(line.syllables.begin() + static_cast<std::ptrdiff_t>(first),
                          line.syllables.begin() + static_cast<std::ptrdiff_t>(end));
    const bool last = end == line.syllables.size();
    for (Chord chord : line.chords) {
        if (chord.syllable >= first && (chord.syllable < end || last)) {
            chord.syllable -= first;
            part.chords.push_back(std::move(chord));
        }
    }
    return part;
}

} // namespace

std::vector<Line> wrapLines(const std::vector<Line>& lines, const WrapWidth& width,
                            const TextMeasure& measure) {
    const WrapWidth held = {std::max(width.most, 1), width.slack};
    std::vector<Line> parts;
    for (const Line& line : lines) {
        const int wanted = partWidth(line, held, measure);
        std::size_t first = 0;
        do {
            const std::size_t end = partEnd(line, first, wanted, measure);
            parts.push_back(partOf(line, first, end));
            first = end;
        } while (first < line.syllables.size());
    }
    return parts;
}

} // namespace host
