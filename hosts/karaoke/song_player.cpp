// Plays one song through the engine.
#include "karaoke/song_player.h"

#include <signal.h>

#include "corvmo32_linux.h"
#include "karaoke/song_settings.h"
#include "shared/error_texts.h"
#include "shared/song_events.h"
#include "shared/song_loader.h"

namespace karaoke {

namespace {

constexpr std::uint32_t kFrame = 40;         ///< milliseconds between two looks at the position
constexpr std::uint64_t kTail = 1500 * 1000; ///< microseconds in which the last note rings

/// A click that is heard among drums.
MMCLICK metronome(std::uint32_t device) {
    constexpr std::uint16_t kHighWoodBlock = 76;
    constexpr std::uint16_t kLowWoodBlock = 77;
    MMCLICK click{};
    click.clickOn = 1;
    click.clickDevice = static_cast<std::int16_t>(device);
    click.clickChannel = host::kDrumChannel;
    click.clickAccentNote = kHighWoodBlock;
    click.clickAccentVelocity = 120;
    click.clickNote = kLowWoodBlock;
    click.clickVelocity = 100;
    return click;
}

/// Closes the player on every way out.
class OpenSong {
public:
    explicit OpenSong(HMIDIOUT player) : m_player(player) {}
    ~OpenSong() {
        mm_StopSync(m_player);
        mm_Close(m_player);
    }
    OpenSong(const OpenSong&) = delete;
    OpenSong& operator=(const OpenSong&) = delete;

private:
    HMIDIOUT m_player;
};

} // namespace

void SongPlayer::open(const host::Song& song) {
    const MMCLICK click = metronome(m_setting.device);
    const MMCLICK* const wanted = m_setting.options.metronome ? &click : nullptr;
    constexpr std::uint16_t kAnnouncements = MMOPT_LYRICS | MMOPT_CHORDS;
    if (mm_Open(m_setting.player, song.path.c_str(), kAnnouncements, 0, 0, wanted) == 0) {
        throw host::SongError(song.path, host::reasonOfFailure(m_setting.player, song.path));
    }
    mm_SetLoop(m_setting.player, nullptr);
}

void SongPlayer::play(const host::Song& song) {
    const OpenSong closing(m_setting.player);
    m_ended = false;
    open(song);
    applySettings(m_setting.player, m_setting.options);
    m_setting.view.begin(song);
    mm_PlayFirstNote(m_setting.player);
    completeSettings(m_setting.player, m_setting.options, song);
    // What earlier songs have posted.
    for (corvmo_message old{}; corvmo_WaitMessage(m_setting.window, &old, 0) != 0;) {
    }
    if (!stopping()) {
        mm_StartSync(m_setting.player);
        run();
    }
    m_setting.view.finish(!stopping());
}

bool SongPlayer::stopping() const {
    return m_setting.signals.stopping();
}

void SongPlayer::run() {
    while (!stopping() && !m_ended) {
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
    m_setting.view.position(mm_GetTicks(m_setting.player));
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
        switch (message.message) {
        case MMN_LYRIC:
            m_setting.view.lyric(static_cast<int>(message.wParam));
            break;
        case MMN_CHORD:
            m_setting.view.chord(static_cast<int>(message.wParam));
            break;
        case MMN_END:
            m_ended = true;
            break;
        default:
            break;
        }
    }
}

void SongPlayer::suspend() {
    mm_PauseSync(m_setting.player);
    m_setting.view.suspend();
    ::raise(SIGSTOP);
    m_setting.view.resume();
    if (!m_ended) {
        mm_ReStartSync(m_setting.player);
    }
}

} // namespace karaoke
