// Giving a song back: frees its memory, clears the player's record and silences what it used.
#include <cstddef>
#include <cstdlib>

#include "engine/global_block.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/output.h"
#include "engine/players.h"
#include "engine/shared_field.h"
#include "song/song.h"

namespace {

/// Silence in the order in which a device needs it: pedals, controllers, notes, sound.
constexpr std::uint8_t kSilence[] = {midi::kSustain, midi::kSostenuto, midi::kResetAllControllers,
                                     midi::kAllNotesOff, midi::kAllSoundOff};

void freeStore(const MIDIOUT& player) noexcept {
    if (player.sysex == nullptr) {
        return;
    }
    for (std::int16_t i = 0; i < player.sysexCount; ++i) {
        const MMSYSEX& slot = player.sysex[i];
        if (slot.ownBlock == 1) {
            releaseBlock(slot.message.block.mem, slot.message.block.ptr);
        }
    }
    releaseBlock(player.sysexMem, player.sysex);
}

void freeSong(const MIDIOUT& player) noexcept {
    for (char* line : player.textLine) {
        std::free(line);
    }
    releaseBlock(player.trackMem, player.tracks);
    releaseBlock(player.eventMem, player.events);
    releaseBlock(player.lyricMem, player.lyrics);
    releaseBlock(player.chordMem, player.chords);
    releaseBlock(player.markerMem, player.markers);
    freeStore(player);
}

/// Zeroes everything but the handle, the mode and the long-message storage. These are stepped over, not
/// restored: another thread may be selecting a player by its handle.
void clearRecord(MIDIOUT& player) noexcept {
    auto* const bytes = reinterpret_cast<std::uint8_t*>(&player);
    constexpr std::size_t kBegin = offsetof(MIDIOUT, options);
    constexpr std::size_t kStorage = offsetof(MIDIOUT, longBufferMem);
    constexpr std::size_t kAfterStorage = offsetof(MIDIOUT, replaceNotes);
    fillShared(bytes + kBegin, 0, kStorage - kBegin);
    fillShared(bytes + kAfterStorage, 0, sizeof(MIDIOUT) - kAfterStorage);
}

void copyRoutes(MIDIOUT& copy, const MIDIOUT& player) noexcept {
    for (int channel = 0; channel < midi::kChannels; ++channel) {
        const Route route = routeOf(player, channel);
        setRouteDevice(copy, channel, route.device);
        setRouteChannel(copy, channel, route.channel);
    }
}

} // namespace

void unloadSong(MIDIOUT& player) noexcept {
    const EngineLock lock;
    BusyClaim claim;
    if (!claim) {
        return;
    }
    setPlaying(player, false);
    freeSong(player);
    MIDIOUT before{};
    copyRoutes(before, player);
    clearRecord(player);
    claim.release();
    for (const std::uint8_t controller : kSilence) {
        sendOnAllChannels(before, controller);
    }
    setDefaultRoutes(player, player.hmo);
}
