// Start-up and shut-down: outputs, timer and the players' long-message storage.
#include <algorithm>
#include <cstring>

#include "corvmo32.h"
#include "engine/global_block.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/players.h"

namespace {

/// Which long-message blocks this run of the engine has to free: the records keep stale addresses.
struct OwnedBlocks {
    bool buffer = false;
    bool header = false;
};

OwnedBlocks ownedBlocks[2];

bool fail(std::uint32_t error) noexcept {
    g_lastError.store(error);
    return false;
}

void openDevices() noexcept {
    std::fill(std::begin(g_devices), std::end(g_devices), nullptr);
    const UINT present = midiOutGetNumDevs();
    for (UINT id = 0; id < present && id < kMaxDevices; ++id) {
        if (midiOutOpen(&g_devices[id], id, 0, 0, CALLBACK_NULL) != MMSYSERR_NOERROR) {
            g_devices[id] = nullptr;
        }
    }
}

HMIDIOUT deviceAt(std::uint32_t index) noexcept {
    return index < kMaxDevices ? g_devices[index] : nullptr;
}

void bindPlayers(const MMINIT& settings) noexcept {
    const bool secondPlayer =
        (settings.flags & MMINIT_SECONDPLAYER) != 0 && (settings.flags & MMINIT_NORESET) == 0;
    MM1.hmo = deviceAt(settings.deviceIndex1);
    MM2.hmo = secondPlayer ? deviceAt(settings.deviceIndex2) : nullptr;
    MM1.mode = settings.mode1;
    MM2.mode = settings.mode2;
    setPlaying(MM1, false);
    setPlaying(MM2, false);
    g_busy.store(0);
}

void copySettings(const MMINIT& settings) noexcept {
    g_noResetFlag = (settings.flags & MMINIT_NORESET) != 0 ? 1 : 0;
    g_hwndNotify.store(settings.hwnd);
    g_timerPeriod = settings.timerPeriod;
    g_resetGap = std::max<std::int16_t>(settings.resetGap, 0);
    g_sysexStore = (settings.flags & MMINIT_SYSEXSTORE) != 0 ? 1 : 0;
    g_resetOnOpen = (settings.flags & MMINIT_RESETONOPEN) != 0 ? 1 : 0;
    g_noChase = settings.noChase;
    g_sendInitText = settings.sendInitText;
    g_firstNoteDelay = settings.firstNoteDelay;
    g_eventGap = settings.eventGap;
    g_lock = settings.lock;
    g_masterTranspose = 0;
}

/// The period is compared without sign, so that a negative one becomes the longest.
std::int16_t clampPeriod(std::int16_t period, const TIMECAPS& caps) noexcept {
    const UINT longest = std::min<UINT>(caps.wPeriodMax, INT16_MAX);
    const UINT wanted = static_cast<UINT>(static_cast<std::int32_t>(period));
    if (wanted >= longest) {
        return static_cast<std::int16_t>(longest);
    }
    return static_cast<std::int16_t>(std::max(wanted, caps.wPeriodMin));
}

bool startTimer() noexcept {
    TIMECAPS caps{};
    if (timeGetDevCaps(&caps, sizeof caps) != TIMERR_NOERROR) {
        return fail(ENGINE_ERR_TIMER);
    }
    g_timerPeriod = clampPeriod(g_timerPeriod, caps);
    const auto period = static_cast<UINT>(g_timerPeriod);
    g_timerId = 0;
    if (timeBeginPeriod(period) != TIMERR_NOERROR) {
        return fail(ENGINE_ERR_TIMER);
    }
    g_timerId = timeSetEvent(period, period, SyncTimer, 0, TIME_PERIODIC | TIME_CALLBACK_FUNCTION);
    if (g_timerId == 0) {
        return fail(ENGINE_ERR_TIMER);
    }
    return true;
}

void stopTimer() noexcept {
    if (g_timerId != 0) {
        timeKillEvent(g_timerId);
        timeEndPeriod(static_cast<UINT>(g_timerPeriod));
        g_timerId = 0;
    }
}

bool obtainLongStorage(MIDIOUT& player, OwnedBlocks& owned) noexcept {
    const GlobalBlock buffer =
        obtainBlock(GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE, MM_LONG_MESSAGE_SIZE);
    player.longBufferMem = buffer.mem;
    player.longBuffer = static_cast<std::uint8_t*>(buffer.address);
    owned.buffer = static_cast<bool>(buffer);
    if (!buffer) {
        return fail(buffer.error);
    }
    const GlobalBlock header = obtainBlock(GMEM_MOVEABLE | GMEM_SHARE, sizeof(MIDIHDR));
    player.longHeaderMem = header.mem;
    player.longHeader = static_cast<MIDIHDR*>(header.address);
    owned.header = static_cast<bool>(header);
    if (!header) {
        return fail(header.error);
    }
    return true;
}

void freeLongStorage(const MIDIOUT& player, OwnedBlocks& owned) noexcept {
    const LongMessageGuard guard(player);
    if (owned.buffer) {
        releaseBlock(player.longBufferMem, player.longBuffer);
    }
    if (owned.header) {
        releaseBlock(player.longHeaderMem, player.longHeader);
    }
    owned = {};
}

void copyInitText(const char* text) noexcept {
    std::memset(g_initSysExText, 0, sizeof g_initSysExText);
    if (text != nullptr) {
        std::memcpy(g_initSysExText, text, sizeof g_initSysExText);
        g_initSysExText[sizeof g_initSysExText - 1] = '\0';
    }
}

bool startUp(const MMINIT& settings) noexcept {
    openDevices();
    bindPlayers(settings);
    copySettings(settings);
    if (!startTimer() || !obtainLongStorage(MM1, ownedBlocks[0]) ||
        !obtainLongStorage(MM2, ownedBlocks[1])) {
        return false;
    }
    copyInitText(settings.initSysExText);
    return true;
}

void closeDevices() noexcept {
    for (HMIDIOUT device : g_devices) {
        if (device != nullptr) {
            midiOutReset(device);
            midiOutClose(device);
        }
    }
}

/// Takes the guards by hand: it must work after a failed start-up too, and leaves the flag set.
void claimForGood() noexcept {
    EnterCriticalSection(g_lock);
    if (engineRunning()) {
        BusyClaim claim;
        claim.keep();
    }
    g_busy.store(1);
    g_engineState.store(EngineState::Stopped);
}

} // namespace

std::int16_t CORVMO_CALL mm_InitEngine(const MMINIT* settings, HMIDIOUT* player1,
                                       HMIDIOUT* player2) {
    if (settings == nullptr || settings->lock == nullptr || engineRunning()) {
        return 0;
    }
    mm_EndEngine();
    if (!startUp(*settings)) {
        g_engineState.store(EngineState::Failed);
        return 0;
    }
    if (player1 != nullptr) {
        *player1 = MM1.hmo;
    }
    if (player2 != nullptr) {
        *player2 = MM2.hmo;
    }
    g_engineState.store(EngineState::Running);
    return 1;
}

void CORVMO_CALL mm_EndEngine(void) {
    if (g_engineState.load() == EngineState::Stopped) {
        return;
    }
    CRITICAL_SECTION* const lock = g_lock;
    claimForGood();
    setPlaying(MM1, false);
    setPlaying(MM2, false);
    closeDevices();
    stopTimer();
    freeLongStorage(MM1, ownedBlocks[0]);
    freeLongStorage(MM2, ownedBlocks[1]);
    LeaveCriticalSection(lock);
    TickInFlight::waitForAll();
}
