// Plays one song through the engine.
#include "karaoke/song_player.h"

#include <signal.h>

#include "corvmo32_linux.h"
#include "karaoke/play_plan.h"

namespace karaoke {

namespace {

constexpr std::uint32_t kFrame = 40;         ///< milliseconds between two looks at the position
constexpr std::uint64_t kTail = 1500 * 1000; ///< microseconds in which the last note rings
constexpr std::uint64_t kMicrosecondsPerMillisecond = 1000;

/// Closes the player on every way out.
class OpenSong {
public:
    explicit OpenSong(host::SongControls& controls) : m_controls(controls) {}
    ~OpenSong() {
        m_controls.close();
    }
    OpenSong(const OpenSong&) = delete;
    OpenSong& operator=(const OpenSong&) = delete;

private:
    host::SongControls& m_controls;
};

} // namespace

SongPlayer::SongPlayer(const Setting& setting)
    : m_setting(setting), m_controls(setting.engine, setting.engine.player()) {}

void SongPlayer::play(const host::SongFile& file, const host::Song& song) {
    const OpenSong closing(m_controls);
    m_controls.open(file, song, m_setting.options.settings,
                    planOf(m_setting.options, m_setting.device));
    m_setting.view.begin(m_controls.song());
    m_controls.setUp();
    // What earlier songs have posted.
    for (corvmo_message old{}; corvmo_WaitMessage(m_setting.window, &old, 0) != 0;) {
    }
    if (!stopping()) {
        m_controls.play();
        run();
    }
    m_setting.view.finish(!stopping());
}

bool SongPlayer::stopping() const {
    return m_setting.signals.stopping();
}

void SongPlayer::run() {
    while (!stopping() && !m_controls.ended()) {
        passTime();
    }
    const std::uint64_t silence = corvmo_GetClock() + kTail;
    while (!stopping() && corvmo_GetClock() < silence) {
        passTime();
    }
}

void SongPlayer::passTime() {
    if (m_setting.options.fast) {
        corvmo_AdvanceClock(static_cast<std::uint32_t>(m_setting.options.period));
        takeMessages(0);
    } else {
        takeMessages(kFrame);
    }
    m_setting.view.position(m_controls.position());
    if (m_setting.log != nullptr) {
        m_setting.log->write();
    }
    if (m_setting.signals.takeSuspend()) {
        suspend();
    }
}

/// Takes everything that the engine has posted, after waiting for the first.
void SongPlayer::takeMessages(std::uint32_t timeout) {
    corvmo_message message{};
    while (corvmo_WaitMessage(m_setting.window, &message, timeout) != 0) {
        timeout = 0;
        m_controls.take(message.message, message.wParam, message.lParam,
                        message.time / kMicrosecondsPerMillisecond);
        if (message.message == MMN_LYRIC) {
            m_setting.view.lyric(static_cast<int>(message.wParam));
        } else if (message.message == MMN_CHORD) {
            m_setting.view.chord(static_cast<int>(message.wParam));
        }
    }
}

void SongPlayer::suspend() {
    m_controls.pause();
    m_setting.view.suspend();
    ::raise(SIGSTOP);
    m_setting.view.resume();
    if (!m_controls.ended()) {
        m_controls.play();
    }
}

} // namespace karaoke
