// Facts about a song that its events tell.
#include "shared/song_facts.h"

#include <algorithm>
#include <array>

#include "shared/song_events.h"

namespace host {

namespace {

constexpr double kMicrosecondsPerMinute = 60e6;
constexpr int kMostSharps = 7;
constexpr std::size_t kMinorOffset = 3; ///< a minor key's tonic lies three fifths above its major's

/// Tonics by number of sharps, from seven flats on.
constexpr std::array kTonics = {"C flat", "G flat",  "D flat",  "A flat",  "E flat",  "B flat",
                                "F",      "C",       "G",       "D",       "A",       "E",
                                "B",      "F sharp", "C sharp", "G sharp", "D sharp", "A sharp"};

} // namespace

std::vector<ChannelUse> channelsInUse(const std::vector<MMEVENT>& events) {
    std::vector<ChannelUse> uses;
    uses.reserve(kChannels);
    for (int channel = 0; channel < kChannels; ++channel) {
        uses.push_back({channel, 0, {}});
    }
    for (const MMEVENT& event : events) {
        ChannelUse& use = uses[static_cast<std::size_t>(channelOf(event))];
        if (isNoteStart(event)) {
            ++use.notes;
        } else if (isChannelMessage(event, ChannelMessage::ProgramChange) &&
                   std::find(use.programs.begin(), use.programs.end(), event.byte1) ==
                       use.programs.end()) {
            use.programs.push_back(event.byte1);
        }
    }
    std::erase_if(uses, [](const ChannelUse& use) { return use.notes == 0; });
    return uses;
}

std::string keyName(std::int32_t keySignature) {
    const int sharps = keySignature >> 8;
    const int minor = keySignature & 0xFF;
    if (sharps < -kMostSharps || sharps > kMostSharps || minor > 1) {
        return {};
    }
    const std::size_t tonic =
        static_cast<std::size_t>(sharps + kMostSharps) + (minor == 1 ? kMinorOffset : 0);
    return std::string(kTonics[tonic]) + (minor == 1 ? " minor" : " major");
}

double beatsPerMinute(std::uint32_t tempo) {
    return tempo == 0 ? 0 : kMicrosecondsPerMinute / tempo;
}

} // namespace host
