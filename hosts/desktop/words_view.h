// The words of a song as a picture: previous, current and next line, chords above the current one, dots that
// count a singer in.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/gdi.h"
#include "desktop/words_layout.h"
#include "shared/line_follower.h"
#include "shared/song.h"

namespace desktop {

/// What the words show of, at one moment.
struct WordsMoment {
    std::shared_ptr<const host::Song> song; ///< null = none is open
    int lyric = -1;                         ///< last one announced
    int chord = -1;
    std::uint32_t tick = 0;
    std::wstring notice; ///< shown in the middle where there are no words
};

/// What is drawn of a moment; equal ones look the same.
struct WordsPicture {
    bool hasLines = false;
    std::size_t line = 0;
    int sung = 0; ///< pixels of the current line that are coloured
    int chord = -1;
    int dots = 0;
    std::wstring title;
    std::wstring notice;
    bool operator==(const WordsPicture&) const = default;
    /// Whether they differ in nothing but the current line's colours.
    bool sameButSung(const WordsPicture& other) const;
};

class WordsView {
public:
    /// Fits the song into a place.
    void fit(Size place, const std::shared_ptr<const host::Song>& song);

    /// @param moment  of the song that was fitted last
    WordsPicture pictureOf(const WordsMoment& moment);
    void draw(HDC dc, const WordsPicture& picture) const;

    const WordsLayout& layout() const {
        return m_layout;
    }

private:
    struct ChordName {
        std::wstring name;
        int x;
        int width;
        int index;
    };
    /// A line as it is drawn.
    struct DrawnLine {
        std::wstring text;
        std::vector<int> edges; ///< pixels at which the syllables begin, and the end
        int letters = 0;        ///< height of its letters as current line
        std::vector<ChordName> chords;
        int left = 0;  ///< pixel at which the current line begins
        int width = 0; ///< its own, or that of the chords over it
    };

    int usualLineWidth(const host::Song& song) const;
    DrawnLine prepare(HDC dc, const host::Line& line);
    void placeChords(HDC dc, const host::Line& line, DrawnLine& drawn);
    const Font& font(int height) const;
    int sungWidth(const DrawnLine& drawn, const host::Line& line, std::uint32_t tick) const;
    void drawCurrent(HDC dc, const DrawnLine& line, int sung) const;
    void drawChords(HDC dc, const DrawnLine& line, int last) const;
    void drawDots(HDC dc, int dots) const;
    void drawOther(HDC dc, const Box& row, const DrawnLine& line) const;

    Size m_place;
    WordsLayout m_layout;
    std::shared_ptr<const host::Song> m_song;
    std::vector<host::Line> m_parts; ///< the song's lines, wrapped
    std::vector<DrawnLine> m_lines;
    std::optional<host::LineFollower> m_follower;
    mutable std::map<int, Font> m_fonts;
};

} // namespace desktop
