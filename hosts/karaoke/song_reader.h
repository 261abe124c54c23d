// Reads songs without opening any output.
#pragma once

#include <memory>
#include <string>

#include "shared/engine_session.h"
#include "shared/raw_song.h"
#include "shared/song_file.h"

namespace karaoke {

/// Runs the engine without outputs and on its manual clock while it lives. No other engine may run.
class SongReader {
public:
    SongReader();
    ~SongReader();
    SongReader(const SongReader&) = delete;
    SongReader& operator=(const SongReader&) = delete;

    /// @throws host::SongError  why it cannot be played
    host::RawSong read(const host::SongFile& file);

private:
    std::unique_ptr<host::EngineSession> m_engine;
};

/// Reads one song, mended where it has to be.
/// @throws host::SongError  why it cannot be played
host::RawSong readSong(const std::string& path);

} // namespace karaoke
