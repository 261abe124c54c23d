// Starts and ends the engine for one benchmark.
#include "bench/engine.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

Engine::Engine() {
    InitializeCriticalSection(&m_lock);
    corvmo_UseManualClock(0);
    const corvmo_output silent{};
    corvmo_SetOutputs(&silent, 1);
    MMINIT settings{};
    settings.timerPeriod = kPeriod;
    settings.flags = MMINIT_SYSEXSTORE;
    settings.lock = &m_lock;
    HMIDIOUT second = nullptr;
    if (mm_InitEngine(&settings, &m_player, &second) != 1) {
        std::fprintf(stderr, "the engine does not start: %u\n", mm_GetLastError());
        std::abort();
    }
}

Engine::~Engine() {
    mm_Close(m_player);
    mm_EndEngine();
    DeleteCriticalSection(&m_lock);
}

void Engine::open(const std::string& file) const {
    if (mm_Open(m_player, file.c_str(), 0, 0, 0, nullptr) != 1) {
        std::fprintf(stderr, "%s does not open: %u\n", file.c_str(), mm_GetLastError());
        std::abort();
    }
}

void Engine::start() const {
    mm_SetLoop(m_player, nullptr);
    mm_RewindSync(m_player);
    mm_StartSync(m_player);
}

} // namespace bench
