// The songs of `karaoke play`, one after the other.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "karaoke/play_options.h"

namespace karaoke {

/// Files in the order in which they are named; a folder stands for the songs in it and in its folders, by name.
class PlayList {
public:
    /// @throws host::SongError  a folder holds no song
    explicit PlayList(const PlayOptions& options);

    std::size_t size() const {
        return m_files.size();
    }
    /// Place of the current song, from 0.
    std::size_t place() const {
        return m_place;
    }
    const std::string& file() const {
        return m_files[m_place];
    }
    /// Goes on to another song.
    /// @param steps  1 = the next one, -1 = the previous one; before the first one the first stays
    /// @return whether there is one
    bool move(int steps);

private:
    std::vector<std::string> m_files;
    std::size_t m_place = 0;
    bool m_repeat;
};

} // namespace karaoke
