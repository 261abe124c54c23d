// Facts about a song that its events tell.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shared/raw_song.h"

namespace host {

/// What a song plays on one channel.
struct ChannelUse {
    int channel; ///< 0 to 15
    std::size_t notes;
    std::vector<int> programs; ///< 0 to 127, each once, in the order of their first use
};

/// The channels on which notes are played, lowest first.
std::vector<ChannelUse> channelsInUse(const std::vector<MMEVENT>& events);

/// "C major", "F sharp minor". A value out of range gives an empty text.
/// @param keySignature  sf << 8 | mi, as MMINFO has it
std::string keyName(std::int32_t keySignature);

/// Beats (quarter notes) a minute.
double beatsPerMinute(std::uint32_t tempo);

} // namespace host
