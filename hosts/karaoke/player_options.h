// The options of `karaoke play` that say what is played in which order, and how it is shown.
#pragma once

#include <CLI/CLI.hpp>

#include "karaoke/play_options.h"

namespace karaoke {

/// --loop, --from, --practice, --shuffle, --repeat, --together, --plain, --offset, --remember, --forget
/// @param options  filled in when the command line is parsed; must live until then
void addPlayerOptions(CLI::App& play, PlayOptions& options);

/// --loop, --from
/// @param options  as above
void addRangeOptions(CLI::App& command, PlayOptions& options);

/// What no single option can tell.
/// @throws UsageError  options that do not go together
void checkPlayOptions(const PlayOptions& options);

} // namespace karaoke
