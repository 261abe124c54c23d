// The engine's life in a host.
#include "shared/engine_session.h"

#include "shared/error_texts.h"

namespace host {

EngineSession::EngineSession(const EngineSettings& settings) {
    InitializeCriticalSection(&m_lock);
    MMINIT init{};
    init.hwnd = settings.window;
    init.timerPeriod = settings.timerPeriod;
    init.deviceIndex1 = settings.device;
    init.mode1 = settings.mode;
    init.mode2 = settings.mode;
    init.flags = MMINIT_SYSEXSTORE;
    if (settings.secondDevice) {
        init.deviceIndex2 = *settings.secondDevice;
        init.flags |= MMINIT_SECONDPLAYER;
    }
    if (settings.resetOnOpen) {
        init.flags |= MMINIT_RESETONOPEN;
    }
    init.resetGap = settings.resetGap;
    init.eventGap = settings.eventGap;
    init.lock = &m_lock;
    if (mm_InitEngine(&init, &m_player, &m_secondPlayer) == 0) {
        mm_EndEngine();
        DeleteCriticalSection(&m_lock);
        throw HostError("the engine does not start: " + errorText(mm_GetLastError()));
    }
}

EngineSession::~EngineSession() {
    mm_EndEngine();
    DeleteCriticalSection(&m_lock);
}

} // namespace host
