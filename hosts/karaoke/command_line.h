// The program's command line.
#pragma once

#include <string>
#include <variant>

#include "karaoke/play_options.h"
#include "karaoke/read_options.h"
#include "karaoke/render_options.h"

namespace karaoke {

struct EventsCommand {
    ReadOptions options;
};
struct DevicesCommand {};
struct CheckLogCommand {
    std::string file;
};
/// Help or version was printed.
struct NoCommand {};

using Command = std::variant<NoCommand, PlayOptions, RenderOptions, LyricsOptions, InfoOptions,
                             EventsCommand, DevicesCommand, CheckLogCommand>;

/// @throws UsageError  what is wrong, in one line
Command parseCommandLine(int argumentCount, char** arguments);

} // namespace karaoke
