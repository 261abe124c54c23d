// What a user can ask of `karaoke render`.
#pragma once

#include <optional>
#include <string>

#include "karaoke/play_options.h"

namespace karaoke {

enum class SoundFormat { Wav, Flac, Ogg };

struct RenderOptions {
    std::string file;
    PlayOptions play; ///< how the song is to sound; what belongs to an output is not read
    std::string output;
    std::optional<SoundFormat> format; ///< nothing = the output's name tells it
    int rate = 44100;                  ///< frames a second
    double gain = 0;                   ///< decibels
    double tail = 10; ///< seconds that the sound gets at most to die away after the song's end
};

} // namespace karaoke
