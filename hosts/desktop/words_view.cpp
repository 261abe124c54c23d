// The words as a picture.
#include "desktop/words_view.h"

#include <algorithm>

#include "desktop/colours.h"
#include "shared/chord_places.h"
#include "shared/count_in.h"
#include "shared/wide_text.h"

namespace desktop {

namespace {

constexpr const wchar_t* kFace = L"Arial";
constexpr int kReferenceHeight = 100;
constexpr int kUsualShare = 85; ///< percent of the lines that are no longer than the usual one
constexpr double kLongestWipe = 0.35; ///< seconds in which a syllable takes its colour
constexpr int kChordGapPart = 3;      ///< of a chord's height
constexpr int kMostDots = 4;

std::wstring titleOf(const host::Song& song) {
    std::string title = song.title;
    if (!song.subtitle.empty()) {
        title += " \xE2\x80\x93 " + song.subtitle;
    }
    return host::toWide(title);
}

/// Cumulated widths behind each character.
std::vector<int> characterEdges(HDC dc, const std::wstring& text) {
    std::vector<int> edges(text.size());
    SIZE size{};
    if (!text.empty()) {
        GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), 0, nullptr,
                              edges.data(), &size);
    }
    return edges;
}

} // namespace

bool WordsPicture::sameButSung(const WordsPicture& other) const {
    WordsPicture copy = other;
    copy.sung = sung;
    return *this == copy;
}

const Font& WordsView::font(int height) const {
    auto found = m_fonts.find(height);
    if (found == m_fonts.end()) {
        found = m_fonts.emplace(height, Font(kFace, height, true)).first;
    }
    return found->second;
}

/// Width of the line that most lines do not exceed, in letters of the reference height.
int WordsView::usualLineWidth(const host::Song& song) const {
    const MeasuringContext context;
    const Selected selected(context.handle(), font(kReferenceHeight).handle());
    std::vector<int> widths;
    for (const host::Line& line : song.lines) {
        widths.push_back(textSize(context.handle(), host::toWide(line.words())).width);
    }
    if (widths.empty()) {
        return 0;
    }
    std::sort(widths.begin(), widths.end());
    return widths[(widths.size() - 1) * kUsualShare / 100];
}

void WordsView::fit(Size place, const std::shared_ptr<const host::Song>& song) {
    if (place == m_place && song == m_song) {
        return;
    }
    m_follower.reset();
    m_lines.clear();
    m_parts.clear();
    m_fonts.clear();
    m_place = place;
    m_song = song;
    m_layout = layoutWords(place, song ? usualLineWidth(*song) : 0);
    if (!song) {
        return;
    }
    const MeasuringContext context;
    const HDC dc = context.handle();
    {
        const Selected selected(dc, font(m_layout.sizes.current).handle());
        m_parts = host::wrapLines(
            song->lines, {m_layout.lineWidth, m_layout.sizes.current},
            [dc](const std::string& text) { return textSize(dc, host::toWide(text)).width; });
    }
    for (const host::Line& part : m_parts) {
        m_lines.push_back(prepare(dc, part));
    }
    m_follower.emplace(m_parts, m_song->timeline);
}

WordsView::DrawnLine WordsView::prepare(HDC dc, const host::Line& line) {
    DrawnLine drawn;
    drawn.letters = m_layout.sizes.current;
    std::vector<std::size_t> ends;
    for (const host::Syllable& syllable : line.syllables) {
        drawn.text += host::toWide(syllable.text);
        ends.push_back(drawn.text.size());
    }
    const int natural = [&] {
        const Selected selected(dc, font(drawn.letters).handle());
        return textSize(dc, drawn.text).width;
    }();
    if (natural > m_layout.lineWidth) {
        // One syllable that fills more than a row.
        drawn.letters = std::max(drawn.letters * m_layout.lineWidth / natural, 1);
    }
    const Selected selected(dc, font(drawn.letters).handle());
    const std::vector<int> characters = characterEdges(dc, drawn.text);
    drawn.edges = {0};
    for (const std::size_t end : ends) {
        drawn.edges.push_back(end == 0 ? 0 : characters[end - 1]);
    }
    drawn.width = drawn.edges.back();
    placeChords(dc, line, drawn);
    drawn.left = std::max((m_place.width - drawn.width) / 2, 0);
    return drawn;
}

void WordsView::placeChords(HDC dc, const host::Line& line, DrawnLine& drawn) {
    const Selected selected(dc, font(m_layout.sizes.chord).handle());
    const auto measure = [dc](const std::string& text) {
        return textSize(dc, host::toWide(text)).width;
    };
    const int gap = m_layout.sizes.chord / kChordGapPart;
    const std::vector<int> places = host::chordPlaces(line, drawn.edges, measure, gap);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const host::Chord& chord = line.chords[i];
        const int width = measure(chord.name);
        if (places[i] + width > m_place.width) {
            break;
        }
        drawn.chords.push_back({host::toWide(chord.name), places[i], width, chord.index});
        drawn.width = std::max(drawn.width, places[i] + width);
    }
}

