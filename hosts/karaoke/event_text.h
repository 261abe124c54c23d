// Events of a song in words.
#pragma once

#include <string>

#include "shared/raw_song.h"

namespace karaoke {

/// What an event is, and the values that it carries.
struct EventText {
    std::string kind;
    std::string value;
};

/// @param song  the song that the event belongs to
EventText describeEvent(const MMEVENT& event, const host::RawSong& song);

/// Whether an event belongs to one channel, channelOf(event).
bool hasChannel(const MMEVENT& event);

} // namespace karaoke
