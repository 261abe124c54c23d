// Starting, stopping, pausing and closing a player.
#include "corvmo32.h"
#include "engine/guards.h"
#include "engine/output.h"
#include "engine/players.h"
#include "sequencer/sequencer.h"
#include "song/song.h"
#include "transport/transport.h"

namespace {

void start(MIDIOUT& player) noexcept {
    const EngineLock lock;
    if (!waitUntilIdle() || !hasSong(player)) {
        return;
    }
    if (player.curLoop == nullptr) {
        setWholeSong(player);
    }
    storeClockStep(player);
    player.tickRemainder = 0;
    setPlaying(player, true);
}

} // namespace

void CORVMO_CALL mm_StartSync(HMIDIOUT player) {
    start(selectPlayer(player));
}

void CORVMO_CALL mm_ReStartSync(HMIDIOUT player) {
    start(selectPlayer(player));
}

void CORVMO_CALL mm_StopSync(HMIDIOUT handle) {
    MIDIOUT& player = selectPlayer(handle);
    const EngineLock lock;
    const BusyClaim claim;
    if (!claim) {
        return;
    }
    setPlaying(player, false);
    silenceAllChannels(player);
}

void CORVMO_CALL mm_PauseSync(HMIDIOUT handle) {
    MIDIOUT& player = selectPlayer(handle);
    const EngineLock lock;
    if (!waitUntilIdle()) {
        return;
    }
    setPlaying(player, false);
    silenceAllChannels(player);
}

void CORVMO_CALL mm_Close(HMIDIOUT player) {
    unloadSong(selectPlayer(player));
}
