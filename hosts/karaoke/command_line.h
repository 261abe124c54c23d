// The program's command line.
#pragma once

#include <variant>

#include "karaoke/play_options.h"

namespace karaoke {

struct LyricsCommand {
    ReadOptions options;
};
struct InfoCommand {
    ReadOptions options;
};
struct DevicesCommand {};
/// Help or version was printed.
struct NoCommand {};

using Command = std::variant<NoCommand, PlayOptions, LyricsCommand, InfoCommand, DevicesCommand>;

/// @throws UsageError  what is wrong, in one line
Command parseCommandLine(int argumentCount, char** arguments);

} // namespace karaoke
