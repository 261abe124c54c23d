// Lines of a song divided into parts that fit a terminal's width.
#include "karaoke/wrapped_lines.h"

#include <algorithm>

#include "karaoke/text_width.h"

namespace karaoke {

namespace {

constexpr int kSlack = 8; ///< columns by which a part may exceed the even length

bool endsWord(const host::Line& line, std::size_t syllable) {
    return syllable + 1 == line.syllables.size() || line.syllables[syllable].text.ends_with(' ') ||
           line.syllables[syllable + 1].text.starts_with(' ');
}

/// Columns that each part should take.
int partWidth(const host::Line& line, int columns) {
    const int whole = columnsOf(line.words());
    const int parts = std::max((whole + columns - 1) / columns, 1);
    return parts == 1 ? columns : std::min(columns, whole / parts + kSlack);
}

/// Index after the last syllable of the part that begins with one.
std::size_t partEnd(const host::Line& line, std::size_t first, int width) {
    std::size_t wordEnd = first;
    int columns = 0;
    for (std::size_t i = first; i < line.syllables.size(); ++i) {
        columns += columnsOf(line.syllables[i].text);
        if (columns > width && i > first) {
            return wordEnd > first ? wordEnd : i;
        }
        if (endsWord(line, i)) {
            wordEnd = i + 1;
        }
    }
    return line.syllables.size();
}

host::Line partOf(const host::Line& line, std::size_t first, std::size_t end) {
    host::Line part;
    part.syllables.assign(line.syllables.begin() + static_cast<std::ptrdiff_t>(first),
                          line.syllables.begin() + static_cast<std::ptrdiff_t>(end));
    const bool last = end == line.syllables.size();
    for (host::Chord chord : line.chords) {
        if (chord.syllable >= first && (chord.syllable < end || last)) {
            chord.syllable -= first;
            part.chords.push_back(std::move(chord));
        }
    }
    return part;
}

} // namespace

std::vector<host::Line> wrapLines(const std::vector<host::Line>& lines, int columns) {
    std::vector<host::Line> parts;
    for (const host::Line& line : lines) {
        const int width = partWidth(line, std::max(columns, 1));
        std::size_t first = 0;
        do {
            const std::size_t end = partEnd(line, first, width);
            parts.push_back(partOf(line, first, end));
            first = end;
        } while (first < line.syllables.size());
    }
    return parts;
}

} // namespace karaoke
