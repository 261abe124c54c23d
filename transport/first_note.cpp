// The walk to the first note: sends a song's set-up with pauses for slow devices and puts the position on its
// first note. Runs on the host's thread while the player is halted, without guards.
#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/midi.h"
#include "engine/output.h"
#include "engine/players.h"
#include "sequencer/sequencer.h"

namespace {

constexpr int kBeforeFirstNote = 1; ///< origin of the tempo notifications

void pauseSince(std::uint32_t start, std::uint32_t milliseconds) noexcept {
    while (timeGetTime() - start < milliseconds) {
        Sleep(0);
    }
}

void pauseFor(std::uint32_t milliseconds) noexcept {
    if (milliseconds != 0) {
        pauseSince(timeGetTime(), milliseconds);
    }
}

/// Handles the events before the first note, one after the other.
class FirstNoteWalk {
public:
    explicit FirstNoteWalk(MIDIOUT& player) noexcept : player_(player) {}

    /// False when the song has no note.
    bool run() noexcept {
        for (std::int32_t i = 0; i < player_.eventCount; ++i) {
            const MMEVENT& event = player_.events[i];
            const int kind = event.kind & midi::kKindMask;
            if (kind == midi::kNoteOff || kind == midi::kNoteOn) {
                standOn(i);
                return true;
            }
            handle(event);
        }
        return false;
    }

private:
    void handle(const MMEVENT& event) noexcept;
    void sendChannelMessage(const MMEVENT& event) noexcept;
    void sendSystemExclusive(const MMEVENT& event) noexcept;
    void sendReset(const MMSYSEX& slot, const MMEVENT& event) noexcept;
    void sendInitTextOnce() noexcept;
    void standOn(std::int32_t index) noexcept;

    MIDIOUT& player_;
    bool initTextSent_ = false;
};

void FirstNoteWalk::handle(const MMEVENT& event) noexcept {
    if (event.kind == midi::kTempo) {
        applyTempo(player_, tempoOf(event));
        postTempo(player_, kBeforeFirstNote);
    } else if (event.kind == midi::kTimeSignature) {
        takeTimeSignature(player_, event);
    } else if (event.kind == midi::kSystemExclusive) {
        sendSystemExclusive(event);
    } else if (event.kind < midi::kSystemExclusive) {
        sendChannelMessage(event);
    }
}

void FirstNoteWalk::sendChannelMessage(const MMEVENT& event) noexcept {
    sendInitTextOnce();
    switch (event.kind & midi::kKindMask) {
    case midi::kController:
        takeController(player_, event);
        break;
    case midi::kProgramChange:
        sendProgramChange(player_, event.kind & midi::kChannelMask, event.byte1);
        break;
    default:
        sendUnchanged(player_, event);
        break;
    }
    pauseFor(g_eventGap);
}

void FirstNoteWalk::sendSystemExclusive(const MMEVENT& event) noexcept {
    const MMSYSEX* const slot = storedMessage(player_, event);
    if (slot == nullptr || (slot->isReset != 0 && resetsSuppressed()) || slot->isKaraokeText != 0) {
        return;
    }
    if (slot->isReset != 0) {
        sendReset(*slot, event);
        return;
    }
    sendStoredMessage(player_, *slot, event);
    pauseFor(g_eventGap);
}

/// Of several resets only the song's last one is sent.
void FirstNoteWalk::sendReset(const MMSYSEX& slot, const MMEVENT& event) noexcept {
    --player_.resetCount;
    if (player_.resetCount > 0) {
        return;
    }
    sendStoredMessage(player_, slot, event);
    g_resetTime = timeGetTime();
    pauseSince(g_resetTime, static_cast<std::uint32_t>(g_resetGap));
}

void FirstNoteWalk::sendInitTextOnce() noexcept {
    if (g_sendInitText == 1 && !initTextSent_) {
        SendInitSysEx(player_);
        initTextSent_ = true;
    }
}

void FirstNoteWalk::standOn(std::int32_t index) noexcept {
    player_.eventPlay = player_.events + index;
    player_.eventIndex = index;
    setPosition(player_, player_.eventPlay->time);
    player_.click.nextClick = player_.eventPlay->time;
    sendInitTextOnce();
    pauseFor(g_firstNoteDelay);
}

} // namespace

std::int16_t CORVMO_CALL mm_PlayFirstNote(HMIDIOUT handle) {
    MIDIOUT& player = selectPlayer(handle);
    if (!engineRunning() || !hasSong(player)) {
        return 0;
    }
    return FirstNoteWalk(player).run() ? 1 : 0;
}
