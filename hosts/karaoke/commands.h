// The commands of the program. Each answers the exit code and throws host::HostError for what stops it.
#pragma once

#include "karaoke/play_options.h"

namespace karaoke {

int runPlay(const PlayOptions& options);
int runLyrics(const ReadOptions& options);
int runInfo(const ReadOptions& options);
int runDevices();

} // namespace karaoke
