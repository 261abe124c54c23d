// What the keys of the player do.
#pragma once

#include <span>

#include "karaoke/desk.h"
#include "karaoke/keys.h"
#include "karaoke/played_song.h"
#include "karaoke/remembered.h"

namespace karaoke {

/// What becomes of the song after a key.
enum class KeyOutcome { GoOn, Next, Previous, Quit };

/// Keys that belong together, for the help page.
struct KeyHelp {
    const char* keys;
    const char* effect;
};
std::span<const KeyHelp> keyHelp();

/// Turns keys into calls. One object serves one playing of a song.
class PlayerKeys {
public:
    /// @param companion  a song that plays along and shares the transport; may be null
    PlayerKeys(Desk& desk, const PlayedSong& song, Remembered& remembered,
               host::SongControls* companion)
        : m_desk(desk), m_song(song), m_remembered(remembered), m_companion(companion) {}

    KeyOutcome press(Key key);

    /// Shows a line to the listener for a while.
    void tell(const std::string& notice);

private:
    using Action = void (PlayerKeys::*)(int amount);
    struct Binding {
        Action action;
        Key key;
        int amount;
    };
    static const Binding kBindings[];

    void leave(int outcome);
    void pause(int);
    void rewind(int);
    void seekBars(int bars);
    void seekMarker(int direction);
    void loopStart(int);
    void loopEnd(int);
    void loopClear(int);
    void tempo(int percent);
    void transpose(int semitones);
    void selectChannel(int steps);
    void mute(int);
    void solo(int);
    void volume(int amount);
    void pan(int amount);
    void reverb(int amount);
    void chorus(int amount);
    void instrument(int steps);
    void resetChannel(int);
    void fadeOut(int seconds);
    void metronome(int);
    void panic(int);
    void displayOffset(int milliseconds);
    void encoding(int);
    void useRemembered(int);
    void forget(int);
    void help(int);

    const host::ChannelSettings& channel() const;
    void changeChannel(const host::ChannelSettings& settings, const std::string& notice);
    void offset(int host::ChannelSettings::*value, int amount, const char* name);

    Desk& m_desk;
    const PlayedSong& m_song;
    Remembered& m_remembered;
    host::SongControls* m_companion;
    KeyOutcome m_outcome = KeyOutcome::GoOn;
};

} // namespace karaoke
