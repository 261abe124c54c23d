// The walk to the first note: sends a song's set-up with pauses for slow devices and puts the position on its
// first note. Runs on the host's thread while the player is halted, without guards.
#include "corvmo32.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/midi.h"
#include "engine/output.h"
#include "engine/players.h"
#include "engine/shared_field.h"
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
    explicit FirstNoteWalk(MIDIOUT& player) noexcept : m_player(player) {}

    /// False when the song has no note.
    bool run() noexcept {
        for (std::int32_t i = 0; i < m_player.eventCount; ++i) {
            const MMEVENT& event = m_player.events[i];
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

    MIDIOUT& m_player;
    bool m_initTextSent = false;
};

void FirstNoteWalk::handle(const MMEVENT& event) noexcept {
    if (event.kind == midi::kTempo) {
        applyTempo(m_player, tempoOf(event));
        postTempo(m_player, kBeforeFirstNote);
    } else if (event.kind == midi::kTimeSignature) {
        takeTimeSignature(m_player, event);
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
        takeController(m_player, event);
        break;
    case midi::kProgramChange:
        sendProgramChange(m_player, event.kind & midi::kChannelMask, event.byte1);
        break;
    default:
        sendUnchanged(m_player, event);
        break;
    }
    pauseFor(g_eventGap);
}

void FirstNoteWalk::sendSystemExclusive(const MMEVENT& event) noexcept {
    const MMSYSEX* const slot = storedMessage(m_player, event);
    if (slot == nullptr || (slot->isReset != 0 && resetsSuppressed()) || slot->isKaraokeText != 0) {
        return;
    }
    if (slot->isReset != 0) {
        sendReset(*slot, event);
        return;
    }
    sendStoredMessage(m_player, *slot, event);
    pauseFor(g_eventGap);
}

/// Of several resets only the song's last one is sent.
void FirstNoteWalk::sendReset(const MMSYSEX& slot, const MMEVENT& event) noexcept {
    --m_player.resetCount;
    if (m_player.resetCount > 0) {
        return;
    }
    sendStoredMessage(m_player, slot, event);
    const std::uint32_t sentAt = timeGetTime();
    storeShared<std::uint32_t>(&g_resetTime, sentAt);
    pauseSince(sentAt, static_cast<std::uint32_t>(g_resetGap));
}

void FirstNoteWalk::sendInitTextOnce() noexcept {
    if (g_sendInitText == 1 && !m_initTextSent) {
        SendInitSysEx(m_player);
        m_initTextSent = true;
    }
}

void FirstNoteWalk::standOn(std::int32_t index) noexcept {
    m_player.eventPlay = m_player.events + index;
    m_player.eventIndex = index;
    setPosition(m_player, m_player.eventPlay->time);
    m_player.click.nextClick = m_player.eventPlay->time;
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
