// What the player shows its listener.
#pragma once

#include <cstdint>

#include "shared/song.h"

namespace karaoke {

/// Shows one song while it is played. Calls come from one thread.
class SongView {
public:
    virtual ~SongView() = default;

    /// The song begins; it outlives finish().
    virtual void begin(const host::Song& song) = 0;
    /// The engine announced a lyric or chord.
    virtual void lyric(int index) = 0;
    virtual void chord(int index) = 0;
    /// The song stands at a tick; called many times a second, after announcements too.
    virtual void position(std::uint32_t tick) = 0;
    /// The song is over.
    /// @param toItsEnd  false = it was stopped
    virtual void finish(bool toItsEnd) = 0;
    /// The program goes to the background, or comes back.
    virtual void suspend() {}
    virtual void resume() {}
    /// Makes the terminal usable again, from any thread, when the program has to end at once.
    virtual void abandon() {}
};

} // namespace karaoke
