// The fades as the tick steps them along their curves.
#include "engine/globals.h"
#include "sequencer/sequencer.h"

namespace {

constexpr int kSegments = 5;
constexpr std::int32_t kFadeInOver = 100; ///< level that a finished fade-in is left with

/// Level of the curve at the fade's time, in wrapping 32-bit arithmetic, not below 0.
std::int32_t levelAt(const MMFADE& fade) noexcept {
    int segment = 0;
    while (fade.time > fade.segmentEnd[segment]) {
        ++segment;
    }
    const auto slope = static_cast<std::uint32_t>(fade.slope[segment]);
    const auto base = static_cast<std::uint32_t>(fade.base[segment]);
    const auto level = static_cast<std::int32_t>(slope * fade.time + base);
    return level < 0 ? 0 : level;
}

/// False once the fade is past its end.
bool step(MMFADE& fade) noexcept {
    fade.time += static_cast<std::uint32_t>(g_timerPeriod);
    if (fade.time > fade.segmentEnd[kSegments - 1]) {
        return false;
    }
    fade.level = levelAt(fade);
    return true;
}

} // namespace

void stepFades(MIDIOUT& player) noexcept {
    // A finished fade-out stays, and keeps the player silent.
    if (player.fadeOut.active == 1 && !step(player.fadeOut)) {
        player.fadeOut.level = 0;
    }
    if (player.fadeIn.active == 1 && !step(player.fadeIn)) {
        player.fadeIn.active = 0;
        player.fadeIn.level = kFadeInOver;
    }
}
