// The options of `karaoke play`.
#pragma once

#include <CLI/CLI.hpp>

#include "karaoke/play_options.h"

namespace karaoke {

/// @param options  filled in when the command line is parsed; must live until then
void addPlayOptions(CLI::App& play, PlayOptions& options);

} // namespace karaoke
