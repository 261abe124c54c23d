// The event list while a song is loaded: appending, growing, and settling the end.
#include <algorithm>
#include <cstring>

#include "corvmo32_errors.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/midi.h"
#include "engine/shared_field.h"
#include "song/song.h"

namespace {

constexpr std::int32_t kGrowth = 4096;      ///< records
constexpr std::uint32_t kSmallestEvent = 2; ///< bytes in the file: a delta time and one byte more

bool failGrowth() noexcept {
    g_lastError.store(ENGINE_ERR_LOCK);
    return false;
}

void setEventCount(MIDIOUT& player, std::int32_t count) noexcept {
    storeShared<std::int32_t>(&player.eventCount, count);
}

/// A buffer without an address can neither be read nor, later, be given back.
void dropEvents(MIDIOUT& player) noexcept {
    GlobalUnlock(player.eventMem);
    GlobalFree(player.eventMem);
    player.eventMem = nullptr;
    storeShared<MMEVENT*>(&player.events, nullptr);
    player.eventEnd = nullptr;
    setEventCount(player, 0);
}

constexpr std::size_t bytesOf(std::size_t records) noexcept {
    return records * sizeof(MMEVENT);
}

/// What the list can come to hold if the rest of the file is nothing but events.
std::size_t mostRecords(const MIDIOUT& player) noexcept {
    const std::uint32_t unread = player.fileSize - std::min(player.fileSize, +player.readPos);
    return static_cast<std::size_t>(player.eventCount) + unread / kSmallestEvent;
}

/// Has the block behind the buffer hold so many records. It grows beyond them at once, because it may have
/// to move for it, with all that was read; what is never written costs no memory.
bool growBlock(MIDIOUT& player, std::size_t capacity) noexcept {
    if (GlobalSize(player.eventMem) >= bytesOf(capacity)) {
        return true;
    }
    const std::size_t wanted = std::max(capacity, mostRecords(player));
    HGLOBAL mem = GlobalReAlloc(player.eventMem, bytesOf(wanted), GMEM_MOVEABLE);
    if (mem == nullptr && wanted > capacity) {
        mem = GlobalReAlloc(player.eventMem, bytesOf(capacity), GMEM_MOVEABLE);
    }
    if (mem == nullptr) {
        return failGrowth();
    }
    player.eventMem = mem;
    storeShared(&player.events, static_cast<MMEVENT*>(GlobalLock(mem)));
    if (player.events == nullptr) {
        dropEvents(player);
        return failGrowth();
    }
    // The lock count survives the move; locking anew was for the new address alone.
    GlobalUnlock(mem);
    return true;
}

bool growEvents(MIDIOUT& player) noexcept {
    const EngineLock lock;
    const BusyClaim claim;
    if (!claim) {
        return false;
    }
    const std::int32_t capacity = player.eventCapacity + kGrowth;
    if (!growBlock(player, static_cast<std::size_t>(capacity))) {
        return false;
    }
    std::memset(player.events + player.eventCapacity, 0, bytesOf(kGrowth));
    player.eventEnd = player.events + player.eventCount;
    player.eventCapacity = capacity;
    return true;
}

bool isNote(const MMEVENT& event) noexcept {
    const int kind = event.kind & midi::kKindMask;
    return kind == midi::kNoteOff || kind == midi::kNoteOn;
}

bool endOnBeat(MIDIOUT& player) noexcept {
    if (player.eventCount == 0) {
        return true;
    }
    const std::uint64_t last = player.events[player.eventCount - 1].time;
    const auto division = static_cast<std::uint64_t>(player.division);
    if (last % division == 0) {
        return true;
    }
    const std::uint64_t beat = (last / division + 1) * division;
    const auto time = static_cast<std::uint32_t>(std::min<std::uint64_t>(beat, UINT32_MAX));
    return appendEvent(player, {midi::kNoteOff, 0, 0, 0, time});
}

void cutAfterLastNote(MIDIOUT& player) noexcept {
    for (std::int32_t i = player.eventCount - 1; i >= 0; --i) {
        if (isNote(player.events[i])) {
            setEventCount(player, i + 1);
            player.eventEnd = player.events + player.eventCount;
            return;
        }
    }
}

} // namespace

bool appendEvent(MIDIOUT& player, const MMEVENT& event) noexcept {
    if (player.eventCount >= player.eventCapacity && !growEvents(player)) {
        return false;
    }
    *player.eventEnd++ = event;
    setEventCount(player, player.eventCount + 1);
    return true;
}

bool settleEnd(MIDIOUT& player) noexcept {
    if (player.endOnBeat != 0) {
        return endOnBeat(player);
    }
    cutAfterLastNote(player);
    return true;
}
