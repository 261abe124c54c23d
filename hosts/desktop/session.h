// The engine and its songs on a thread of their own, so that no window ever waits for an instrument.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "desktop/outputs.h"
#include "desktop/session_state.h"

namespace desktop {

class SongDesk;

/// Posted to the window with one of these as wParam.
enum class SessionEvent : WPARAM {
    StateChanged, ///< something that happens rarely: a song was opened, playing began or ended
    SongEnded,    ///< it has come to its end, and its last note has rung
    Trouble,      ///< takeTrouble() has something to tell
};
constexpr UINT kSessionMessage = WM_APP + 1;

/// All calls return at once. Made and used by one thread.
class Session {
public:
    /// @param window  is told of SessionEvents
    Session(HWND window, const OutputChoice& outputs);
    /// Silences and closes everything; waits for that.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    SessionState state() const;
    /// What could not be done, in words; empty = nothing more.
    std::wstring takeTrouble();

    /// Has something done with the songs, after what was asked for before. Nothing while the engine failed to
    /// start.
    void ask(std::function<void(SongDesk&)> request);
    /// Starts the engine anew with other outputs; the song goes on there.
    void chooseOutputs(const OutputChoice& outputs);

private:
    class Worker;
    std::unique_ptr<Worker> m_worker;
};

} // namespace desktop
