// What a user can ask of `karaoke play`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corvmo32.h"
#include "shared/song_settings.h"

namespace karaoke {

/// A change of one channel's volume. Channels are 0 to 15 everywhere inside the program.
struct VolumeOffset {
    int channel;
    int offset; ///< -127 to 127
};

/// Another instrument for one channel.
struct PatchChoice {
    int channel;
    int program; ///< 0 to 127
    int bankMsb;
    int bankLsb;
};

/// Another drum for one drum.
struct DrumReplacement {
    int from;
    int to;
};

struct PlayOptions {
    std::vector<std::string> files;
    std::string device = "0"; ///< number or part of the name
    host::SongSettings settings;
    std::vector<DrumReplacement> drums;
    double fadeIn = 0;  ///< seconds; 0 = none
    double fadeOut = 0; ///< seconds; 0 = none
    bool metronome = false;
    std::optional<std::uint16_t> reset = MMMODE_GM; ///< nothing = no reset before a song
    std::string logFile;
    std::string audioDriver;
    std::string soundFont;
    int period = 5;   ///< milliseconds
    int eventGap = 0; ///< milliseconds
    bool fast = false;
};

} // namespace karaoke
