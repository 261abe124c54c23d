// Counts a singer in.
#include "shared/count_in.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr int kMostBeats = 4;
constexpr double kPauseWorthCounting = 4; ///< seconds
constexpr double kShortestBeat = 0.4;     ///< seconds; faster ones are counted two by two
constexpr double kSecondsPerTempo = 1e-6;

double beatSeconds(const Timeline& timeline, std::uint32_t tick) {
    double beat = timeline.tempoAt(tick) * kSecondsPerTempo;
    while (beat < kShortestBeat) {
        beat *= 2;
    }
    return beat;
}

} // namespace

int countIn(const std::vector<Line>& lines, std::size_t line, const Timeline& timeline,
            std::uint32_t tick) {
    if (line >= lines.size() || lines[line].syllables.empty() || tick >= lines[line].tick()) {
        return 0;
    }
    const double start = timeline.secondsAt(lines[line].tick());
    const double lastWords = line == 0 ? 0 : timeline.secondsAt(lines[line - 1].lastTick());
    if (start - lastWords < kPauseWorthCounting) {
        return 0;
    }
    const double left = start - timeline.secondsAt(tick);
    const double beats = std::ceil(left / beatSeconds(timeline, lines[line].tick()));
    return beats > kMostBeats ? 0 : static_cast<int>(beats);
}

} // namespace host
