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

/// A place in a song: a tick, or a bar counted from 1.
struct SongPlace {
    bool isBar = false;
    std::uint32_t number = 0;
};

/// A stretch of a song. An end of tick 0 is the song's end.
struct RangeWish {
    SongPlace start;
    SongPlace end;
    int passes; ///< 0 = until the listener ends it
};

/// A range that is played faster with every pass; percents as for the tempo.
struct PracticeWish {
    RangeWish range;
    float start;
    float step;
    float limit;
};

struct PlayOptions {
    std::vector<std::string> files;   ///< songs, and folders of them
    std::vector<std::string> devices; ///< numbers or parts of names; empty = the first output
    bool together = false;            ///< the two songs at once
    bool shuffle = false;
    bool repeat = false; ///< the list begins again at its end
    SongPlace from;
    std::vector<RangeWish> loops;
    std::optional<PracticeWish> practice;
    bool plain = false;    ///< a few rows instead of the whole screen
    bool remember = false; ///< a song is played with its settings of last time
    bool forget = false;   ///< those settings are forgotten
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
