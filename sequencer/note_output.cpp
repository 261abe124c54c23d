// Notes: drum replacement, transposition, velocity, fades and mute.
#include <algorithm>

#include "engine/midi.h"
#include "engine/notifications.h"
#include "engine/output.h"
#include "sequencer/sequencer.h"

namespace {

constexpr std::int32_t kFullLevel = 102400; ///< fade level of full loudness
constexpr std::int8_t kUnusedPair = -1;

int moved(int note, int semitones) noexcept {
    return semitones == 0 ? note : std::clamp(note + semitones, 0, midi::kMaxData);
}

int replacedDrum(const MIDIOUT& player, int note) noexcept {
    for (const MMNOTEPAIR& pair : player.replaceNotes) {
        if (pair.from != kUnusedPair && pair.from == note) {
            return midi::dataByte(pair.to);
        }
    }
    return note;
}

std::uint8_t noteFor(const MIDIOUT& player, int channel, std::uint8_t outputChannel,
                     std::uint8_t note) noexcept {
    const bool drums = outputChannel == midi::kDrumChannel;
    int result = drums ? replacedDrum(player, note) : note;
    if (loadShared<std::int16_t>(&player.noTranspose[outputChannel]) == 0) {
        if (!drums) {
            result = moved(result, player.transpose);
            result = moved(result, g_masterTranspose);
        }
        result = moved(result, player.keyShift[channel]);
    }
    return static_cast<std::uint8_t>(result);
}

int scaledByPercent(int velocity, int percent) noexcept {
    return percent == 0 ? velocity
                        : std::clamp(velocity + percent * velocity / 100, 0, midi::kMaxData);
}

int scaledByLevel(int velocity, std::int32_t level) noexcept {
    const std::int64_t scaled = std::int64_t{level} * velocity / kFullLevel;
    return static_cast<int>(std::min<std::int64_t>(scaled, midi::kMaxData));
}

/// A running fade-in hides a fade-out.
std::uint8_t velocityFor(const MIDIOUT& player, int channel, std::uint8_t velocity) noexcept {
    int result = scaledByPercent(velocity, loadShared<std::int16_t>(&player.velocity[channel]));
    if (player.fadeIn.active != 0) {
        result = scaledByLevel(result, player.fadeIn.level);
    } else if (player.fadeOut.active != 0) {
        result = scaledByLevel(result, player.fadeOut.level);
    }
    return static_cast<std::uint8_t>(result);
}

} // namespace

void playNote(const MIDIOUT& player, const MMEVENT& event) noexcept {
    const int channel = event.kind & midi::kChannelMask;
    const std::uint8_t kind = event.kind & midi::kKindMask;
    const Route route = routeOf(player, channel);
    const std::uint8_t velocity = velocityFor(player, channel, event.byte2);
    if (player.mute[channel] == 0) {
        sendOn(route, kind, noteFor(player, channel, route.channel, event.byte1), velocity);
    }
    if (wants(player, MMOPT_NOTES)) {
        const bool ends = kind == midi::kNoteOff || velocity == 0;
        post(ends ? MMN_NOTEOFF : MMN_NOTEON, static_cast<WPARAM>(channel), 0);
    }
}
