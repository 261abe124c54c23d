// Event output: turns one event of the list into what the devices receive.
#include "engine/globals.h"
#include "engine/midi.h"
#include "engine/output.h"
#include "sequencer/sequencer.h"

void takeTimeSignature(MIDIOUT& player, const MMEVENT& event) noexcept {
    player.beatsPerBar = event.byte1;
    player.beatUnit = event.byte2;
    player.click.timeSigTick = event.time;
}

const MMSYSEX* storedMessage(const MIDIOUT& player, const MMEVENT& event) noexcept {
    const int slot = event.byte1 << 8 | event.byte2;
    return player.sysex != nullptr && slot < player.sysexCount ? &player.sysex[slot] : nullptr;
}

void sendStoredMessage(MIDIOUT& player, const MMSYSEX& slot, const MMEVENT& event) noexcept {
    if (slot.ownBlock == 1) {
        sendLongMessage(player, slot.message.block.ptr, slot.message.block.length);
    } else {
        sendLongMessage(player, slot.message.data, event.byte3);
    }
}

bool resetsSuppressed() noexcept {
    return g_noResetArg.load(std::memory_order_relaxed) != 0 && g_noResetFlag != 0;
}

namespace {

void playSystemExclusive(MIDIOUT& player, const MMEVENT& event) noexcept {
    const MMSYSEX* const slot = storedMessage(player, event);
    if (slot != nullptr && !(slot->isReset != 0 && resetsSuppressed())) {
        sendStoredMessage(player, *slot, event);
    }
}

void playTempo(MIDIOUT& player, const MMEVENT& event) noexcept {
    applyTempo(player, tempoOf(event));
    postTempo(player, 0);
}

} // namespace

void playEvent(MIDIOUT& player, const MMEVENT& event) noexcept {
    switch (event.kind) {
    case midi::kTempo:
        playTempo(player, event);
        return;
    case midi::kTimeSignature:
        takeTimeSignature(player, event);
        return;
    case midi::kSystemExclusive:
        playSystemExclusive(player, event);
        return;
    default:
        break;
    }
    switch (event.kind & midi::kKindMask) {
    case midi::kNoteOff:
    case midi::kNoteOn:
        playNote(player, event);
        return;
    case midi::kController:
        takeController(player, event);
        return;
    case midi::kProgramChange:
        sendProgramChange(player, event.kind & midi::kChannelMask, event.byte1);
        return;
    case midi::kPolyPressure:
    case midi::kChannelPressure:
    case midi::kPitchBend:
        sendUnchanged(player, event);
        return;
    default:
        // System common and real-time messages of a song are not sent.
        return;
    }
}
