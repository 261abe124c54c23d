// karaoke play: reads the songs, starts the engine and plays them one after the other.
#include <chrono>
#include <cstdio>
#include <future>
#include <memory>
#include <optional>
#include <thread>

#include "corvmo32_linux.h"
#include "karaoke/commands.h"
#include "karaoke/devices.h"
#include "karaoke/pipe_view.h"
#include "karaoke/song_player.h"
#include "karaoke/song_reader.h"
#include "karaoke/terminal_view.h"
#include "shared/engine_session.h"
#include "shared/error_texts.h"

namespace karaoke {

namespace {

constexpr std::int16_t kResetGap = 60; ///< milliseconds that an instrument needs after a reset
constexpr std::chrono::milliseconds kTimeForLog{300};

void report(const std::exception& error) {
    std::fprintf(stderr, "karaoke: %s\n", error.what());
}

struct ReadSong {
    host::SongFile file;
    host::Song song;
};

/// The songs that can be played; the others are reported.
std::vector<ReadSong> readSongs(const PlayOptions& options) {
    SongReader reader;
    std::vector<ReadSong> songs;
    for (const std::string& name : options.files) {
        try {
            host::SongFile file(name);
            host::Song song = host::songForDisplay(reader.read(file), name,
                                                   {.encoding = options.settings.encoding,
                                                    .tempoPercent = options.settings.tempoPercent});
            if (!file.notes().empty()) {
                std::fprintf(stderr, "karaoke: %s: %s\n", name.c_str(),
                             host::mendedInOneLine(file.notes()).c_str());
            }
            songs.push_back({std::move(file), std::move(song)});
        } catch (const host::SongError& error) {
            report(error);
        }
    }
    return songs;
}

class Window {
public:
    Window() : m_window(corvmo_CreateWindow()) {}
    ~Window() {
        corvmo_DestroyWindow(m_window);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    HWND handle() const {
        return m_window;
    }

private:
    HWND m_window;
};

void chooseClockAndSynthesizer(const PlayOptions& options) {
    if (options.fast) {
        corvmo_UseManualClock(0);
    } else {
        corvmo_UseRealClock();
    }
    corvmo_SetAudioDriver(options.audioDriver.empty() ? nullptr : options.audioDriver.c_str());
    corvmo_SetSoundFont(options.soundFont.empty() ? nullptr : options.soundFont.c_str());
}

host::EngineSettings engineSettings(const PlayOptions& options, HWND window, std::uint32_t device) {
    host::EngineSettings settings;
    settings.window = window;
    settings.timerPeriod = static_cast<std::int16_t>(options.period);
    settings.device = device;
    settings.resetOnOpen = options.reset.has_value();
    settings.mode = options.reset.value_or(MMMODE_GM);
    settings.resetGap = kResetGap;
    settings.eventGap = static_cast<std::uint32_t>(options.eventGap);
    return settings;
}

std::unique_ptr<SongView> makeView() {
    if (Terminal::usable()) {
        return std::make_unique<TerminalView>();
    }
    return std::make_unique<PipeView>();
}

/// One run of the engine over all songs.
class PlaySession {
public:
    PlaySession(const PlayOptions& options, StopSignals& signals);
    ~PlaySession();
    PlaySession(const PlaySession&) = delete;
    PlaySession& operator=(const PlaySession&) = delete;

    /// @return how many songs could not be played
    std::size_t play(const std::vector<ReadSong>& songs);

    /// Ends the engine and finishes the log.
    void close();

private:
    void abandon(HMIDIOUT player);

    const PlayOptions& m_options;
    StopSignals& m_signals;
    std::uint32_t m_device;
    std::unique_ptr<SongView> m_view;
    Window m_window;
    std::optional<MidiLog> m_log;
    std::optional<host::EngineSession> m_engine;
};

PlaySession::PlaySession(const PlayOptions& options, StopSignals& signals)
    : m_options(options), m_signals(signals), m_device(chooseOutput(options.device, outputNames())),
      m_view(makeView()) {
    chooseClockAndSynthesizer(options);
    if (!options.logFile.empty()) {
        m_log.emplace(options.logFile);
    }
    m_engine.emplace(engineSettings(options, m_window.handle(), m_device));
    if (m_engine->player() == nullptr) {
        throw host::HostError("the output '" + outputNames()[m_device] + "' cannot be opened");
    }
    m_signals.setLastResort([this] { abandon(m_engine->player()); });
}

PlaySession::~PlaySession() {
    // The engine's shut-down must not overlap the last resort's calls.
    m_signals.setLastResort([this] { abandon(nullptr); });
    m_engine.reset();
    m_signals.setLastResort({});
}

std::size_t PlaySession::play(const std::vector<ReadSong>& songs) {
    SongPlayer player({*m_engine, m_window.handle(), m_device, m_options, m_signals, *m_view,
                       m_log ? &*m_log : nullptr});
    std::size_t failures = 0;
    for (const ReadSong& song : songs) {
        try {
            player.play(song.file, song.song);
        } catch (const host::SongError& error) {
            report(error);
            ++failures;
        }
        if (m_signals.stopping()) {
            break;
        }
    }
    return failures;
}

void PlaySession::close() {
    m_signals.setLastResort([this] { abandon(nullptr); });
    m_engine.reset();
    if (m_log) {
        m_log->write();
    }
}

/// The main thread is held up: silences the output and leaves the rest to the end of the process.
void PlaySession::abandon(HMIDIOUT player) {
    if (player != nullptr) {
        mm_StopSync(player);
        mm_Reset(player);
    }
    m_view->abandon();
    if (m_log) {
        // The file may be what holds the main thread up.
        std::packaged_task<void()> writing([this] { m_log->writeIfPossible(); });
        const std::future<void> written = writing.get_future();
        std::thread(std::move(writing)).detach();
        written.wait_for(kTimeForLog);
    }
}

} // namespace

int runPlay(const PlayOptions& options) {
    StopSignals signals;
    chooseOutput(options.device, outputNames());
    const std::vector<ReadSong> songs = readSongs(options);
    std::size_t failures = options.files.size() - songs.size();
    if (!songs.empty() && !signals.stopping()) {
        PlaySession session(options, signals);
        failures += session.play(songs);
        session.close();
    }
    if (signals.received() != 0) {
        return StopSignals::exitCode(signals.received());
    }
    return failures == 0 ? 0 : 1;
}

} // namespace karaoke
