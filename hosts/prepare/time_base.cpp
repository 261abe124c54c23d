// What a song's ticks are worth.
#include "prepare/time_base.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <string>

namespace host {

namespace {

constexpr std::uint16_t kFrameTimes =
    0x8000; ///< bit of a division that counts parts of video frames
constexpr std::uint16_t kMaxDivision = 960;
constexpr std::uint16_t kFinestEnough =
    480; ///< a divisor from here on is better than a finer division
constexpr std::uint16_t kAssumedDivision = 480;
constexpr std::uint64_t kDefaultTempo = 500000;
constexpr std::uint64_t kMicroseconds = 1000000; ///< of a second
constexpr int kDropFrames = 29; ///< stands for 29.97, that is 30000 in 1001 seconds

/// Ticks in a number of seconds.
struct Rate {
    std::uint64_t ticks = 0; ///< 0 = the division makes no sense
    std::uint64_t seconds = 1;
};

Rate rateOf(int frames, std::uint64_t ticksPerFrame) {
    switch (frames) {
    case 24:
    case 25:
    case 30:
        return {static_cast<std::uint64_t>(frames) * ticksPerFrame, 1};
    case kDropFrames:
        return {30000 * ticksPerFrame, 1001};
    default:
        return {};
    }
}

/// A quarter note of a whole number of microseconds whose ticks are exactly as long as the file's; of those
/// the one nearest to the default tempo. At all rates the smallest such division lies below 960.
TimeBase musicalTime(const Rate& rate) {
    const std::uint64_t time = rate.seconds * kMicroseconds;
    const std::uint64_t step = rate.ticks / std::gcd(rate.ticks, time);
    const std::uint64_t wanted = rate.ticks * kDefaultTempo / time;
    const std::uint64_t most = std::max<std::uint64_t>(kMaxDivision / step, 1);
    const std::uint64_t steps = std::clamp<std::uint64_t>((wanted + step / 2) / step, 1, most);
    const auto division = static_cast<std::uint16_t>(steps * step);
    return {division, division, static_cast<std::uint32_t>(division * time / rate.ticks)};
}

/// The finest exact divisor that is fine enough; without one the finest division there is.
std::uint16_t playableDivision(std::uint16_t division) {
    for (std::uint16_t candidate = kMaxDivision; candidate >= kFinestEnough; --candidate) {
        if (division % candidate == 0) {
            return candidate;
        }
    }
    return kMaxDivision;
}

TimeBase assumed(Notes& notes) {
    notes.add("the header does not say how long a tick is; " + std::to_string(kAssumedDivision) +
              " ticks to the quarter note were assumed");
    return {kAssumedDivision, kAssumedDivision, 0};
}

} // namespace

std::uint32_t TimeBase::scaled(std::uint64_t tick) const {
    const std::uint64_t half = oldDivision; // of twice the divisor
    const std::uint64_t value = scales() ? (tick * division * 2 + half) / (half * 2) : tick;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, UINT32_MAX));
}

TimeBase timeBaseOf(std::uint16_t division, Notes& notes) {
    if ((division & kFrameTimes) != 0) {
        const int frames = -static_cast<std::int8_t>(division >> 8);
        const Rate rate = rateOf(frames, division & 0xFF);
        if (rate.ticks == 0) {
            return assumed(notes);
        }
        notes.add("times counted in video frames (" +
                  std::string(frames == kDropFrames ? "29.97" : std::to_string(frames)) +
                  " a second) were turned into musical time");
        return musicalTime(rate);
    }
    if (division == 0) {
        return assumed(notes);
    }
    if (division <= kMaxDivision) {
        return {division, division, 0};
    }
    const std::uint16_t target = playableDivision(division);
    notes.add("times of " + std::to_string(division) +
              " ticks to the quarter note are too fine to be played; rounded to " +
              std::to_string(target));
    return {target, division, 0};
}

} // namespace host
