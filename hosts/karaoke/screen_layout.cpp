// The full-screen player as a canvas: which part gets which rows.
#include "karaoke/screen_layout.h"

#include <algorithm>

#include "karaoke/panels.h"
#include "karaoke/player_keys.h"
#include "karaoke/song_status.h"
#include "karaoke/text_width.h"

namespace karaoke {

namespace {

constexpr int kRoomyRows =
    22; ///< from so many on, names of markers and the chosen channel have rows
constexpr int kChannelRows = 4;
constexpr int kWidestWords = 100; ///< columns; longer lines are hard to follow

/// The first one that fits is shown.
constexpr const char* kKeyLines[] = {
    "space pause  ← → bar  ↑ ↓ tempo  + - key  a b loop  , . channel  m mute  s solo  ? all keys",
    "space pause  ← → bar  ↑ ↓ tempo  + - key  a b loop  m mute  ? all keys",
    "space pause  ← → bar  ↑ ↓ tempo  + - key  ? all keys",
};

/// Rows of a screen, from the bottom up; the words get what is left.
struct Plan {
    Rows words;
    Rows position;
    int status;
    Rows channels;
    int keys;
};

Plan planFor(int rows) {
    const bool roomy = rows >= kRoomyRows;
    Plan plan{};
    plan.keys = rows - 1;
    plan.channels.count = kChannelRows + (roomy ? 1 : 0);
    plan.channels.first = plan.keys - plan.channels.count - (roomy ? 1 : 0);
    plan.status = plan.channels.first - 1 - (roomy ? 1 : 0);
    plan.position.count = roomy ? 2 : 1;
    plan.position.first = plan.status - plan.position.count;
    plan.words.first = roomy ? 2 : 1;
    plan.words.count = plan.position.first - plan.words.first;
    return plan;
}

void drawTitle(Canvas& canvas, const Desk& desk) {
    std::string place;
    if (desk.songs > 1) {
        place = "song " + std::to_string(desk.place + 1) + " of " + std::to_string(desk.songs);
    }
    const int width = canvas.columns() - 2 * kMargin;
    const int placeWidth = columnsOf(place);
    canvas.putFitted(0, kMargin, titleText(desk), width - placeWidth - 2, Style::Title);
    canvas.put(0, kMargin + width - placeWidth, place, Style::Dim);
}

void drawBottomRow(Canvas& canvas, const Desk& desk, int row) {
    const std::string notice = noticeText(desk);
    const int width = canvas.columns() - 2 * kMargin;
    if (notice.empty()) {
        const auto* const line =
            std::find_if(std::begin(kKeyLines), std::end(kKeyLines) - 1,
                         [width](const char* keys) { return columnsOf(keys) <= width; });
        canvas.putFitted(row, kMargin, *line, width, Style::Keys);
    } else {
        canvas.putFitted(row, kMargin, notice, width, Style::Notice);
    }
}

} // namespace

int wordColumns(int columns) {
    return std::min(columns - 2 * kMargin, kWidestWords);
}

Canvas composeScreen(const Desk& desk, const ShownWords& words, int columns, int rows) {
    Canvas canvas(columns, rows);
    if (desk.help) {
        drawHelp(canvas);
        return canvas;
    }
    const Plan plan = planFor(std::max(rows, kFewestRows));
    drawTitle(canvas, desk);
    drawWords(canvas, plan.words, desk, words);
    drawPosition(canvas, plan.position, desk);
    canvas.put(plan.status, kMargin, statusText(desk, columns - 2 * kMargin), Style::Plain);
    drawChannels(canvas, plan.channels, desk);
    drawBottomRow(canvas, desk, plan.keys);
    return canvas;
}

void drawHelp(Canvas& canvas) {
    constexpr int kKeysWidth = 12;
    const auto help = keyHelp();
    const int perColumn = (static_cast<int>(help.size()) + 1) / 2;
    const int columnWidth = (canvas.columns() - 2 * kMargin) / 2;
    canvas.put(0, kMargin, "Keys", Style::Title);
    for (int i = 0; i < static_cast<int>(help.size()); ++i) {
        const KeyHelp& entry = help[static_cast<std::size_t>(i)];
        const int row = 2 + i % perColumn;
        const int left = kMargin + i / perColumn * columnWidth;
        canvas.put(row, left, entry.keys, Style::Chosen);
        canvas.put(row, left + kKeysWidth, entry.effect, Style::Plain);
    }
    canvas.put(canvas.rows() - 1, kMargin, "any key goes back to the song", Style::Keys);
}

} // namespace karaoke
