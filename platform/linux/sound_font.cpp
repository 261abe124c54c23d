// The sound font that the host has chosen for the software synthesizer, or the system's.
#include "platform/linux/sound_font.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <string>

#include "corvmo32_linux.h"
#include "platform/linux/synthesizer.h"

namespace {

constexpr std::array kSystemFonts = {
    "/usr/share/sounds/sf2/TimGM6mb.sf2",
    "/usr/share/sounds/sf2/default-GM.sf2",
    "/usr/share/sounds/sf3/default-GM.sf3",
    "/usr/share/soundfonts/default.sf2",
};

struct Chosen {
    std::mutex mutex;
    std::string path; // empty = the system's General MIDI font
};

Chosen& chosen() {
    static Chosen& instance = *new Chosen;
    return instance;
}

std::string chosenPath() {
    const std::lock_guard guard(chosen().mutex);
    return chosen().path;
}

} // namespace

bool loadChosenFont(Synthesizer& synthesizer) {
    const std::string path = chosenPath();
    if (!path.empty()) {
        return synthesizer.loadFont(path);
    }
    return std::any_of(kSystemFonts.begin(), kSystemFonts.end(), [&](const char* font) {
        return ::access(font, R_OK) == 0 && synthesizer.loadFont(font);
    });
}

void corvmo_SetSoundFont(const char* path) {
    const std::lock_guard guard(chosen().mutex);
    chosen().path = path == nullptr ? "" : path;
}
