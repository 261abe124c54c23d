// One run of the engine over the songs of a list.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "karaoke/midi_log.h"
#include "karaoke/play_list.h"
#include "karaoke/play_options.h"
#include "karaoke/played_song.h"
#include "karaoke/song_player.h"
#include "karaoke/song_view.h"
#include "karaoke/stop_signals.h"
#include "karaoke/window.h"
#include "shared/engine_session.h"
#include "shared/settings_store.h"

namespace karaoke {

class PlaySession {
public:
    /// Starts the engine.
    /// @param devices  MIDI outputs of the players
    /// @throws host::HostError  why it does not start
    PlaySession(const PlayOptions& options, StopSignals& signals,
                std::vector<std::uint32_t> devices);
    ~PlaySession();
    PlaySession(const PlaySession&) = delete;
    PlaySession& operator=(const PlaySession&) = delete;

    /// Plays a list, a song at a time; those that cannot be played are reported.
    /// @param first  the list's current song
    /// @return how many songs could not be played
    std::size_t play(PlayList& list, const PlayedSong& first);

    /// Plays two songs at once.
    /// @return how many of them could not be played
    std::size_t playTogether(const PlayedSong& song, const PlayedSong& companion);

    /// Ends the engine and finishes the log.
    void close();

private:
    std::optional<PlayedSong> read(const std::string& file);
    SongPlayer makePlayer();
    void tellMended(const PlayedSong& song);
    void abandon(bool engineRuns);

    const PlayOptions& m_options;
    StopSignals& m_signals;
    std::vector<std::uint32_t> m_devices;
    host::SettingsStore m_store;
    std::unique_ptr<SongView> m_view;
    Window m_window;
    std::optional<MidiLog> m_log;
    std::optional<host::EngineSession> m_engine;
};

} // namespace karaoke
