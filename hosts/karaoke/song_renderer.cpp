// Turns a song into sound.
#include "karaoke/song_renderer.h"

#include <signal.h>

#include <algorithm>
#include <cmath>

#include "corvmo32_linux.h"
#include "karaoke/play_plan.h"
#include "shared/error_texts.h"

namespace karaoke {

namespace {

constexpr std::int16_t kPeriod = 1;    ///< milliseconds: nobody waits for the timer
constexpr std::int16_t kResetGap = 60; ///< milliseconds, as in playing
constexpr double kMillisecondsPerSecond = 1000;
constexpr double kLongest = 3 * 3600;  ///< seconds; a WAV file of the highest rate holds no more
constexpr std::uint64_t kBlock = 1024; ///< frames that are written at once
constexpr std::size_t kChannels = 2;
constexpr float kSilence = 1.0F / 16384; ///< two steps of 16 bits
constexpr double kQuiet = 0.2;           ///< seconds of silence that end the sound
constexpr double kLastFade = 2;          ///< seconds over which a sound that does not end is faded
constexpr double kDecibelsPerFactor = 20;

host::EngineSettings engineSettings(const RenderOptions& options, HWND window) {
    corvmo_UseRenderedOutput(static_cast<UINT>(options.rate));
    corvmo_UseManualClock(0);
    const std::string& font = options.play.soundFont;
    corvmo_SetSoundFont(font.empty() ? nullptr : font.c_str());
    host::EngineSettings settings;
    settings.window = window;
    settings.timerPeriod = kPeriod;
    settings.resetOnOpen = options.play.reset.has_value();
    settings.mode = options.play.reset.value_or(MMMODE_GM);
    settings.resetGap = kResetGap;
    return settings;
}

/// Seconds that a plan takes, without the lead to the song's first note.
double lengthOf(const host::Song& song, const host::PlayPlan& plan) {
    const auto between = [&](std::uint32_t start, std::uint32_t end) {
        const std::uint32_t last = end == 0 ? song.endTick : std::min(end, song.endTick);
        return std::max(song.timeline.secondsAt(last) - song.timeline.secondsAt(start), 0.0);
    };
    if (plan.ranges.empty()) {
        return between(plan.from, 0);
    }
    double sum = 0;
    for (const host::PlayRange& range : plan.ranges) {
        sum += between(range.start, range.end) * range.passes;
    }
    return sum;
}

} // namespace

SongRenderer::SongRenderer(const RenderOptions& options)
    : m_options(options), m_engine(engineSettings(options, m_window.handle())),
      m_controls(m_engine, m_engine.player()), m_block(kBlock * kChannels),
      m_gain(static_cast<float>(std::pow(10.0, options.gain / kDecibelsPerFactor))) {}

SongRenderer::~SongRenderer() = default;

void SongRenderer::render(const host::SongFile& file, const host::Song& song, SoundFile& sound,
                          ProgressBar& progress, StopSignals& signals) {
    host::PlayPlan plan = planOf(m_options.play, 0);
    plan.announcements = 0;
    planRanges(plan, m_options.play, song);
    const double length = lengthOf(song, plan);
    if (length > kLongest) {
        throw host::SongError(file.name(),
                              "lasts longer than the three hours that can be rendered");
    }
    m_controls.open(file, song, m_options.play.settings, plan);
    m_controls.setUp();
    // The engine goes straight to the first note; in the file the words keep their times.
    const std::uint32_t from = plan.ranges.empty() ? plan.from : plan.ranges.front().start;
    m_start = song.timeline.secondsAt(m_controls.position()) - song.timeline.secondsAt(from);
    writeUpTo(m_start, sound);
    m_controls.play();
    while (!m_controls.ended() && !signals.stopping()) {
        if (signals.takeSuspend()) {
            ::raise(SIGSTOP);
        }
        passTime(sound);
        progress.show(seconds() / length);
    }
    dieAway(sound, signals);
    m_controls.close();
}

double SongRenderer::seconds() const {
    return static_cast<double>(m_frames) / m_options.rate;
}

void SongRenderer::passTime(SoundFile& sound) {
    corvmo_AdvanceClock(kPeriod);
    m_played += kPeriod;
    writeUpTo(m_start + static_cast<double>(m_played) / kMillisecondsPerSecond, sound);
    for (corvmo_message message{}; corvmo_WaitMessage(m_window.handle(), &message, 0) != 0;) {
        m_controls.take(message.message, message.wParam, message.lParam, m_played);
    }
}

/// The sound after the song's end: until nothing is heard any more, or for as long as it may last.
void SongRenderer::dieAway(SoundFile& sound, StopSignals& signals) {
    const double end = seconds();
    const double limit = end + m_options.tail;
    const double fade = std::min(kLastFade, m_options.tail);
    const float gain = m_gain;
    double heard = end;
    while (seconds() < limit && seconds() < heard + kQuiet && !signals.stopping()) {
        const double left = (limit - seconds()) / fade;
        m_gain = gain * static_cast<float>(std::clamp(left, 0.0, 1.0));
        passTime(sound);
        if (m_blockPeak > kSilence) {
            heard = seconds();
        }
    }
}

void SongRenderer::writeUpTo(double seconds, SoundFile& sound) {
    const auto target = static_cast<std::uint64_t>(std::llround(seconds * m_options.rate));
    while (m_frames < target) {
        write(std::min(target - m_frames, kBlock), sound);
    }
}

void SongRenderer::write(std::uint64_t frames, SoundFile& sound) {
    if (corvmo_RenderAudio(m_block.data(), frames) == 0) {
        throw host::HostError(
            "there is no sound font: install one (timgm6mb-soundfont) or name one "
            "with --soundfont");
    }
    m_blockPeak = 0;
    for (std::size_t i = 0; i < frames * kChannels; ++i) {
        m_block[i] *= m_gain;
        m_blockPeak = std::max(m_blockPeak, std::abs(m_block[i]));
    }
    m_peak = std::max(m_peak, m_blockPeak);
    sound.write(m_block.data(), frames);
    m_frames += frames;
}

} // namespace karaoke
