// The commands of the program. Each answers the exit code and throws host::HostError for what stops it.
#pragma once

#include <string>

#include "karaoke/play_options.h"
#include "karaoke/read_options.h"
#include "karaoke/render_options.h"

namespace karaoke {

int runPlay(const PlayOptions& options);
int runRender(const RenderOptions& options);
int runLyrics(const LyricsOptions& options);
int runInfo(const InfoOptions& options);
int runEvents(const ReadOptions& options);
int runDevices();
/// @param file  what play --midi-log has written
int runCheckLog(const std::string& file);

} // namespace karaoke
