// Spaces and line ends for songs that have none.
#include "shared/line_division.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "shared/utf8.h"

namespace host {

namespace {

constexpr std::size_t kEnoughSyllables =
    6; ///< with fewer nothing can be said about a song's habits
constexpr std::size_t kSpacedPerHundred =
    25;                              ///< where words are spaced, about every other syllable is
constexpr std::size_t kTooLong = 72; ///< characters of a line that is divided
constexpr std::size_t kLongestPart = 48;
constexpr std::size_t kShortestPart = 16;
constexpr char32_t kFirstUnspacedScript = 0x2E80; ///< Chinese and Japanese; Korean has spaces

std::size_t charactersOf(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    }));
}

bool isUnspacedScript(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = std::max<std::size_t>(utf8CharacterLength(text, position), 1);
        if (utf8CodePoint(text.substr(position, length)) >= kFirstUnspacedScript) {
            return true;
        }
        position += length;
    }
    return false;
}

bool isSpaced(const std::string& text) {
    return !text.empty() && (text.front() == ' ' || text.back() == ' ');
}

bool endsWord(const Line& line, std::size_t syllable) {
    const std::string& text = line.syllables[syllable].text;
    const std::string& next = line.syllables[syllable + 1].text;
    return text.ends_with(' ') || next.starts_with(' ') || isUnspacedScript(text);
}

bool endsPhrase(const std::string& text) {
    const std::size_t last = text.find_last_not_of(' ');
    return last != std::string::npos &&
           std::string_view(",.;:!?").find(text[last]) != std::string_view::npos;
}

/// How well a line ends after a syllable: by the pause that follows it, twice as well after a punctuation
/// mark.
std::uint64_t fitness(const Line& line, std::size_t syllable) {
    const std::uint64_t pause = line.syllables[syllable + 1].tick - line.syllables[syllable].tick;
    return (pause + 1) * (endsPhrase(line.syllables[syllable].text) ? 2 : 1);
}

/// Number of syllables, from the first one on, that make the next part.
std::size_t partLength(const Line& line, std::size_t first) {
    std::size_t best = 0;
    std::uint64_t bestFitness = 0;
    std::size_t characters = 0;
    for (std::size_t i = first; i + 1 < line.syllables.size(); ++i) {
        characters += charactersOf(line.syllables[i].text);
        const bool fits = characters <= kLongestPart || best == 0;
        if (!fits) {
            break;
        }
        if (characters >= kShortestPart && endsWord(line, i) && fitness(line, i) >= bestFitness) {
            best = i + 1 - first;
            bestFitness = fitness(line, i);
        }
    }
    return best == 0 ? line.syllables.size() - first : best;
}

std::size_t charactersFrom(const Line& line, std::size_t first) {
    std::size_t characters = 0;
    for (std::size_t i = first; i < line.syllables.size(); ++i) {
        characters += charactersOf(line.syllables[i].text);
    }
    return characters;
}

void divide(const Line& line, std::vector<Line>& parts) {
    std::size_t first = 0;
    while (first < line.syllables.size()) {
        const std::size_t length = charactersFrom(line, first) > kTooLong
                                       ? partLength(line, first)
                                       : line.syllables.size() - first;
        const auto begin = line.syllables.begin() + static_cast<std::ptrdiff_t>(first);
        Line part;
        part.syllables.assign(begin, begin + static_cast<std::ptrdiff_t>(length));
        parts.push_back(std::move(part));
        first += length;
    }
}

} // namespace

void spaceUnspacedWords(std::vector<Line>& lines) {
    std::size_t syllables = 0;
    std::size_t spaced = 0;
    for (const Line& line : lines) {
        for (const Syllable& syllable : line.syllables) {
            ++syllables;
            // A whole line in one text needs no spaces around it.
            const bool severalWords = syllable.text.find(' ') != std::string::npos;
            spaced += severalWords || isSpaced(syllable.text) || isUnspacedScript(syllable.text);
        }
    }
    const bool wholeLines = syllables <= lines.size();
    if (wholeLines || syllables < kEnoughSyllables ||
        spaced * 100 >= syllables * kSpacedPerHundred) {
        return;
    }
    for (Line& line : lines) {
        for (Syllable& syllable : line.syllables) {
            if (!syllable.text.ends_with('-')) {
                syllable.text += ' ';
            }
        }
    }
}

std::vector<Line> divideLongLines(const std::vector<Line>& lines) {
    std::vector<Line> parts;
    for (const Line& line : lines) {
        divide(line, parts);
    }
    return parts;
}

} // namespace host
