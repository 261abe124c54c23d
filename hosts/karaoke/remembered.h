// The settings of last time of one song: offered, used, and replaced by what the listener changes.
#pragma once

#include <optional>

#include "karaoke/play_options.h"
#include "shared/settings_store.h"

namespace karaoke {

class Remembered {
public:
    /// @param store, song  must outlive this
    Remembered(const host::SettingsStore& store, const host::SongFile& song,
               const PlayOptions& options);

    /// Settings that the song begins with.
    const host::SongSettings& begin() const {
        return m_begun;
    }
    /// What was set last time and is not in force yet.
    const std::optional<host::SongSettings>& offered() const {
        return m_offered;
    }
    /// Takes the offer.
    /// @param now  settings in force
    /// @return those with the ones of last time
    host::SongSettings use(const host::SongSettings& now);
    void forget(const host::SongSettings& now);
    /// Remembers what the listener has changed since the beginning.
    void keep(const host::SongSettings& now) const;

private:
    const host::SettingsStore& m_store;
    const host::SongFile& m_song;
    host::SongSettings m_stored;
    host::SongSettings m_begun;
    std::optional<host::SongSettings> m_offered;
};

} // namespace karaoke
