// Lines of words and chords as plain text.
#include "karaoke/line_text.h"

#include "shared/time_text.h"

namespace karaoke {

namespace {

void appendChords(std::string& text, const host::Line& line, std::size_t syllable) {
    const bool afterWords = syllable == line.syllables.size();
    for (const host::Chord& chord : line.chords) {
        if (chord.syllable != syllable) {
            continue;
        }
        if (afterWords && !text.ends_with(' ')) {
            text += ' ';
        }
        text += '[' + chord.name + ']';
    }
}

/// A chord of a new word stands next to the word, not before the space that leads to it.
std::string withChord(const std::string& chords, const std::string& syllable) {
    const bool space = !chords.empty() && syllable.starts_with(' ');
    return space ? ' ' + chords + syllable.substr(1) : chords + syllable;
}

} // namespace

std::string lineText(const host::Line& line, const host::Timeline& timeline) {
    std::string text;
    for (std::size_t i = 0; i < line.syllables.size(); ++i) {
        std::string chords;
        appendChords(chords, line, i);
        text += withChord(chords, line.syllables[i].text);
    }
    appendChords(text, line, line.syllables.size());
    text.erase(text.find_last_not_of(' ') + 1);
    const std::string time = "[" + host::timeWithTenths(timeline.secondsAt(line.tick())) + "]";
    return time + (text.starts_with(' ') ? "" : " ") + text;
}

} // namespace karaoke
