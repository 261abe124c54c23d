// The rows of the words as shares of the current line's height.
#include "desktop/words_layout.h"

namespace desktop {

namespace {

constexpr int kReferenceHeight = 100;
constexpr int kSmallestLetters = 12;
constexpr int kSmallestCurrent = 20; ///< then the chords, too, are no smaller than the smallest
// In hundredths of the current line's letters.
constexpr int kOther = 68;
constexpr int kChord = 62;
constexpr int kTitleRow = 60;
constexpr int kPreviousRow = 100;
constexpr int kDotsRow = 40;
constexpr int kChordRow = 85;
constexpr int kCurrentRow = 125;
constexpr int kGapRow = 30;
constexpr int kNextRow = 100;
constexpr int kAllRows =
    kTitleRow + kPreviousRow + kDotsRow + kChordRow + kCurrentRow + kGapRow + kNextRow;
// A song with long lines is wrapped rather than shown in letters smaller than this share of the largest.
constexpr int kSmallestShare = 68;
constexpr int kSideMarginShare = 3; ///< percent of the width
constexpr int kTitleOfHeight = 20;  ///< the title's letters are this part of the place's height
constexpr int kPercent = 100;

int share(int whole, int percent) {
    return whole * percent / kPercent;
}

} // namespace

WordsLayout layoutWords(Size place, int lineWidth) {
    WordsLayout layout;
    layout.lineWidth = place.width - 2 * share(place.width, kSideMarginShare);
    const int tallest = place.height * kPercent / kAllRows;
    const int fitting = lineWidth <= 0 ? tallest : layout.lineWidth * kReferenceHeight / lineWidth;
    const int size =
        std::max({std::min(tallest, fitting), share(tallest, kSmallestShare), kSmallestCurrent});
    layout.sizes = {size, std::max(share(size, kOther), kSmallestLetters),
                    std::max(share(size, kChord), kSmallestLetters),
                    std::max(place.height / kTitleOfHeight, kSmallestLetters)};

    const int titleHeight = share(layout.sizes.title, kCurrentRow);
    layout.rows.title = {0, 0, place.width, titleHeight};
    const int rowsHeight = share(size, kAllRows - kTitleRow);
    int y = std::max(titleHeight, (place.height - rowsHeight) / 2);
    const auto row = [&](int percent) {
        const Box box = {0, y, place.width, y + share(size, percent)};
        y = box.bottom;
        return box;
    };
    layout.rows.previous = row(kPreviousRow);
    layout.rows.dots = row(kDotsRow);
    layout.rows.chords = row(kChordRow);
    layout.rows.current = row(kCurrentRow);
    row(kGapRow);
    layout.rows.next = row(kNextRow);
    return layout;
}

} // namespace desktop
