// Plays one song through the engine and tells a view what happens.
#pragma once

#include <cstdint>

#include "corvmo32.h"
#include "karaoke/midi_log.h"
#include "karaoke/play_options.h"
#include "karaoke/song_view.h"
#include "karaoke/stop_signals.h"
#include "shared/song_controls.h"

namespace karaoke {

class SongPlayer {
public:
    /// What the player works with; all of it outlives the player.
    struct Setting {
        host::EngineSession& engine;
        HWND window; ///< receives the engine's notifications
        std::uint32_t device;
        const PlayOptions& options;
        StopSignals& signals;
        SongView& view;
        MidiLog* log; ///< may be null
    };

    explicit SongPlayer(const Setting& setting);

    /// Plays a song to its end, or until a signal asks to stop.
    /// @throws host::SongError  why it cannot be played
    void play(const host::SongFile& file, const host::Song& song);

private:
    void run();
    bool stopping() const;
    void passTime();
    void takeMessages(std::uint32_t timeout);
    void suspend();

    Setting m_setting;
    host::SongControls m_controls;
};

} // namespace karaoke
