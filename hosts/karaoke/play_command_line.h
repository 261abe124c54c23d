// The options of `karaoke play`.
#pragma once

#include <CLI/CLI.hpp>

#include "karaoke/play_options.h"

namespace karaoke {

/// @param options  filled in when the command line is parsed; must live until then
void addPlayOptions(CLI::App& play, PlayOptions& options);

/// Those of them that change the sound and need no output of the machine: fades, metronome, drums, reset
/// message and sound font.
/// @param options  as above
void addSoundOptions(CLI::App& command, PlayOptions& options);

} // namespace karaoke
