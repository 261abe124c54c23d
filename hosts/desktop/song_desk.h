// The songs that are played, with everything that belongs to them: engine, files, remembered settings. Lives on
// the session's own thread.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "desktop/outputs.h"
#include "desktop/session_state.h"
#include "shared/engine_session.h"
#include "shared/settings_store.h"
#include "shared/song_controls.h"
#include "shared/song_file.h"

namespace desktop {

/// Calls come from one thread. What cannot be done is thrown as host::HostError.
class SongDesk {
public:
    /// Starts the engine, which opens every MIDI output: that can take seconds.
    /// @param window  receives the engine's notifications, for take()
    SongDesk(HWND window, const OutputChoice& outputs);
    /// Remembers the song's settings and ends the engine.
    ~SongDesk();
    SongDesk(const SongDesk&) = delete;
    SongDesk& operator=(const SongDesk&) = delete;

    void open(const std::filesystem::path& path);
    void openSecond(const std::filesystem::path& path);
    void stopSecond();
    /// What is being played at a place, to go on with another engine.
    struct Place {
        std::filesystem::path path;
        std::uint32_t tick;
        bool playing;
    };
    std::optional<Place> place() const;

    void playOrPause();
    void stop();
    void rewind();
    void seek(std::uint32_t tick);
    void seekSeconds(double seconds);
    void beginLoop();
    void endLoop();
    void setLoop(std::uint32_t start, std::uint32_t end);
    void clearLoop();
    void setTempoPercent(float percent);
    /// @param by  percent of the song's own speed
    void stepSpeed(int by);
    void setTranspose(int semitones);
    void stepTranspose(int by);
    void setChannel(int channel, const host::ChannelSettings& settings);
    void setEncoding(const std::string& encoding);
    void toggleMetronome();
    void fadeOut();
    void panic();

    /// A notification of the engine.
    void take(const MSG& message, std::uint64_t now);
    /// Lets time pass.
    /// @return whether the song has ended and its last note has rung; true once
    bool advance(std::uint64_t now);
    /// Fills in everything but the engine's own phase.
    void describe(SessionState& state) const;

private:
    /// The song is there: most requests make no sense without.
    bool hasSong() const {
        return m_controls && m_file;
    }
    void remember() const;
    void showSong();
    host::Song songForDisplay(const std::string& encoding) const;

    HWND m_window;
    std::uint32_t m_device;
    bool m_hasOutput;
    bool m_hasSecond;
    std::unique_ptr<host::EngineSession> m_engine;
    host::SettingsStore m_store;
    std::filesystem::path m_path;
    std::optional<host::SongFile> m_file;
    host::RawSong m_raw;
    std::unique_ptr<host::SongControls> m_controls;
    std::optional<host::SongFile> m_secondFile;
    std::unique_ptr<host::SongControls> m_second;
    std::shared_ptr<const host::Song> m_shown;
    std::optional<std::uint32_t> m_loopStart;
    std::optional<std::uint64_t> m_endedAt;
    bool m_endTold = false;
};

} // namespace desktop
