// The transport of a song and its settings while it plays.
#include "shared/song_controls.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "shared/fade_curve.h"
#include "shared/song_loader.h"

namespace host {

namespace {

constexpr std::int16_t kSilence = 1;
constexpr std::int16_t kKeepSounding = 0; ///< the player is halted: there is nothing to silence
constexpr std::int16_t kEndless = 32767;
constexpr double kMillisecondsPerSecond = 1000;
constexpr std::uint32_t kNever = 0x7FFFFFFF; ///< milliseconds

/// Controllers, with the value that silences.
constexpr std::array<std::array<std::uint8_t, 2>, 4> kPanic = {
    {{64, 0}, {66, 0}, {123, 0}, {120, 0}}};

/// A click that is heard among drums.
MMCLICK metronomeOn(std::uint32_t device, bool on) {
    constexpr std::uint16_t kHighWoodBlock = 76;
    constexpr std::uint16_t kLowWoodBlock = 77;
    MMCLICK click{};
    click.clickOn = on ? 1 : 0;
    click.clickDevice = static_cast<std::int16_t>(device);
    click.clickChannel = kDrumChannel;
    click.clickAccentNote = kHighWoodBlock;
    click.clickAccentVelocity = 120;
    click.clickNote = kLowWoodBlock;
    click.clickVelocity = 100;
    return click;
}

void replaceDrums(HMIDIOUT player, const std::vector<MMNOTEPAIR>& drums) {
    std::array<MMNOTEPAIR, 10> pairs{};
    pairs.fill({-1, -1});
    std::copy_n(drums.begin(), std::min(drums.size(), pairs.size()), pairs.begin());
    mm_SetReplaceNotes(player, kDrumChannel, pairs.data(), kKeepSounding);
}

std::uint32_t milliseconds(double seconds) {
    return static_cast<std::uint32_t>(std::lround(std::max(seconds, 0.0) * kMillisecondsPerSecond));
}

/// Lyric or chord that stands last at a position or before.
template <typename Tick>
int lastUpTo(int count, std::uint32_t position, Tick tickOf) {
    int last = -1;
    while (last + 1 < count && tickOf(last + 1) <= position) {
        ++last;
    }
    return last;
}

} // namespace

/// Halts a player in silence while it lives, and lets it go on if it was playing.
class SongControls::Halt {
public:
    explicit Halt(SongControls& controls) : m_controls(controls), m_resume(controls.m_playing) {
        controls.pause();
    }
    ~Halt() {
        if (m_resume) {
            m_controls.play();
        }
    }
    Halt(const Halt&) = delete;
    Halt& operator=(const Halt&) = delete;

private:
    SongControls& m_controls;
    bool m_resume;
};

SongControls::SongControls(EngineSession& engine, HMIDIOUT player)
    : m_engine(engine), m_player(player), m_mixer(player), m_state(player) {}

SongControls::~SongControls() {
    close();
}

void SongControls::open(const SongFile& file, Song song, const SongSettings& settings,
                        const PlayPlan& plan) {
    close();
    m_song.emplace(std::move(song));
    m_settings = settings;
    m_plan = plan;
    m_practice = plan.practice;
    m_ranges = m_practice ? std::vector{m_practice->range} : plan.ranges;
    m_practicePercent = m_practice ? m_practice->start : 0;
    m_state = PlayingState(m_player);
    m_playing = m_ended = m_fading = false;
    m_metronome = plan.metronome;
    openPlayer(file, plan);
    installRanges();
    applyTempo();
    mm_SetTranspose(m_player, static_cast<std::int16_t>(settings.transpose), kKeepSounding);
    m_mixer.prepare(settings);
    replaceDrums(m_player, plan.drums);
}

void SongControls::openPlayer(const SongFile& file, const PlayPlan& plan) {
    const MMCLICK click = metronomeOn(plan.metronomeDevice, plan.metronome);
    m_open = true;
    if (mm_Open(m_player, file.enginePath().c_str(), plan.announcements, 0, 0, &click) == 0) {
        const std::string reason = reasonOfFailure(m_player, file);
        close();
        throw SongError(file.name(), reason);
    }
}

void SongControls::close() {
    if (m_open) {
        m_open = false;
        m_playing = false;
        mm_StopSync(m_player);
        mm_Close(m_player);
    }
}

void SongControls::installRanges() {
    if (m_ranges.empty()) {
        mm_SetLoop(m_player, nullptr);
        return;
    }
    std::array<MMLOOP, MM_MAX_LOOPS> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i].start = MMLOOP_UNUSED;
        if (i < m_ranges.size()) {
            const PlayRange& range = m_ranges[i];
            table[i].start = range.start;
            table[i].end = std::min(range.end, m_song->endTick);
            table[i].repeats =
                static_cast<std::int16_t>(range.passes == 0 ? kEndless : range.passes);
        }
    }
    mm_SetLoop(m_player, table.data());
}

