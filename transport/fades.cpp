// Installing a fade-in or fade-out; the tick steps it.
#include <cstdint>

#include "corvmo32.h"
#include "engine/guards.h"
#include "engine/players.h"

namespace {

constexpr std::int32_t kFadeInStart = 0;
constexpr std::int32_t kFadeOutStart = 100; ///< replaced before the first note, as the other one is

void install(MIDIOUT& player, MMFADE MIDIOUT::*block, const MMFADE* fade,
             std::int32_t level) noexcept {
    if (fade == nullptr) {
        return;
    }
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    MMFADE& installed = player.*block;
    installed = *fade;
    installed.active = 1;
    installed.level = level;
    installed.time = 0;
}

} // namespace

void CORVMO_CALL mm_SetFadeIn(HMIDIOUT player, const MMFADE* fade) {
    install(selectPlayer(player), &MIDIOUT::fadeIn, fade, kFadeInStart);
}

void CORVMO_CALL mm_SetFadeOut(HMIDIOUT player, const MMFADE* fade) {
    install(selectPlayer(player), &MIDIOUT::fadeOut, fade, kFadeOutStart);
}
