// One run of the engine over the songs of a list.
#include "karaoke/play_session.h"

#include <chrono>
#include <future>
#include <thread>

#include "corvmo32_linux.h"
#include "karaoke/curses_view.h"
#include "karaoke/devices.h"
#include "karaoke/pipe_view.h"
#include "karaoke/screen_layout.h"
#include "karaoke/terminal_view.h"
#include "shared/error_texts.h"
#include "shared/song_loader.h"

namespace karaoke {

namespace {

constexpr std::int16_t kResetGap = 60; ///< milliseconds that an instrument needs after a reset
constexpr std::chrono::milliseconds kTimeForLog{300};

void chooseClockAndSynthesizer(const PlayOptions& options) {
    if (options.fast) {
        corvmo_UseManualClock(0);
    } else {
        corvmo_UseRealClock();
    }
    corvmo_SetAudioDriver(options.audioDriver.empty() ? nullptr : options.audioDriver.c_str());
    corvmo_SetSoundFont(options.soundFont.empty() ? nullptr : options.soundFont.c_str());
}

host::EngineSettings engineSettings(const PlayOptions& options, HWND window,
                                    const std::vector<std::uint32_t>& devices) {
    host::EngineSettings settings;
    settings.window = window;
    settings.timerPeriod = static_cast<std::int16_t>(options.period);
    settings.device = devices.front();
    if (options.together) {
        settings.secondDevice = devices.back();
    }
    settings.resetOnOpen = options.reset.has_value();
    settings.mode = options.reset.value_or(MMMODE_GM);
    settings.resetGap = kResetGap;
    settings.eventGap = static_cast<std::uint32_t>(options.eventGap);
    return settings;
}

std::unique_ptr<SongView> makeView(const PlayOptions& options) {
    if (!Terminal::usable()) {
        return std::make_unique<PipeView>();
    }
    const TerminalSize size = Terminal().size();
    if (options.plain || size.columns < kFewestColumns || size.rows < kFewestRows) {
        return std::make_unique<TerminalView>();
    }
    return std::make_unique<CursesView>();
}

} // namespace

PlaySession::PlaySession(const PlayOptions& options, StopSignals& signals,
                         std::vector<std::uint32_t> devices)
    : m_options(options), m_signals(signals), m_devices(std::move(devices)),
      m_store(host::SettingsStore::usualFile()), m_view(makeView(options)) {
    chooseClockAndSynthesizer(options);
    if (!options.logFile.empty()) {
        m_log.emplace(options.logFile, m_devices.front() != m_devices.back());
    }
    m_engine.emplace(engineSettings(options, m_window.handle(), m_devices));
    if (m_engine->player() == nullptr) {
        throw host::HostError("the output '" + outputNames()[m_devices.front()] +
                              "' cannot be opened");
    }
    m_signals.setLastResort([this] { abandon(true); });
}

PlaySession::~PlaySession() {
    // The engine's shut-down must not overlap the last resort's calls.
    m_signals.setLastResort([this] { abandon(false); });
    m_engine.reset();
    m_signals.setLastResort({});
}

SongPlayer PlaySession::makePlayer() {
    return SongPlayer({*m_engine, m_window.handle(), m_devices, m_options, m_signals, *m_view,
                       m_log ? &*m_log : nullptr, m_store});
}

/// The second player has no output as long as nothing plays on it: reading sends nothing.
std::optional<PlayedSong> PlaySession::read(const std::string& file) {
    try {
        host::SongFile song{host::pathOf(file)};
        host::RawSong raw = host::loadSong(m_engine->secondPlayer(), song);
        return PlayedSong(std::move(song), std::move(raw));
    } catch (const host::SongError& error) {
        m_view->report(error.what());
        return std::nullopt;
    }
}

void PlaySession::tellMended(const PlayedSong& song) {
    if (!song.file().notes().empty()) {
        m_view->report(song.file().name() + ": " + host::mendedInOneLine(song.file().notes()));
    }
}

std::size_t PlaySession::play(PlayList& list, const PlayedSong& first) {
    SongPlayer player = makePlayer();
    std::optional<PlayedSong> next;
    const PlayedSong* song = &first;
    std::size_t failures = 0;
    for (std::size_t inARow = 0; inARow < list.size();) {
        KeyOutcome outcome = KeyOutcome::Next;
        bool played = false;
        if (song != nullptr) {
            tellMended(*song);
            try {
                outcome = player.play(*song, nullptr, list.place(), list.size());
                played = true;
            } catch (const host::SongError& error) {
                m_view->report(error.what());
            }
        }
        inARow = played ? 0 : inARow + 1;
        failures += played ? 0 : 1;
        if (m_signals.stopping() || outcome == KeyOutcome::Quit ||
            !list.move(outcome == KeyOutcome::Previous ? -1 : 1)) {
            break;
        }
        next = read(list.file());
        song = next ? &*next : nullptr;
    }
    return failures;
}

std::size_t PlaySession::playTogether(const PlayedSong& song, const PlayedSong& companion) {
    tellMended(song);
    tellMended(companion);
    try {
        makePlayer().play(song, &companion, 0, 1);
    } catch (const host::SongError& error) {
        m_view->report(error.what());
        return 1;
    }
    return 0;
}

void PlaySession::close() {
    m_signals.setLastResort([this] { abandon(false); });
    m_engine.reset();
    m_view->close();
    if (m_log) {
        m_log->write();
    }
}

/// The main thread is held up: silences the outputs and leaves the rest to the end of the process.
void PlaySession::abandon(bool engineRuns) {
    if (engineRuns) {
        for (const HMIDIOUT player : {m_engine->player(), m_engine->secondPlayer()}) {
            mm_StopSync(player);
            mm_Reset(player);
        }
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

} // namespace karaoke
