// The mixer's rows and columns.
#include "desktop/mixer_layout.h"

namespace desktop {

namespace {

constexpr int kMargin = 4;
constexpr int kColumnGap = 8;
constexpr int kCellGap = 3;
constexpr int kShortestRow = 16;
constexpr int kTallestRow = 26;
/// At least. The levels take some of what is left, the name the rest.
constexpr std::array<int, kMixerCells> kWidths = {12, 156, 40, 40, 40, 40, 18, 18};
constexpr int kMostForLevel = 80;
constexpr int kLevelShare = 6; ///< a level takes one part in so many
constexpr auto kNameIndex = static_cast<std::size_t>(MixerCell::Name);

int columnWidth(const Scale& scale) {
    int width = 0;
    for (const int cell : kWidths) {
        width += scale(cell);
    }
    return width + (kMixerCells - 1) * scale(kCellGap);
}

bool isLevelIndex(std::size_t index) {
    return index > kNameIndex && index < static_cast<std::size_t>(MixerCell::Mute);
}

MixerRow layoutRow(const Box& row, const Scale& scale) {
    constexpr int kLevels = 4;
    const int spare = row.width() - columnWidth(scale);
    const int forLevel = std::clamp(spare / kLevelShare, 0, scale(kMostForLevel));
    MixerRow cells;
    int x = row.left;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        int width = scale(kWidths[i]);
        if (i == kNameIndex) {
            width += spare - kLevels * forLevel;
        } else if (isLevelIndex(i)) {
            width += forLevel;
        }
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
