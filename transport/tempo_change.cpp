// Changing the tempo by a percentage.
#include "corvmo32.h"
#include "engine/guards.h"
#include "engine/players.h"
#include "engine/shared_field.h"
#include "sequencer/sequencer.h"

namespace {

constexpr float kStandstill = 100.0F; ///< percent at which no tempo would be left

} // namespace

void CORVMO_CALL mm_SetTempo(HMIDIOUT handle, std::uint32_t songTempo, float percent) {
    // Written so that "not a number" is refused too.
    if (!(percent < kStandstill)) {
        return;
    }
    MIDIOUT& player = selectPlayer(handle);
    const EngineLock lock;
    if (!waitUntilIdle()) {
        return;
    }
    storeShared<float>(&player.tempoPercent, percent);
    applyTempo(player, songTempo);
}
