// What a song's ticks are worth: divisions that the engine does not know, turned into ones that it does.
#pragma once

#include <cstdint>

#include "prepare/notes.h"

namespace host {

/// How the ticks of a file become those of the prepared song.
struct TimeBase {
    std::uint16_t division = 0;    ///< of the prepared song, 1 to 960 ticks per quarter note
    std::uint16_t oldDivision = 0; ///< ticks are scaled by division / oldDivision
    std::uint32_t fixedTempo =
        0; ///< microseconds per quarter note of the whole song; 0 = its own tempos

    bool scales() const {
        return division != oldDivision;
    }
    /// To the nearest tick; the latest there can be for what lies beyond 32 bits.
    std::uint32_t scaled(std::uint64_t tick) const;
};

/// @param division  the header's field
TimeBase timeBaseOf(std::uint16_t division, Notes& notes);

} // namespace host
