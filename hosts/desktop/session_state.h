// Where everything stands, as the windows show it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "shared/playing_state.h"
#include "shared/song.h"
#include "shared/song_controls.h"
#include "shared/song_settings.h"

namespace desktop {

/// A copy: the session goes on while a window reads it.
struct SessionState {
    enum class Engine { Starting, Runs, Failed };
    Engine engine = Engine::Starting;
    bool hasOutput = false; ///< false: songs play in silence
    std::shared_ptr<const host::Song> song;
    host::SongSettings settings;
    std::array<host::ChannelActivity, host::kChannels> channels{};
    std::uint32_t position = 0;      ///< tick
    std::uint32_t shownPosition = 0; ///< tick that the words are shown for
    int lyric = -1;
    int chord = -1;
    bool playing = false;
    bool fading = false;
    bool metronome = false;
    std::optional<host::PlayRange> loop;
    std::optional<std::uint32_t> loopStart; ///< set, and the end not yet
    bool secondPlaying = false;
    std::wstring mended; ///< what had to be mended in the song's file, in one line
};

} // namespace desktop
