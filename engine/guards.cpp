// The host's lock, the busy flag and the guard of a player's long messages.
#include "engine/guards.h"

namespace {

constexpr DWORD kTickPatience = 2000; ///< milliseconds
constexpr DWORD kMessagePause = 1;    ///< milliseconds; a long message takes several

std::atomic<int> ticksInFlight{0};
std::atomic<bool> longMessageUnderWay[2];

} // namespace

EngineLock::EngineLock() noexcept : m_lock(engineRunning() ? g_lock : nullptr) {
    if (m_lock == nullptr) {
        return;
    }
    EnterCriticalSection(m_lock);
    if (!engineRunning()) {
        LeaveCriticalSection(m_lock);
        m_lock = nullptr;
    }
}

bool waitUntilIdle() noexcept {
    while (engineRunning()) {
        if (g_busy.load(std::memory_order_acquire) == 0) {
            return true;
        }
        Sleep(0);
    }
    return false;
}

bool BusyClaim::waitToClaim() noexcept {
    while (waitUntilIdle()) {
        if (claimIfIdle()) {
            return true;
        }
    }
    return false;
}

TickInFlight::TickInFlight() noexcept {
    ticksInFlight.fetch_add(1);
}

TickInFlight::~TickInFlight() {
    ticksInFlight.fetch_sub(1);
}

void TickInFlight::waitForAll() noexcept {
    const DWORD start = timeGetTime();
    while (ticksInFlight.load() != 0 && timeGetTime() - start < kTickPatience) {
        Sleep(0);
    }
}

LongMessageGuard::LongMessageGuard(const MIDIOUT& player) noexcept
    : m_underWay(longMessageUnderWay[&player == &MM1 ? 0 : 1]) {
    while (m_underWay.exchange(true, std::memory_order_acquire)) {
        Sleep(kMessagePause);
    }
}

LongMessageGuard::~LongMessageGuard() {
    m_underWay.store(false, std::memory_order_release);
}
