// One song of the list, read and ready to be opened.
#pragma once

#include <string>
#include <utility>

#include "shared/raw_song.h"
#include "shared/song.h"
#include "shared/song_file.h"

namespace karaoke {

class PlayedSong {
public:
    PlayedSong(host::SongFile file, host::RawSong raw)
        : m_file(std::move(file)), m_raw(std::move(raw)) {}

    const host::SongFile& file() const {
        return m_file;
    }
    const host::RawSong& raw() const {
        return m_raw;
    }
    /// The song prepared for display.
    /// @param encoding  of its texts; empty = guessed
    host::Song song(const std::string& encoding) const {
        return host::songForDisplay(m_raw, m_file.name(), {.encoding = encoding});
    }

private:
    host::SongFile m_file;
    host::RawSong m_raw;
};

} // namespace karaoke
