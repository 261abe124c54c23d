// Plays songs through the engine.
#include "karaoke/song_player.h"

#include <signal.h>

#include "corvmo32_linux.h"
#include "karaoke/play_plan.h"
#include "shared/song_facts.h"

namespace karaoke {

namespace {

constexpr std::uint64_t kMicrosecondsPerMillisecond = 1000;
constexpr std::uint64_t kFrame =
    25 * kMicrosecondsPerMillisecond; ///< between two looks at the song
constexpr std::uint64_t kTail =
    1500 * kMicrosecondsPerMillisecond;   ///< in which the last note rings
constexpr std::uint32_t kSynthesizer = 0; ///< its output

} // namespace

/// Closes the players on every way out.
class SongPlayer::Closing {
public:
    explicit Closing(SongPlayer& player) : m_player(player) {}
    ~Closing() {
        m_player.m_controls.close();
        m_player.m_companionControls.close();
    }
    Closing(const Closing&) = delete;
    Closing& operator=(const Closing&) = delete;

private:
    SongPlayer& m_player;
};

SongPlayer::SongPlayer(const Setting& setting)
    : m_setting(setting), m_controls(setting.engine, setting.engine.player()),
      m_companionControls(setting.engine, setting.engine.secondPlayer()), m_desk(m_controls),
      m_outputs(setting.devices) {}

void SongPlayer::open(const PlayedSong& song, const host::SongSettings& settings) {
    host::Song shown = song.song(settings.encoding);
    host::PlayPlan plan = planOf(m_setting.options, m_setting.devices.front());
    planRanges(plan, m_setting.options, shown);
    m_controls.open(song.file(), std::move(shown), settings, plan);
}

/// It plays as it is, with the tempo and key of the first one.
void SongPlayer::openCompanion(const PlayedSong& song) {
    host::SongSettings settings;
    settings.tempoPercent = m_setting.options.settings.tempoPercent;
    settings.transpose = m_setting.options.settings.transpose;
    host::PlayPlan plan;
    plan.fadeIn = m_setting.options.fadeIn;
    plan.fadeOut = m_setting.options.fadeOut;
    plan.announcements = 0;
    m_companionControls.open(song.file(), song.song(settings.encoding), settings, plan);
    m_companionControls.routeTo(m_setting.devices.back());
}

void SongPlayer::layDesk(const PlayedSong& song, std::size_t place, std::size_t songs) {
    m_desk.place = place;
    m_desk.songs = songs;
    m_desk.keySignature = song.raw().keySignature;
    m_desk.companion = m_together ? m_companionControls.song().title : "";
    m_desk.used.reset();
    for (const host::ChannelUse& use : host::channelsInUse(song.raw().events)) {
        m_desk.used.set(static_cast<std::size_t>(use.channel));
    }
    m_desk.channel = 0;
    m_desk.begun = false;
    m_desk.help = false;
    m_desk.loopStart.reset();
    m_desk.notice.clear();
}

KeyOutcome SongPlayer::play(const PlayedSong& song, const PlayedSong* companion, std::size_t place,
                            std::size_t songs) {
    const Closing closing(*this);
    Remembered remembered(m_setting.store, song.file(), m_setting.options);
    m_together = companion != nullptr;
    open(song, remembered.begin());
    if (m_together) {
        openCompanion(*companion);
    }
    layDesk(song, place, songs);
    PlayerKeys keys(m_desk, song, remembered, m_together ? &m_companionControls : nullptr);
    if (remembered.offered()) {
        keys.tell("last time: " + host::describe(*remembered.offered()) + "; r uses it");
    } else if (!song.file().notes().empty()) {
        keys.tell(host::mendedInOneLine(song.file().notes()));
    }
    m_setting.view.begin(m_desk);
    start();
    const KeyOutcome outcome = stopping() ? KeyOutcome::Quit : run(keys);
    m_setting.view.finish(ended());
    remembered.keep(m_controls.settings());
    return outcome;
}

void SongPlayer::start() {
    // What earlier songs have posted.
    for (corvmo_message old{}; corvmo_WaitMessage(m_setting.window, &old, 0) != 0;) {
    }
    forEachSong([](host::SongControls& controls) { controls.setUp(); });
    if (!stopping()) {
        forEachSong([](host::SongControls& controls) { controls.play(); });
        m_desk.begun = true;
    }
}

void SongPlayer::forEachSong(const std::function<void(host::SongControls&)>& act) {
    act(m_controls);
    if (m_together) {
        act(m_companionControls);
    }
}

bool SongPlayer::stopping() const {
    return m_setting.signals.stopping();
}

bool SongPlayer::ended() const {
    return m_controls.ended() && (!m_together || m_companionControls.ended());
}

KeyOutcome SongPlayer::run(PlayerKeys& keys) {
    std::uint64_t over = 0;
    while (!stopping()) {
        passFrame();
        const KeyOutcome outcome = keys.press(m_setting.view.key());
        if (outcome != KeyOutcome::GoOn) {
            return outcome;
        }
        followOutputs(keys);
        m_setting.view.update();
        const std::uint64_t now = corvmo_GetClock();
        if (!ended()) {
            over = now + kTail;
        } else if (now >= over) {
            return KeyOutcome::Next;
        }
    }
    return KeyOutcome::Quit;
}

void SongPlayer::passFrame() {
    const std::uint64_t end = corvmo_GetClock() + kFrame;
    const bool standing = !m_controls.playing() && !ended();
    for (std::uint64_t now = end - kFrame; now < end; now = corvmo_GetClock()) {
        if (m_setting.options.fast) {
            corvmo_AdvanceClock(static_cast<std::uint32_t>(m_setting.options.period));
            takeMessages(0);
        } else {
            takeMessages(static_cast<std::uint32_t>((end - now) / kMicrosecondsPerMillisecond) + 1);
        }
    }
    if (standing && m_setting.options.fast) {
        takeMessages(1); // a song that stands still need not keep the machine busy
    }
    m_controls.state().advance(corvmo_GetClock() / kMicrosecondsPerMillisecond);
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
        forEachSong([&](host::SongControls& controls) {
            controls.take(message.message, message.wParam, message.lParam,
                          message.time / kMicrosecondsPerMillisecond);
        });
    }
}

/// An output that has gone away: its song goes on where there still is one.
void SongPlayer::followOutputs(PlayerKeys& keys) {
    const std::string lost = m_outputs.lost(corvmo_GetClock());
    if (lost.empty()) {
        return;
    }
    std::string message = "the output '" + lost + "' takes no more messages";
    if (m_setting.devices.front() != kSynthesizer) {
        forEachSong([](host::SongControls& controls) { controls.moveToDevice(kSynthesizer); });
        message += "; the software synthesizer plays on";
    }
    keys.tell(message);
    m_setting.view.report(message);
}

void SongPlayer::suspend() {
    const bool playing = m_controls.playing();
    forEachSong([](host::SongControls& controls) { controls.pause(); });
    m_setting.view.suspend();
    ::raise(SIGSTOP);
    m_setting.view.resume();
    if (playing) {
        forEachSong([](host::SongControls& controls) {
            if (!controls.ended()) {
                controls.play();
            }
        });
    }
}

} // namespace karaoke
