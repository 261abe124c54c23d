// Remembers what a listener set for each song, in one readable file.
#pragma once

#include <filesystem>
#include <optional>

#include "shared/song_file.h"
#include "shared/song_settings.h"

namespace host {

/// Songs are told apart by their bytes, so that a song may be moved or renamed. No failure stops anything: a
/// file that cannot be read holds no settings, and one that cannot be written keeps the old ones. Programs may
/// use the same file at once; the last to write a song wins.
class SettingsStore {
public:
    /// songs.json in $XDG_CONFIG_HOME/corvmo32, ~/.config/corvmo32 or %APPDATA%\corvmo32; empty when the
    /// system names no such place.
    static std::filesystem::path usualFile();

    /// @param file  need not exist, nor its folder; empty = nothing is remembered
    explicit SettingsStore(std::filesystem::path file) : m_file(std::move(file)) {}

    /// @return what was set when the song was played last; nothing when that was nothing
    std::optional<SongSettings> find(const SongFile& song) const;

    /// Replaces the song's settings; settings that equal SongSettings() are taken out of the file.
    /// @return whether the file holds them now
    bool remember(const SongFile& song, const SongSettings& settings) const;

private:
    std::filesystem::path m_file;
};

} // namespace host
