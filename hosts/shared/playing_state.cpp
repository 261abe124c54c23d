// What a player's notifications say about the song as it plays.
#include "shared/playing_state.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double kHeldFall =
    900; ///< milliseconds in which the level of a held note falls to a third
constexpr double kReleasedFall = 180; ///< the same when nothing is held
constexpr int kProgramShift = 16;
constexpr int kMaxData = 127;

/// Index of the last record before a tick; the tables are in time order.
template <typename Record>
int lastBefore(const Record* table, int count, std::uint32_t tick) {
    const auto* const due = std::partition_point(
        table, table + count, [tick](const Record& record) { return record.time < tick; });
    return static_cast<int>(due - table) - 1;
}

} // namespace

void PlayingState::take(unsigned message, std::uintptr_t wParam, std::intptr_t lParam,
                        std::uint64_t now) {
    advance(now);
    switch (message) {
    case MMN_LYRIC:
        m_lastLyric = static_cast<int>(wParam);
        return;
    case MMN_CHORD:
        m_lastChord = static_cast<int>(wParam);
        return;
    case MMN_POSITION:
        moved(static_cast<std::uint32_t>(lParam));
        return;
    default:
        if (wParam < kChannels) {
            takeChannel(message, m_channels[wParam], lParam);
        }
        return;
    }
}

void PlayingState::takeChannel(unsigned message, ChannelActivity& channel, std::intptr_t lParam) {
    switch (message) {
    case MMN_NOTEON:
        channel.level = 1;
        ++channel.sounding;
        return;
    case MMN_NOTEOFF:
        channel.sounding = std::max(channel.sounding - 1, 0);
        return;
    case MMN_PROGRAM:
    case MMN_PATCH: // follows with what was really sent
        channel.program = static_cast<int>(lParam >> kProgramShift) & kMaxData;
        return;
    case MMN_VOLUME:
        channel.volume = static_cast<int>(lParam);
        return;
    case MMN_PAN:
        channel.pan = static_cast<int>(lParam);
        return;
    case MMN_REVERB:
        channel.reverb = static_cast<int>(lParam);
        return;
    case MMN_CHORUS:
        channel.chorus = static_cast<int>(lParam);
        return;
    default:
        return;
    }
}

/// A seek announces the next lyric and chord before the position; what counts is the one before it.
void PlayingState::moved(std::uint32_t tick) {
    m_lastLyric = lastBefore(mm_GetPointerLyrics(m_player, 0), mm_GetNumLyrics(m_player), tick);
    m_lastChord = lastBefore(mm_GetPointerChords(m_player, 0), mm_GetNumChords(m_player), tick);
    silence();
}

void PlayingState::silence() {
    for (ChannelActivity& channel : m_channels) {
        channel.sounding = 0;
    }
}

void PlayingState::advance(std::uint64_t now) {
    const double passed = now > m_advanced ? static_cast<double>(now - m_advanced) : 0;
    m_advanced = std::max(now, m_advanced);
    for (ChannelActivity& channel : m_channels) {
        channel.level *= std::exp(-passed / (channel.sounding > 0 ? kHeldFall : kReleasedFall));
    }
}

} // namespace host