void SongControls::setUp() {
    mm_PlayFirstNote(m_player);
    const std::uint32_t first = m_ranges.empty() ? 0 : m_ranges.front().start;
    const std::uint32_t from = m_plan.from != 0 ? m_plan.from : first;
    if (from != 0) {
        goTo(from);
    } else {
        m_mixer.complete(m_settings);
    }
    startFadeIn();
    m_fadeSeconds = std::min(m_plan.fadeOut, secondsLeft());
    planFadeOut();
}

void SongControls::play() {
    if (ended()) {
        rewind();
    }
    mm_StartSync(m_player);
    m_playing = true;
}

void SongControls::pause() {
    mm_PauseSync(m_player);
    m_playing = false;
    m_state.silence();
}

void SongControls::rewind() {
    const Halt halt(*this);
    m_ended = false;
    mm_RewindSync(m_player);
    installRanges();
    setUp();
}

/// The player is halted.
void SongControls::goTo(std::uint32_t tick) {
    const std::uint32_t target = std::min(tick, m_song->endTick);
    mm_CreateMap(m_player, target);
    mm_SendMap(m_player, target);
    m_mixer.complete(m_settings);
    planFadeOut();
}

void SongControls::seek(std::uint32_t tick) {
    const Halt halt(*this);
    if (m_ended) {
        m_ended = false;
        installRanges();
    }
    goTo(tick);
}

void SongControls::seekBars(int bars) {
    const BarPosition here = m_song->bars.at(position());
    std::int64_t bar = std::int64_t{here.bar} + bars;
    if (bars < 0 && here.beat > 1) {
        ++bar;
    }
    seek(m_song->bars.tickOf(static_cast<std::uint32_t>(std::max<std::int64_t>(bar, 1))));
}

bool SongControls::seekMarker(int direction) {
    const std::uint32_t here = position();
    // A listener who goes back twice in a row means the marker before.
    const std::uint32_t beat = m_song->bars.beatTicksAt(here);
    const Marker* chosen = nullptr;
    for (const Marker& marker : m_song->markers) {
        if (direction < 0 && marker.tick + beat < here) {
            chosen = &marker;
        } else if (direction > 0 && marker.tick > here) {
            chosen = &marker;
            break;
        }
    }
    if (chosen != nullptr) {
        seek(chosen->tick);
    }
    return chosen != nullptr;
}

void SongControls::setLoop(std::uint32_t start, std::uint32_t end) {
    if (start == end) {
        return;
    }
    m_practice.reset();
    m_ranges = {{std::min(start, end), std::max(start, end), 0}};
    installRanges();
    applyTempo();
}

void SongControls::clearLoop() {
    m_practice.reset();
    m_ranges.clear();
    installRanges();
    applyTempo();
}

void SongControls::setTempoPercent(float percent) {
    m_practice.reset();
    m_settings.tempoPercent = std::clamp(percent, kSlowestPercent, kFastestPercent);
    applyTempo();
}

void SongControls::applyTempo() {
    m_song->timeline = m_song->timeline.withPercent(tempoPercent());
    mm_SetTempo(m_player, m_song->timeline.songTempoAt(position()), tempoPercent());
    if (!m_fading) {
        planFadeOut();
    }
}

void SongControls::setTranspose(int semitones) {
    m_settings.transpose = std::clamp(semitones, -kMostTranspose, kMostTranspose);
    mm_SetTranspose(m_player, static_cast<std::int16_t>(m_settings.transpose), kSilence);
}

void SongControls::setChannel(int channel, const ChannelSettings& settings) {
    ChannelSettings& own = m_settings.channels.at(static_cast<std::size_t>(channel));
    const ChannelSettings before = own;
    own = settings;
    m_mixer.change(channel, before, settings);
    m_mixer.muteAsSet(m_settings, true);
}

void SongControls::setDisplayOffset(int milliseconds) {
    m_settings.displayOffset = std::clamp(milliseconds, -kMostDisplayOffset, kMostDisplayOffset);
}

void SongControls::setEncoding(const std::string& encoding, Song song) {
    m_settings.encoding = encoding;
    song.timeline = song.timeline.withPercent(tempoPercent());
    m_song.emplace(std::move(song));
}

void SongControls::setSettings(const SongSettings& settings) {
    for (int channel = 0; channel < kChannels; ++channel) {
        setChannel(channel, settings.channels[static_cast<std::size_t>(channel)]);
    }
    setTempoPercent(settings.tempoPercent);
    setTranspose(settings.transpose);
    setDisplayOffset(settings.displayOffset);
}

void SongControls::setMetronome(bool on) {
    m_metronome = on;
    const EngineStands stands(m_engine);
    MIDIOUT& record = *mm_GetMM(m_player);
    record.click.clickOn = on ? 1 : 0;
    // The engine counts beats from the song's beginning; the first click waits for one.
    const std::uint32_t beat = m_song->bars.beatTicksAt(record.ticks);
    record.click.nextClick = (record.ticks / beat + 1) * beat;
}

