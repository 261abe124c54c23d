// The songs and what is done to them.
#include "desktop/song_desk.h"

#include <algorithm>

#include "desktop/speed.h"
#include "shared/song_loader.h"
#include "shared/wide_text.h"

namespace desktop {

namespace {

constexpr std::int16_t kResetGap = 60; ///< milliseconds that an instrument needs after a reset
constexpr double kFadeSeconds = 6;
constexpr std::uint64_t kTail = 1500; ///< milliseconds in which the last note rings

host::EngineSettings engineSettings(HWND window, const ChosenOutputs& outputs) {
    host::EngineSettings settings;
    settings.window = window;
    settings.device = outputs.first;
    settings.secondDevice = outputs.second;
    settings.resetOnOpen = true;
    settings.resetGap = kResetGap;
    return settings;
}

} // namespace

SongDesk::SongDesk(HWND window, const OutputChoice& outputs)
    : m_window(window), m_store(host::SettingsStore::usualFile()) {
    const ChosenOutputs chosen = desktop::chooseOutputs(outputs, outputNames());
    m_device = chosen.first;
    m_engine = std::make_unique<host::EngineSession>(engineSettings(window, chosen));
    m_hasOutput = m_engine->player() != nullptr;
    m_hasSecond = chosen.second.has_value();
    m_controls = std::make_unique<host::SongControls>(*m_engine, m_engine->player());
    m_second = std::make_unique<host::SongControls>(*m_engine, m_engine->secondPlayer());
}

SongDesk::~SongDesk() {
    remember();
}

void SongDesk::remember() const {
    if (hasSong()) {
        m_store.remember(*m_file, m_controls->settings());
    }
}

host::Song SongDesk::songForDisplay(const std::string& encoding) const {
    return host::songForDisplay(m_raw, host::toUtf8(m_path.native()), {.encoding = encoding});
}

/// The windows' copy of the song, whose times follow the tempo.
void SongDesk::showSong() {
    m_shown = hasSong() ? std::make_shared<const host::Song>(m_controls->song()) : nullptr;
}

void SongDesk::open(const std::filesystem::path& path) {
    host::SongFile file(path);
    remember();
    m_controls->close();
    // What the song before has posted.
    for (MSG old; PeekMessageW(&old, m_window, MMN_PROGRAM, MMN_LOOP, PM_REMOVE) != 0;) {
    }
    m_file.reset();
    m_shown.reset();
    m_loopStart.reset();
    m_endedAt.reset();
    m_endTold = false;
    m_raw = host::loadSong(m_engine->player(), file);
    m_path = path;
    const host::SongSettings settings = m_store.find(file).value_or(host::SongSettings());
    host::PlayPlan plan;
    plan.metronome = m_controls->metronome();
    plan.metronomeDevice = m_device;
    m_controls->open(file, songForDisplay(settings.encoding), settings, plan);
    m_file.emplace(std::move(file));
    m_controls->setUp();
    showSong();
}

void SongDesk::openSecond(const std::filesystem::path& path) {
    if (!m_hasSecond) {
        throw host::HostError("a second song needs a second MIDI output: choose one under "
                              "Song, MIDI outputs");
    }
    host::SongFile file(path);
    m_second->close();
    m_secondFile.reset();
    const host::RawSong raw = host::loadSong(m_engine->secondPlayer(), file);
    host::PlayPlan plan;
    plan.announcements = 0;
    m_second->open(file, host::songForDisplay(raw, host::toUtf8(path.native()), {}),
                   m_store.find(file).value_or(host::SongSettings()), plan);
    m_secondFile.emplace(std::move(file));
    m_second->setUp();
    m_second->play();
}

void SongDesk::stopSecond() {
    m_second->close();
    m_secondFile.reset();
}

std::optional<SongDesk::Place> SongDesk::place() const {
    if (!hasSong()) {
        return std::nullopt;
    }
    return Place{m_path, m_controls->position(), m_controls->playing()};
}

void SongDesk::playOrPause() {
    if (!hasSong()) {
        return;
    }
    m_endedAt.reset();
    m_endTold = false;
    if (m_controls->playing() && !m_controls->ended()) {
        m_controls->pause();
    } else {
        if (m_controls->ended()) {
            m_controls->rewind();
        }
        m_controls->play();
    }
}

void SongDesk::stop() {
    if (hasSong()) {
        m_controls->pause();
        m_controls->rewind();
    }
}

void SongDesk::rewind() {
    if (hasSong()) {
        m_controls->rewind();
    }
}

void SongDesk::seek(std::uint32_t tick) {
    if (hasSong()) {
        m_controls->seek(tick);
    }
}

void SongDesk::seekSeconds(double seconds) {
    if (hasSong()) {
        const host::Timeline& timeline = m_controls->song().timeline;
        const double here = timeline.secondsAt(m_controls->position());
        seek(timeline.tickAt(std::max(here + seconds, 0.0)));
    }
}

void SongDesk::beginLoop() {
    if (hasSong()) {
        m_loopStart = m_controls->position();
    }
}

void SongDesk::endLoop() {
    if (hasSong()) {
        setLoop(m_loopStart.value_or(0), m_controls->position());
    }
}

void SongDesk::setLoop(std::uint32_t start, std::uint32_t end) {
    if (hasSong()) {
        m_controls->setLoop(start, end);
        m_loopStart.reset();
    }
}

void SongDesk::clearLoop() {
    m_loopStart.reset();
    if (hasSong()) {
        m_controls->clearLoop();
    }
}

void SongDesk::setTempoPercent(float percent) {
    if (hasSong()) {
        m_controls->setTempoPercent(percent);
        showSong();
    }
}

void SongDesk::stepSpeed(int by) {
    if (hasSong()) {
        setTempoPercent(percentOf(speedOf(m_controls->settings().tempoPercent) + by));
    }
}

void SongDesk::setTranspose(int semitones) {
    if (hasSong()) {
        m_controls->setTranspose(semitones);
    }
}

void SongDesk::stepTranspose(int by) {
    if (hasSong()) {
        m_controls->setTranspose(m_controls->settings().transpose + by);
    }
}

void SongDesk::setChannel(int channel, const host::ChannelSettings& settings) {
    if (hasSong()) {
        m_controls->setChannel(channel, settings);
    }
}

void SongDesk::setEncoding(const std::string& encoding) {
    if (hasSong()) {
        m_controls->setEncoding(encoding, songForDisplay(encoding));
        showSong();
    }
}

void SongDesk::toggleMetronome() {
    if (hasSong()) {
        m_controls->setMetronome(!m_controls->metronome());
    }
}

void SongDesk::fadeOut() {
    if (hasSong() && m_controls->playing()) {
        m_controls->fadeOutNow(kFadeSeconds);
    }
}

void SongDesk::panic() {
    m_controls->panic();
    m_second->panic();
}

void SongDesk::take(const MSG& message, std::uint64_t now) {
    m_controls->take(message.message, message.wParam, message.lParam, now);
    m_second->take(message.message, message.wParam, message.lParam, now);
}

bool SongDesk::advance(std::uint64_t now) {
    m_controls->state().advance(now);
    if (m_secondFile && m_second->ended()) {
        stopSecond();
    }
    if (!hasSong() || m_endTold || !m_controls->ended()) {
        return false;
    }
    if (!m_endedAt) {
        m_endedAt = now;
        if (m_controls->playing()) {
            // Faded out: the song itself would play on unheard.
            m_controls->pause();
        }
    }
    m_endTold = now - *m_endedAt >= kTail;
    return m_endTold;
}

void SongDesk::describe(SessionState& state) const {
    state.hasOutput = m_hasOutput;
    state.song = m_shown;
    state.secondPlaying = m_secondFile.has_value();
    state.loopStart = m_loopStart;
    state.metronome = m_controls->metronome();
    if (!m_shown) {
        return;
    }
    state.settings = m_controls->settings();
    for (int channel = 0; channel < host::kChannels; ++channel) {
        state.channels[static_cast<std::size_t>(channel)] = m_controls->state().channel(channel);
    }
    state.position = m_controls->position();
    state.shownPosition = m_controls->shownPosition();
    state.lyric = m_controls->shownLyric();
    state.chord = m_controls->shownChord();
    state.playing = m_controls->playing();
    state.fading = m_controls->fadingOut();
    if (!m_controls->ranges().empty()) {
        state.loop = m_controls->ranges().front();
    }
    state.mended = host::toWide(host::mendedInOneLine(m_file->notes()));
}

} // namespace desktop
