// From song ticks to seconds: the song's tempo events, changed by the listener's percentage as the engine
// changes them.
#pragma once

#include <cstdint>
#include <vector>

#include "corvmo32.h"

namespace host {

/// Seconds of every tick of a song that is played from its beginning without jumps.
class Timeline {
public:
    /// @param events        event list in time order
    /// @param division      ticks per quarter note, above 0
    /// @param tempoPercent  as mm_SetTempo takes it: positive = faster, below 100
    Timeline(const std::vector<MMEVENT>& events, int division, float tempoPercent = 0);

    /// The same song with another percentage.
    Timeline withPercent(float tempoPercent) const;

    /// @return seconds from tick 0
    double secondsAt(std::uint32_t tick) const;

    /// @param seconds  from tick 0; below 0 counts as 0
    /// @return the tick that is reached then
    std::uint32_t tickAt(double seconds) const;

    /// @return microseconds per quarter note in force at a tick, the percentage applied
    std::uint32_t tempoAt(std::uint32_t tick) const;

    /// @return the same as the song has it, without the percentage
    std::uint32_t songTempoAt(std::uint32_t tick) const;

private:
    /// A tempo event.
    struct SongTempo {
        std::uint32_t tick;
        std::uint32_t tempo;
    };

    /// From its tick on one tempo holds.
    struct Step {
        std::uint32_t tick;
        std::uint32_t tempo;
        double seconds;
    };

    void applyPercent(float percent);
    const Step& stepAt(std::uint32_t tick) const;
    double secondsAfter(const Step& step, std::uint32_t tick) const;

    int m_division;
    std::vector<SongTempo> m_songTempos;
    std::vector<Step> m_steps;
};

} // namespace host
