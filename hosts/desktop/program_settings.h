// What the program remembers between its runs, beside what it remembers of each song.
#pragma once

#include <filesystem>

#include "desktop/boxes.h"
#include "desktop/main_layout.h"
#include "desktop/outputs.h"

namespace desktop {

struct ProgramSettings {
    OutputChoice outputs;
    bool playList = true;
    bool mixer = false;
    Box place; ///< of the main window on the screen; empty = wherever there is room
    bool operator==(const ProgramSettings&) const = default;
};

/// Beside the settings of the songs; empty when the system names no place.
std::filesystem::path programSettingsFile();

/// What cannot be read is as it was at first.
ProgramSettings readProgramSettings(const std::filesystem::path& file);
void writeProgramSettings(const std::filesystem::path& file, const ProgramSettings& settings);

} // namespace desktop