void SongControls::startFadeIn() {
    if (m_plan.fadeIn > 0) {
        const MMFADE fade = fadeIn(milliseconds(m_plan.fadeIn));
        mm_SetFadeIn(m_player, &fade);
    }
}

double SongControls::secondsLeft() const {
    return m_song->seconds() - m_song->timeline.secondsAt(position());
}

/// The fade at the song's end in the place of any other. A fade's time runs while the song plays.
void SongControls::planFadeOut() {
    if (m_plan.fadeOut > 0) {
        const double left = secondsLeft();
        const double fading = std::min(m_plan.fadeOut, left);
        // A position inside the fade is as soft as playing there would have made it.
        const double share = fading < m_fadeSeconds ? fading / m_fadeSeconds : 1;
        startFadeOut(milliseconds(left - fading), milliseconds(fading),
                     static_cast<std::int32_t>(share * kFullLevel));
    } else if (m_fading) {
        startFadeOut(kNever, 1, kFullLevel);
    }
    m_fading = false;
}

void SongControls::fadeOutNow(double seconds) {
    startFadeOut(0, milliseconds(seconds), kFullLevel);
    m_fading = true;
}

void SongControls::startFadeOut(std::uint32_t start, std::uint32_t length, std::int32_t level) {
    const MMFADE fade = fadeOut(start, std::max(length, 1u), level);
    mm_SetFadeOut(m_player, &fade);
}

void SongControls::panic() {
    for (const auto& [controller, value] : kPanic) {
        for (int channel = 0; channel < kChannels; ++channel) {
            const auto index = static_cast<std::size_t>(channel);
            const std::uint32_t status = static_cast<std::uint32_t>(ChannelMessage::Controller) |
                                         mm_GetChannelOut(m_player)[index];
            const HMIDIOUT device = mm_GetMM(m_player)->channelDevice[index];
            mm_ShortMessage(device,
                            status | static_cast<std::uint32_t>(controller << 8 | value << 16));
        }
    }
    m_state.silence();
}

void SongControls::routeTo(std::uint32_t device) {
    for (std::int16_t channel = 0; channel < kChannels; ++channel) {
        mm_SetChannelDevice(m_player, channel, static_cast<std::int16_t>(device), 0);
    }
}

void SongControls::moveToDevice(std::uint32_t device) {
    const Halt halt(*this);
    routeTo(device);
    goTo(position());
}

void SongControls::take(unsigned message, std::uintptr_t wParam, std::intptr_t lParam,
                        std::uint64_t now) {
    if (message == MMN_END) {
        // Two players on one output have one handle.
        const MIDIOUT& record = *mm_GetMM(m_player);
        if (m_playing && record.playing == 0) {
            m_ended = true;
            m_playing = false;
            m_state.silence();
        }
        return;
    }
    if (message == MMN_LOOP) {
        followPractice();
    }
    if (m_plan.announcements != 0) {
        m_state.take(message, wParam, lParam, now);
    }
}

void SongControls::followPractice() {
    if (!m_practice) {
        return;
    }
    const float percent = std::min(
        m_practice->start + m_practice->step * static_cast<float>(pass() - 1), m_practice->limit);
    if (percent != m_practicePercent) {
        m_practicePercent = percent;
        applyTempo();
    }
}

int SongControls::pass() const {
    const EngineStands stands(m_engine);
    const MMLOOP* const range = mm_GetMM(m_player)->curLoop;
    return range == nullptr ? 1 : range->repeatsSet - range->repeats + 1;
}

std::uint32_t SongControls::position() const {
    return mm_GetTicks(m_player);
}

bool SongControls::ended() const {
    const MMFADE& fade = mm_GetMM(m_player)->fadeOut;
    const bool faded = m_fading && fade.active != 0 && fade.time >= fade.segmentEnd[4];
    return m_ended || faded;
}

std::uint32_t SongControls::tempo() const {
    return mm_GetTempo(m_player);
}

std::uint32_t SongControls::shownPosition() const {
    if (m_settings.displayOffset == 0) {
        return position();
    }
    const double later = m_settings.displayOffset / kMillisecondsPerSecond;
    return m_song->timeline.tickAt(m_song->timeline.secondsAt(position()) - later);
}

int SongControls::shownLyric() const {
    if (m_settings.displayOffset == 0 && m_plan.announcements != 0) {
        return m_state.lastLyric();
    }
    return lastUpTo(mm_GetNumLyrics(m_player), shownPosition(), [this](int index) {
        return mm_GetPointerLyrics(m_player, static_cast<std::int16_t>(index))->time;
    });
}

int SongControls::shownChord() const {
    if (m_settings.displayOffset == 0 && m_plan.announcements != 0) {
        return m_state.lastChord();
    }
    return lastUpTo(mm_GetNumChords(m_player), shownPosition(), [this](int index) {
        return mm_GetPointerChords(m_player, static_cast<std::int16_t>(index))->time;
    });
}

} // namespace host
