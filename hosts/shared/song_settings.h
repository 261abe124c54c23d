// What a listener sets for one song.
#pragma once

#include <array>
#include <string>

#include "shared/song_events.h"

namespace host {

/// ChannelSettings::program of a channel that keeps the song's own instruments.
inline constexpr int kSongsProgram = -1;

inline constexpr int kMostTranspose = 24; ///< semitones up or down
inline constexpr float kSlowestPercent = -300;
inline constexpr float kFastestPercent = 90;
inline constexpr int kMostOffset = 127;         ///< of a channel's volume, pan, reverb and chorus
inline constexpr int kMostDisplayOffset = 5000; ///< milliseconds earlier or later

/// Of one song channel.
struct ChannelSettings {
    bool muted = false;
    bool solo = false;
    int volume = 0; ///< added to what the song sets, as are the next three
    int pan = 0;
    int reverb = 0;
    int chorus = 0;
    int program = kSongsProgram; ///< 0 to 127: this instrument, whatever the song asks for
    int bankMsb = 0;             ///< 0 to 127, with program
    int bankLsb = 0;
    bool operator==(const ChannelSettings&) const = default;
};

/// A song is played as it is with settings that equal SongSettings().
struct SongSettings {
    float tempoPercent = 0; ///< as mm_SetTempo takes it: positive = faster
    int transpose = 0;      ///< semitones; drums stay
    std::array<ChannelSettings, kChannels> channels;
    std::string encoding;  ///< of the texts; empty = guessed
    int displayOffset = 0; ///< milliseconds by which words are shown later than they are due
    bool operator==(const SongSettings&) const = default;

    bool anySolo() const;
    /// Whether the notes of a channel are left out: muted, or another one is solo.
    bool silences(int channel) const;
};

/// Settings with everything replaced that differs between two others.
/// @param before, after  what was changed, and into what
SongSettings withChanges(const SongSettings& settings, const SongSettings& before,
                         const SongSettings& after);

/// The settings that differ from the song's own, in one line: "tempo +5, key -2, channel 3 muted". Empty when
/// nothing was set.
std::string describe(const SongSettings& settings);

/// "+5", "-2", "0".
std::string signedText(int number);
std::string signedText(float number);

} // namespace host
