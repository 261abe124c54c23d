// The settings of last time of one song.
#include "karaoke/remembered.h"

namespace karaoke {

Remembered::Remembered(const host::SettingsStore& store, const host::SongFile& song,
                       const PlayOptions& options)
    : m_store(store), m_song(song), m_begun(options.settings) {
    if (options.forget) {
        m_store.remember(song, {});
        return;
    }
    m_offered = m_store.find(song);
    m_stored = m_offered.value_or(host::SongSettings());
    if (m_offered && options.remember) {
        m_begun = use(m_begun);
    }
}

host::SongSettings Remembered::use(const host::SongSettings& now) {
    m_offered.reset();
    m_begun = host::withChanges(now, {}, m_stored);
    return m_begun;
}

void Remembered::forget(const host::SongSettings& now) {
    m_store.remember(m_song, {});
    m_offered.reset();
    m_stored = {};
    m_begun = now;
}

void Remembered::keep(const host::SongSettings& now) const {
    if (now != m_begun) {
        m_store.remember(m_song, host::withChanges(m_stored, m_begun, now));
    }
}

} // namespace karaoke
