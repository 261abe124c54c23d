// From song ticks to seconds.
#include "shared/timeline.h"

#include <algorithm>

#include "shared/song_events.h"

namespace host {

namespace {

constexpr std::uint32_t kSlowestTempo = 0xFFFFFF;
constexpr double kMicrosecondsPerSecond = 1e6;

/// 0 when there is no such tempo.
std::uint32_t changedTempo(std::uint32_t songTempo, float percent) {
    // Volatile, so that the old x86 floating-point unit rounds each step as others do.
    const volatile double change = static_cast<double>(percent) * 0.01;
    const volatile double difference = change * songTempo;
    const double changed = songTempo - difference;
    if (!(changed >= 1.0)) {
        return 0;
    }
    return static_cast<std::uint32_t>(std::min<double>(changed, kSlowestTempo));
}

} // namespace

Timeline::Timeline(const std::vector<MMEVENT>& events, int division, float tempoPercent)
    : m_division(std::max(division, 1)), m_songTempos{{0, kDefaultTempo}} {
    for (const MMEVENT& event : events) {
        if (event.kind == kTempoEvent) {
            m_songTempos.push_back({event.time, tempoOf(event)});
        }
    }
    applyPercent(tempoPercent);
}

Timeline Timeline::withPercent(float tempoPercent) const {
    Timeline changed = *this;
    changed.applyPercent(tempoPercent);
    return changed;
}

void Timeline::applyPercent(float percent) {
    m_steps.clear();
    for (const SongTempo& song : m_songTempos) {
        const std::uint32_t tempo = changedTempo(song.tempo, percent);
        if (m_steps.empty()) {
            m_steps.push_back({0, tempo == 0 ? kDefaultTempo : tempo, 0});
        } else if (tempo != 0) {
            m_steps.push_back({song.tick, tempo, secondsAfter(m_steps.back(), song.tick)});
        }
    }
}

const Timeline::Step& Timeline::stepAt(std::uint32_t tick) const {
    const auto after =
        std::upper_bound(m_steps.begin() + 1, m_steps.end(), tick,
                         [](std::uint32_t value, const Step& step) { return value < step.tick; });
    return *(after - 1);
}

double Timeline::secondsAfter(const Step& step, std::uint32_t tick) const {
    const double quarters = static_cast<double>(tick - step.tick) / m_division;
    return step.seconds + quarters * step.tempo / kMicrosecondsPerSecond;
}

double Timeline::secondsAt(std::uint32_t tick) const {
    return secondsAfter(stepAt(tick), tick);
}

std::uint32_t Timeline::tickAt(double seconds) const {
    const auto after =
        std::upper_bound(m_steps.begin() + 1, m_steps.end(), seconds,
                         [](double value, const Step& step) { return value < step.seconds; });
    const Step& step = *(after - 1);
    const double quarters =
        std::max(seconds - step.seconds, 0.0) * kMicrosecondsPerSecond / step.tempo;
    return step.tick + static_cast<std::uint32_t>(quarters * m_division);
}

std::uint32_t Timeline::songTempoAt(std::uint32_t tick) const {
    const auto after = std::upper_bound(
        m_songTempos.begin() + 1, m_songTempos.end(), tick,
        [](std::uint32_t value, const SongTempo& song) { return value < song.tick; });
    return (after - 1)->tempo;
}

std::uint32_t Timeline::tempoAt(std::uint32_t tick) const {
    return stepAt(tick).tempo;
}

} // namespace host
