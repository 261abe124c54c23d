// The host's lock, the busy flag and the guard of a player's long messages.
#include "engine/guards.h"

#include "engine/globals.h"

namespace {

constexpr DWORD kTickPatience = 2000; ///< milliseconds
constexpr DWORD kMessagePause = 1;    ///< milliseconds; a long message takes several

std::atomic<int> ticksInFlight{0};
std::atomic<bool> longMessageUnderWay[2];

} // namespace

bool engineRunning() noexcept {
    return g_engineState.load() == EngineState::Running;
}

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

EngineLock::~EngineLock() {
    if (m_lock != nullptr) {
        LeaveCriticalSection(m_lock);
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

BusyClaim::BusyClaim(Wait wait) noexcept : m_held(false) {
    do {
        std::uint32_t idle = 0;
        m_held =
            engineRunning() && g_busy.compare_exchange_strong(idle, 1, std::memory_order_acq_rel);
    } while (!m_held && wait == Wait::Yes && waitUntilIdle());
}

BusyClaim::~BusyClaim() {
    release();
}

void BusyClaim::release() noexcept {
    if (m_held) {
        g_busy.store(0, std::memory_order_release);
        m_held = false;
    }
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