/// The last syllable takes its colour while it is sung, the ones before have theirs.
int WordsView::sungWidth(const DrawnLine& drawn, const host::Line& line, std::uint32_t tick) const {
    std::size_t sung = 0;
    while (sung < line.syllables.size() && m_follower->sung(line.syllables[sung])) {
        ++sung;
    }
    if (sung == 0) {
        return 0;
    }
    const double start = m_song->timeline.secondsAt(line.syllables[sung - 1].tick);
    const double end = sung < line.syllables.size()
                           ? m_song->timeline.secondsAt(line.syllables[sung].tick)
                           : start + kLongestWipe;
    const double length = std::min(end - start, kLongestWipe);
    const double passed = m_song->timeline.secondsAt(tick) - start;
    const double part = length <= 0 ? 1 : std::clamp(passed / length, 0.0, 1.0);
    const int from = drawn.edges[sung - 1];
    return from + static_cast<int>(part * (drawn.edges[sung] - from));
}

WordsPicture WordsView::pictureOf(const WordsMoment& moment) {
    WordsPicture picture;
    picture.notice = moment.notice;
    if (!m_song) {
        return picture;
    }
    picture.title = titleOf(*m_song);
    if (m_lines.empty()) {
        return picture;
    }
    m_follower->jumpTo(moment.lyric, moment.chord);
    picture.hasLines = true;
    picture.line = m_follower->lineAt(moment.tick);
    picture.sung = sungWidth(m_lines[picture.line], m_parts[picture.line], moment.tick);
    picture.chord = moment.chord;
    picture.dots = host::countIn(m_parts, picture.line, m_song->timeline, moment.tick);
    return picture;
}

void WordsView::drawOther(HDC dc, const Box& row, const DrawnLine& line) const {
    std::wstring text = line.text;
    if (text.empty()) {
        for (const ChordName& chord : line.chords) {
            text += (text.empty() ? L"" : L"   ") + chord.name;
        }
    }
    // As much smaller as the line itself is when it is sung.
    const int letters = m_layout.sizes.other * line.letters / m_layout.sizes.current;
    const Selected selected(dc, font(std::max(letters, 1)).handle());
    drawText(dc, row, text, kOtherLine, Align::Centre);
}

void WordsView::drawCurrent(HDC dc, const DrawnLine& line, int sung) const {
    const Box& row = m_layout.rows.current;
    const Selected selected(dc, font(line.letters).handle());
    const int length = static_cast<int>(line.text.size());
    const int y = row.top + (row.height() - textSize(dc, line.text).height) / 2;
    const int border = line.left + sung;
    const auto part = [&](int from, int to, COLORREF colour) {
        const int saved = SaveDC(dc);
        IntersectClipRect(dc, from, row.top, to, row.bottom);
        SetTextColor(dc, colour);
        TextOutW(dc, line.left, y, line.text.data(), length);
        RestoreDC(dc, saved);
    };
    part(0, border, kSung);
    part(border, m_place.width, kComing);
}

void WordsView::drawChords(HDC dc, const DrawnLine& line, int last) const {
    const Box& row = m_layout.rows.chords;
    const Selected selected(dc, font(m_layout.sizes.chord).handle());
    for (const ChordName& chord : line.chords) {
        const int left = line.left + chord.x;
        const bool now = chord.index == last;
        drawText(dc, {left, row.top, left + chord.width, row.bottom}, chord.name,
                 now ? kChordNow : kChordColour);
    }
}

void WordsView::drawDots(HDC dc, int dots) const {
    const Box& row = m_layout.rows.dots;
    const int size = row.height() / 2;
    const int step = size * 2;
    const int left = m_place.width / 2 - (kMostDots * step - size) / 2;
    const Selected brush(dc, GetStockObject(DC_BRUSH));
    const Selected pen(dc, GetStockObject(NULL_PEN));
    SetDCBrushColor(dc, kSung);
    for (int i = 0; i < dots; ++i) {
        const int x = left + i * step;
        Ellipse(dc, x, row.top, x + size + 1, row.top + size + 1);
    }
}

void WordsView::draw(HDC dc, const WordsPicture& picture) const {
    fill(dc, {0, 0, m_place.width, m_place.height}, kGround);
    const WordsRows& rows = m_layout.rows;
    if (!picture.title.empty()) {
        const Selected selected(dc, font(m_layout.sizes.title).handle());
        drawText(dc, rows.title, picture.title, kTitleColour, Align::Centre);
    }
    if (!picture.hasLines) {
        const Selected selected(dc, font(m_layout.sizes.title).handle());
        drawText(dc, {0, rows.title.bottom, m_place.width, m_place.height}, picture.notice, kComing,
                 Align::Centre);
        return;
    }
    const std::size_t line = picture.line;
    if (line > 0) {
        drawOther(dc, rows.previous, m_lines[line - 1]);
    }
    drawChords(dc, m_lines[line], picture.chord);
    drawCurrent(dc, m_lines[line], picture.sung);
    drawDots(dc, picture.dots);
    if (line + 1 < m_lines.size()) {
        drawOther(dc, rows.next, m_lines[line + 1]);
    }
}

} // namespace desktop
