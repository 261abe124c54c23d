// What the player shows its listener.
#pragma once

#include <string>

#include "karaoke/desk.h"
#include "karaoke/keys.h"

namespace karaoke {

/// Shows songs while they are played. Calls come from one thread.
class SongView {
public:
    virtual ~SongView() = default;

    /// A song begins; its controls hold it until finish().
    virtual void begin(const Desk& desk) = 0;
    /// Shows the song as it stands now; called many times a second.
    virtual void update() = 0;
    /// The song is over.
    /// @param toItsEnd  false = it was stopped
    virtual void finish(bool toItsEnd) = 0;
    /// The next key that the listener has pressed; kNoKey = none. Does not wait.
    virtual Key key() {
        return kNoKey;
    }
    /// A message for standard error, told when it does not spoil what is shown.
    virtual void report(const std::string& message);
    /// All songs are over.
    virtual void close() {}
    /// The program goes to the background, or comes back.
    virtual void suspend() {}
    virtual void resume() {}
    /// Makes the terminal usable again, from any thread, when the program has to end at once.
    virtual void abandon() {}
};

} // namespace karaoke
