// Where the cells of the mixer lie: a row for each channel, in one column or two.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "desktop/boxes.h"

namespace desktop {

constexpr int kMixerChannels = 16;

/// The cells of a row, from left to right.
enum class MixerCell { Light, Name, Volume, Pan, Reverb, Chorus, Mute, Solo };
constexpr int kMixerCells = 8;

using MixerRow = std::array<Box, kMixerCells>;

struct MixerBoxes {
    std::vector<MixerRow> headings; ///< one for each column
    std::array<MixerRow, kMixerChannels> channels;
};

/// A cell that a point lies in, or the one that has the keyboard.
struct MixerPlace {
    int channel = 0;
    MixerCell cell = MixerCell::Volume;
    bool operator==(const MixerPlace&) const = default;
};

/// @param columns  1 or 2
Size smallestMixer(int columns, const Scale& scale);

MixerBoxes layoutMixer(Size client, const Scale& scale);

/// The cell under a point that can be changed; nothing = there is none.
std::optional<MixerPlace> mixerPlaceAt(const MixerBoxes& boxes, int x, int y);

/// Whether a listener can change what a cell shows.
bool isChangeable(MixerCell cell);

} // namespace desktop
