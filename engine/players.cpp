// Player selection, the exports that hand out the records.
#include "engine/players.h"

#include "corvmo32.h"
#include "engine/globals.h"

MIDIOUT& selectPlayer(HMIDIOUT handle) noexcept {
    return handle == MM1.hmo ? MM1 : MM2;
}

bool hasSong(const MIDIOUT& player) noexcept {
    return player.eventPlay != nullptr;
}

MIDIOUT* CORVMO_CALL mm_GetMM1(void) {
    return &MM1;
}

MIDIOUT* CORVMO_CALL mm_GetMM2(void) {
    return &MM2;
}

MIDIOUT* CORVMO_CALL mm_GetMM(HMIDIOUT player) {
    return &selectPlayer(player);
}
