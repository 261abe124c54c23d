// The metronome click.
#include <algorithm>

#include "engine/globals.h"
#include "engine/midi.h"
#include "engine/output.h"
#include "sequencer/sequencer.h"

namespace {

constexpr int kQuarterNote = 4; ///< note value of a beat that lasts division ticks

/// Ticks of a beat, 0 when there is none to count.
std::int32_t beatTicks(const MIDIOUT& player) noexcept {
    if (player.beatUnit >= kQuarterNote) {
        return player.division / (player.beatUnit / kQuarterNote);
    }
    return player.beatUnit > 0 ? player.division * kQuarterNote / player.beatUnit : 0;
}

/// Beats are counted from the last time signature.
bool isAccent(const MIDIOUT& player, std::int32_t beat) noexcept {
    if (player.beatsPerBar == 0) {
        return false;
    }
    const auto since = static_cast<std::int32_t>(player.click.nextClick - player.click.timeSigTick);
    return since / beat % player.beatsPerBar == 0;
}

std::uint8_t lowByte(std::uint16_t value) noexcept {
    return midi::dataByte(value & 0xFF);
}

void sendClick(const MMCLICK& click, bool accent) noexcept {
    const int channel = click.clickChannel & 0xFF;
    if (click.clickDevice < 0 || click.clickDevice >= kMaxDevices || !midi::isChannel(channel)) {
        return;
    }
    const Route route{g_devices[click.clickDevice], static_cast<std::uint8_t>(channel)};
    const std::uint16_t note = accent ? click.clickAccentNote : click.clickNote;
    const std::uint16_t other = accent ? click.clickNote : click.clickAccentNote;
    const std::uint16_t velocity = accent ? click.clickAccentVelocity : click.clickVelocity;
    sendOn(route, midi::kNoteOff, lowByte(other), 0);
    sendOn(route, midi::kNoteOn, lowByte(note), lowByte(velocity));
}

} // namespace

void strikeClick(MIDIOUT& player) noexcept {
    MMCLICK& click = player.click;
    if (click.clickOn != 1 || player.ticks <= click.nextClick) {
        return;
    }
    const std::int32_t beat = beatTicks(player);
    if (beat == 0) {
        return;
    }
    sendClick(click, isAccent(player, beat));
    const auto length = static_cast<std::uint32_t>(beat);
    click.nextClick = (player.ticks / length + 1) * length;
}
