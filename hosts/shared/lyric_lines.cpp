// Gathers the syllables of a song into lines.
#include "shared/lyric_lines.h"

#include <algorithm>
#include <string_view>

#include "shared/line_division.h"
#include "shared/utf8.h"

namespace host {

namespace {

/// The bytes of one lyric that belong to one line.
struct Piece {
    std::uint32_t tick;
    int lyric;
    std::string bytes;
};

using RawLine = std::vector<Piece>;

bool isLineEnd(char byte) {
    return byte == '\r' || byte == '\n';
}

bool beginsLine(const std::string& bytes) {
    return bytes.front() == '/' || bytes.front() == '\\';
}

/// Deals the lyrics' bytes out to lines.
class LineSplitter {
public:
    void take(const TimedBytes& lyric, int index) {
        if (lyric.bytes.empty()) {
            return;
        }
        std::string_view bytes = lyric.bytes;
        if (beginsLine(lyric.bytes)) {
            endLine();
            bytes.remove_prefix(1);
        }
        while (!bytes.empty()) {
            const auto end = std::find_if(bytes.begin(), bytes.end(), isLineEnd);
            const auto length = static_cast<std::size_t>(end - bytes.begin());
            if (length > 0) {
                m_line.push_back({lyric.tick, index, std::string(bytes.substr(0, length))});
            }
            if (length < bytes.size()) {
                endLine();
            }
            bytes.remove_prefix(std::min(length + 1, bytes.size()));
        }
    }

    std::vector<RawLine> finish() {
        endLine();
        return std::move(m_lines);
    }

private:
    void endLine() {
        if (!m_line.empty()) {
            m_lines.push_back(std::move(m_line));
            m_line.clear();
        }
    }

    RawLine m_line;
    std::vector<RawLine> m_lines;
};

/// A line is decoded as one text, since a character may be spread over two syllables; it goes to the
/// syllable that its first byte is in.
Line decodeLine(const RawLine& raw, const TextDecoder& decoder) {
    Line line;
    std::string bytes;
    std::vector<std::size_t> ends;
    for (const Piece& piece : raw) {
        line.syllables.push_back({piece.tick, piece.lyric, {}});
        bytes += piece.bytes;
        ends.push_back(bytes.size());
    }
    std::size_t position = 0;
    std::size_t syllable = 0;
    for (const DecodedCharacter& character : decoder.decode(bytes)) {
        while (position >= ends[syllable]) {
            ++syllable;
        }
        line.syllables[syllable].text += character.utf8;
        position += character.bytes;
    }
    return line;
}

/// Leaves out control characters, spaces at the line's start, and all but one of several spaces.
void tidyLine(Line& line) {
    bool afterSpace = true;
    for (Syllable& syllable : line.syllables) {
        std::string text;
        for (const char byte : withoutControls(syllable.text)) {
            const bool space = byte == ' ';
            if (!space || !afterSpace) {
                text += byte;
            }
            afterSpace = space;
        }
        syllable.text = std::move(text);
    }
}

bool isBlank(const Line& line) {
    return line.words().find_first_not_of(' ') == std::string::npos;
}

} // namespace

std::uint32_t Line::tick() const {
    if (syllables.empty()) {
        return chords.empty() ? 0 : chords.front().tick;
    }
    return syllables.front().tick;
}

std::uint32_t Line::lastTick() const {
    std::uint32_t last = syllables.empty() ? 0 : syllables.back().tick;
    if (!chords.empty()) {
        last = std::max(last, chords.back().tick);
    }
    return last;
}

std::string Line::words() const {
    std::string words;
    for (const Syllable& syllable : syllables) {
        words += syllable.text;
    }
    return words;
}

std::vector<Line> buildLines(const std::vector<TimedBytes>& lyrics, const TextDecoder& decoder) {
    LineSplitter splitter;
    for (std::size_t i = 1; i < lyrics.size(); ++i) {
        splitter.take(lyrics[i], static_cast<int>(i));
    }
    std::vector<Line> lines;
    for (const RawLine& raw : splitter.finish()) {
        lines.push_back(decodeLine(raw, decoder));
    }
    spaceUnspacedWords(lines);
    std::for_each(lines.begin(), lines.end(), tidyLine);
    std::erase_if(lines, isBlank);
    return divideLongLines(lines);
}

} // namespace host
