// The mixer's rows and columns.
#include "desktop/mixer_layout.h"

namespace desktop {

namespace {

constexpr int kMargin = 6;
constexpr int kColumnGap = 12;
constexpr int kCellGap = 3;
constexpr int kShortestRow = 16;
constexpr int kTallestRow = 26;
/// The name takes what the others leave, and at least this.
constexpr std::array<int, kMixerCells> kWidths = {12, 96, 50, 50, 50, 50, 22, 22};
constexpr auto kNameIndex = static_cast<std::size_t>(MixerCell::Name);

int columnWidth(const Scale& scale) {
    int width = 0;
    for (const int cell : kWidths) {
        width += scale(cell);
    }
    return width + (kMixerCells - 1) * scale(kCellGap);
}

MixerRow layoutRow(const Box& row, const Scale& scale) {
    const int spare = row.width() - columnWidth(scale);
    MixerRow cells;
    int x = row.left;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const int width = scale(kWidths[i]) + (i == kNameIndex ? spare : 0);
        cells[i] = {x, row.top, x + width, row.bottom};
        x += width + scale(kCellGap);
    }
    return cells;
}

} // namespace

Size smallestMixer(int columns, const Scale& scale) {
    const int rows = kMixerChannels / columns + 1;
    const int gaps = (columns - 1) * scale(kColumnGap);
    return {columns * columnWidth(scale) + gaps + 2 * scale(kMargin),
            rows * scale(columns == 1 ? kShortestRow : kShortestRow + 2) + 2 * scale(kMargin)};
}

MixerBoxes layoutMixer(Size client, const Scale& scale) {
    const Box inside = Box{0, 0, client.width, client.height}.inner(scale(kMargin));
    const int columns = client.width >= smallestMixer(2, scale).width ? 2 : 1;
    const int perColumn = kMixerChannels / columns;
    const int rowHeight = std::min(inside.height() / (perColumn + 1), scale(kTallestRow));
    const int width = (inside.width() - (columns - 1) * scale(kColumnGap)) / columns;
    MixerBoxes boxes;
    for (int column = 0; column < columns; ++column) {
        const int left = inside.left + column * (width + scale(kColumnGap));
        const auto row = [&](int index) {
            const int top = inside.top + index * rowHeight;
            return layoutRow({left, top, left + width, top + rowHeight - 1}, scale);
        };
        boxes.headings.push_back(row(0));
        for (int i = 0; i < perColumn; ++i) {
            boxes.channels[static_cast<std::size_t>(column * perColumn + i)] = row(i + 1);
        }
    }
    return boxes;
}

bool isChangeable(MixerCell cell) {
    return cell != MixerCell::Light && cell != MixerCell::Name;
}

std::optional<MixerPlace> mixerPlaceAt(const MixerBoxes& boxes, int x, int y) {
    for (int channel = 0; channel < kMixerChannels; ++channel) {
        const MixerRow& row = boxes.channels[static_cast<std::size_t>(channel)];
        for (int i = 0; i < kMixerCells; ++i) {
            const auto cell = static_cast<MixerCell>(i);
            if (row[static_cast<std::size_t>(i)].contains(x, y) && isChangeable(cell)) {
                return MixerPlace{channel, cell};
            }
        }
    }
    return std::nullopt;
}

} // namespace desktop
