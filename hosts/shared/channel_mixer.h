// Puts a listener's channel settings into a player, before the song is set up and while it plays.
#pragma once

#include <cstdint>

#include "corvmo32.h"
#include "shared/song_settings.h"

namespace host {

/// Works on the song that the player holds.
class ChannelMixer {
public:
    explicit ChannelMixer(HMIDIOUT player) : m_player(player) {}

    /// Settings that must be in force before the song's set-up is sent; between mm_Open and
    /// mm_PlayFirstNote.
    void prepare(const SongSettings& settings) const;

    /// Sends what the song's set-up, or the channel map of a jump, has not brought about.
    void complete(const SongSettings& settings) const;

    /// Puts one channel's mix and instrument into force at once, where they differ.
    void change(int channel, const ChannelSettings& before, const ChannelSettings& now) const;

    /// Mutes the channels that the settings silence, at once.
    /// @param silence  what sounds on them ends
    void muteAsSet(const SongSettings& settings, bool silence) const;

private:
    void setPatch(int channel, const ChannelSettings& settings) const;
    void sendPatch(int channel, const ChannelSettings& settings) const;
    int songValue(int channel, int controller, int otherwise) const;
    int songProgram(int channel) const;
    template <typename Matches>
    int lastValue(int channel, int otherwise, Matches matches) const;

    HMIDIOUT m_player;
};

} // namespace host
