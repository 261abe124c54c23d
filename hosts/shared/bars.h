// From song ticks to bars and beats, as the song's time signatures count them.
#pragma once

#include <cstdint>
#include <vector>

#include "corvmo32.h"

namespace host {

/// Bar and beat, both counted from 1.
struct BarPosition {
    std::uint32_t bar;
    std::uint32_t beat;
    bool operator==(const BarPosition&) const = default;
};

/// A time signature and where it begins.
struct TimeSignature {
    std::uint32_t tick;
    int beatsPerBar;
    int beatUnit; ///< note value of a beat: 4 = quarter note
};

/// The bars of a song. A time signature begins a bar; without one the song is in 4/4.
class BarGrid {
public:
    /// @param events    event list in time order
    /// @param division  ticks per quarter note, above 0
    BarGrid(const std::vector<MMEVENT>& events, int division);

    BarPosition at(std::uint32_t tick) const;

    /// First tick of a bar; bars beyond the song go on as its last ones. 0 counts as 1.
    std::uint32_t tickOf(std::uint32_t bar) const;

    /// The signature in force at a tick.
    TimeSignature signatureAt(std::uint32_t tick) const {
        return sectionAt(tick).signature;
    }
    /// Ticks of a beat there.
    std::uint32_t beatTicksAt(std::uint32_t tick) const {
        return sectionAt(tick).beatTicks;
    }

    /// In time order, the one at tick 0 first.
    std::vector<TimeSignature> signatures() const;

private:
    struct Section {
        TimeSignature signature;
        std::uint32_t firstBar;
        std::uint32_t beatTicks;
    };

    void begin(const TimeSignature& signature, int division);
    const Section& sectionAt(std::uint32_t tick) const;
    static std::uint32_t barsWithin(const Section& section, std::uint32_t tick);

    std::vector<Section> m_sections;
};

} // namespace host
