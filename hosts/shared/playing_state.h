// What a player's notifications say about the song as it plays, gathered for views.
#pragma once

#include <array>
#include <cstdint>

#include "corvmo32.h"
#include "shared/song_events.h"

namespace host {

/// What sounds on one song channel.
struct ChannelActivity {
    int program = -1; ///< 0 to 127, what was sent last; -1 = nothing yet
    int volume = -1;  ///< the song's controller 7; -1 = none yet, as for the next three
    int pan = -1;     ///< controller 10
    int reverb = -1;  ///< controller 91
    int chorus = -1;  ///< controller 93
    int sounding = 0; ///< notes that were begun and not ended
    double level = 0; ///< 0 to 1: full when a note begins, then falling
    bool operator==(const ChannelActivity&) const = default;
};

/// Takes the notifications of one player in their order. All calls from one thread.
class PlayingState {
public:
    /// What has to be announced for this to be complete.
    static constexpr std::uint16_t kAnnouncements =
        MMOPT_NOTES | MMOPT_CHANNELS | MMOPT_LYRICS | MMOPT_CHORDS | MMOPT_POSITION | MMOPT_TEMPO;

    explicit PlayingState(HMIDIOUT player) : m_player(player) {}

    /// @param message  MMN_...; others are not read
    /// @param now      milliseconds of any clock that goes on, the same in every call
    void take(unsigned message, std::uintptr_t wParam, std::intptr_t lParam, std::uint64_t now);

    /// Lets the levels fall.
    void advance(std::uint64_t now);

    /// Index of the lyric or chord that was due last; 0 or below = none yet.
    int lastLyric() const {
        return m_lastLyric;
    }
    int lastChord() const {
        return m_lastChord;
    }
    const ChannelActivity& channel(int channel) const {
        return m_channels.at(static_cast<std::size_t>(channel));
    }
    /// Nothing sounds any more.
    void silence();

private:
    void takeChannel(unsigned message, ChannelActivity& channel, std::intptr_t lParam);
    void moved(std::uint32_t tick);

    HMIDIOUT m_player;
    int m_lastLyric = -1;
    int m_lastChord = -1;
    std::uint64_t m_advanced = 0;
    std::array<ChannelActivity, kChannels> m_channels;
};

} // namespace host
