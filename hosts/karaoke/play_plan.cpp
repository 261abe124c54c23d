// From the options of `karaoke play` to a plan for one song.
#include "karaoke/play_plan.h"

namespace karaoke {

host::PlayPlan planOf(const PlayOptions& options, std::uint32_t device) {
    host::PlayPlan plan;
    for (const DrumReplacement& drum : options.drums) {
        plan.drums.push_back(
            {static_cast<std::int8_t>(drum.from), static_cast<std::int8_t>(drum.to)});
    }
    plan.fadeIn = options.fadeIn;
    plan.fadeOut = options.fadeOut;
    plan.metronome = options.metronome;
    plan.metronomeDevice = device;
    return plan;
}

} // namespace karaoke
