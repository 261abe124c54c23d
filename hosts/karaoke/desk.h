// What a view shows beside the song: where it stands in the list, and what the listener's keys have chosen.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "shared/song_controls.h"

namespace karaoke {

struct Desk {
    explicit Desk(host::SongControls& theControls) : controls(theControls) {}

    host::SongControls& controls;
    std::string companion;                  ///< title of the song that plays along; empty = none
    std::size_t place = 0;                  ///< of the song in the list, from 0
    std::size_t songs = 1;                  ///< in the list
    std::int32_t keySignature = 0;          ///< of the song, as MMINFO has it
    std::bitset<host::kChannels> used;      ///< channels on which the song plays notes
    int channel = 0;                        ///< the one that keys change
    bool begun = false;                     ///< the song was started
    bool help = false;                      ///< the page of all keys is shown
    std::optional<std::uint32_t> loopStart; ///< set, while the loop's end is not
    std::string notice;                     ///< one line for the listener; empty = none
    std::uint64_t noticeEnd = 0;            ///< corvmo_GetClock() at which it has been seen
};

} // namespace karaoke
