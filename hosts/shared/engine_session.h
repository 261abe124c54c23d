// The engine's life in a host: its lock, its start-up and its end.
#pragma once

#include <cstdint>
#include <optional>

#include "corvmo32.h"
#ifndef _WIN32
#include "corvmo32_linux.h"
#endif

namespace host {

/// The settings of MMINIT that hosts choose.
struct EngineSettings {
    HWND window = nullptr;                     ///< receives the notifications
    std::int16_t timerPeriod = 5;              ///< milliseconds
    std::uint32_t device = 0;                  ///< MIDI output of the first player
    std::optional<std::uint32_t> secondDevice; ///< of the second player; may be the same
    std::uint16_t mode = MMMODE_GM;            ///< of that output
    bool resetOnOpen = false;                  ///< opening a song resets the output
    std::int16_t resetGap = 0;  ///< milliseconds of pause after a song's reset message
    std::uint32_t eventGap = 0; ///< milliseconds of pause after each set-up message
};

/// The engine runs while the session lives. One at a time.
class EngineSession {
public:
    /// @throws HostError  when the engine does not start
    explicit EngineSession(const EngineSettings& settings);
    ~EngineSession();
    EngineSession(const EngineSession&) = delete;
    EngineSession& operator=(const EngineSession&) = delete;

    /// Handle of the first player; null when its output could not be opened.
    HMIDIOUT player() const {
        return m_player;
    }

    /// Handle that reaches the second player, also when both play on one output or it has none.
    HMIDIOUT secondPlayer() const {
        return m_secondPlayer == m_player ? nullptr : m_secondPlayer;
    }

    /// Whoever holds it sees both players standing still; not to be held while a song is opened or closed.
    CRITICAL_SECTION& lock() {
        return m_lock;
    }

private:
    CRITICAL_SECTION m_lock{};
    HMIDIOUT m_player = nullptr;
    HMIDIOUT m_secondPlayer = nullptr;
};

/// Holds the engine's lock.
class EngineStands {
public:
    explicit EngineStands(EngineSession& engine) : m_lock(engine.lock()) {
        EnterCriticalSection(&m_lock);
    }
    ~EngineStands() {
        LeaveCriticalSection(&m_lock);
    }
    EngineStands(const EngineStands&) = delete;
    EngineStands& operator=(const EngineStands&) = delete;

private:
    CRITICAL_SECTION& m_lock;
};

} // namespace host
