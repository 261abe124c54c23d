// Plays songs through the engine, obeys the listener's keys, and tells a view what to show.
#pragma once

#include <cstdint>
#include <functional>

#include "corvmo32.h"
#include "karaoke/midi_log.h"
#include "karaoke/output_watch.h"
#include "karaoke/play_options.h"
#include "karaoke/played_song.h"
#include "karaoke/player_keys.h"
#include "karaoke/song_view.h"
#include "karaoke/stop_signals.h"
#include "shared/settings_store.h"
#include "shared/song_controls.h"

namespace karaoke {

class SongPlayer {
public:
    /// What the player works with; all of it outlives the player.
    struct Setting {
        host::EngineSession& engine;
        HWND window;                        ///< receives the engine's notifications
        std::vector<std::uint32_t> devices; ///< MIDI output of each of the engine's players
        const PlayOptions& options;
        StopSignals& signals;
        SongView& view;
        MidiLog* log; ///< may be null
        const host::SettingsStore& store;
    };

    explicit SongPlayer(const Setting& setting);

    /// Plays a song to its end, until a key leaves it, or until a signal asks to stop.
    /// @param companion     plays along on the second player; may be null
    /// @param place, songs  where the song stands in the list
    /// @return Next = the song has ended
    /// @throws host::SongError  why it cannot be played
    KeyOutcome play(const PlayedSong& song, const PlayedSong* companion, std::size_t place,
                    std::size_t songs);

private:
    class Closing;

    void open(const PlayedSong& song, const host::SongSettings& settings);
    void openCompanion(const PlayedSong& song);
    void layDesk(const PlayedSong& song, std::size_t place, std::size_t songs);
    void start();
    KeyOutcome run(PlayerKeys& keys);
    bool ended() const;
    bool stopping() const;
    void passFrame();
    void takeMessages(std::uint32_t timeout);
    void forEachSong(const std::function<void(host::SongControls&)>& act);
    void followOutputs(PlayerKeys& keys);
    void suspend();

    Setting m_setting;
    host::SongControls m_controls;
    host::SongControls m_companionControls;
    bool m_together = false;
    Desk m_desk;
    OutputWatch m_outputs;
};

} // namespace karaoke
