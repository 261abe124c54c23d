// The options of the commands that make files: `karaoke lyrics` and `karaoke render`.
#pragma once

#include <CLI/CLI.hpp>

#include "karaoke/read_options.h"
#include "karaoke/render_options.h"

namespace karaoke {

/// Form, tempo, offset and output of the words.
/// @param options  filled in when the command line is parsed; must live until then
void addLyricsOptions(CLI::App& lyrics, LyricsOptions& options);

/// The song, its sound and the file that is made of it.
/// @param options  as above
void addRenderOptions(CLI::App& render, RenderOptions& options);

/// The format that was asked for, or that the output's name tells.
/// @throws UsageError  when neither does
void chooseFormat(RenderOptions& options);

} // namespace karaoke
