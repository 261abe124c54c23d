// One song in one of the engine's players, and everything that a listener can do to it.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "shared/channel_mixer.h"
#include "shared/engine_session.h"
#include "shared/playing_state.h"
#include "shared/song.h"
#include "shared/song_file.h"
#include "shared/song_settings.h"

namespace host {

/// A stretch of the song that is played some times.
struct PlayRange {
    std::uint32_t start; ///< first tick
    std::uint32_t end;   ///< tick at which it ends; 0 = the end of the song
    int passes;          ///< 0 = until the listener ends it
    bool operator==(const PlayRange&) const = default;
};

/// A range that becomes faster with every pass, in percent as mm_SetTempo takes them.
struct Practice {
    PlayRange range;
    float start;
    float step;
    float limit;
};

/// How a song is to be played, beside its settings.
struct PlayPlan {
    std::uint32_t from = 0; ///< tick at which playing begins; 0 = the song's first note
    std::vector<PlayRange>
        ranges; ///< played in a row, at most MM_MAX_LOOPS; empty = the whole song
    std::optional<Practice> practice; ///< in the place of ranges
    std::vector<MMNOTEPAIR> drums;    ///< drum notes to replace, at most 10
    double fadeIn = 0;                ///< seconds from the first note on; 0 = none
    double fadeOut = 0;               ///< seconds up to the end of the song; 0 = none
    bool metronome = false;
    std::uint32_t metronomeDevice = 0; ///< MIDI output that clicks
    /// MMOPT_... bits. Notifications do not name their player: of two players one announces nothing.
    std::uint16_t announcements = PlayingState::kAnnouncements;
};

/// Calls come from one thread, which also hands in the notifications. Whoever plays two songs has one of
/// these for each player.
class SongControls {
public:
    /// @param player  handle of the session's first or second player, which must hold no song
    SongControls(EngineSession& engine, HMIDIOUT player);
    /// Silences and closes the player.
    ~SongControls();
    SongControls(const SongControls&) = delete;
    SongControls& operator=(const SongControls&) = delete;

    /// Opens a song in the place of the one before. The file must live until the next opening.
    /// @param song  the same file, prepared for display
    /// @throws SongError  why it cannot be played; the player is closed then
    void open(const SongFile& file, Song song, const SongSettings& settings, const PlayPlan& plan);
    /// Silences the song and frees it.
    void close();

    /// Sends the song's set-up, with the pauses that slow instruments need, and stands where playing begins.
    void setUp();
    /// Plays, or goes on. A song that has ended begins again.
    void play();
    /// Stands still in silence.
    void pause();
    /// Goes to the song's beginning with its set-up; plays on if it was playing.
    void rewind();
    /// Goes to a tick with everything that the song has set up to there.
    void seek(std::uint32_t tick);
    /// Goes to the beginning of another bar; back from within a bar first goes to its own beginning.
    void seekBars(int bars);
    /// Goes to the next or the previous marker.
    /// @return whether there is one
    bool seekMarker(int direction);

    /// Repeats a range until clearLoop; goes on from where the song stands. The engine jumps without a gap.
    void setLoop(std::uint32_t start, std::uint32_t end);
    /// The song goes on to its end. Ends a practice too.
    void clearLoop();

    void setTempoPercent(float percent);
    void setTranspose(int semitones);
    /// Puts one channel's settings into force.
    void setChannel(int channel, const ChannelSettings& settings);
    void setDisplayOffset(int milliseconds);
    /// Shows the texts in another encoding.
    /// @param song  prepared with it
    void setEncoding(const std::string& encoding, Song song);
    /// All settings at once, the encoding of the texts excepted.
    void setSettings(const SongSettings& settings);
    void setMetronome(bool on);
    /// Fades out from now on; ended() answers true when all is silent.
    void fadeOutNow(double seconds);
    /// Ends every note and lifts every pedal on all channels; playing goes on.
    void panic();
    /// Sends all channels of the open song to an output; before setUp. A second player that shares the first
    /// one's output is opened without one.
    /// @param device  0 to 31
    void routeTo(std::uint32_t device);
    /// The same while it plays: everything that the song has set up goes there too.
    /// @param device  0 to 31
    void moveToDevice(std::uint32_t device);

    /// One of the engine's notifications, MMN_...
    /// @param now  milliseconds of any clock that goes on, the same in every call
    void take(unsigned message, std::uintptr_t wParam, std::intptr_t lParam, std::uint64_t now);

    const Song& song() const {
        return *m_song;
    }
    const SongSettings& settings() const {
        return m_settings;
    }
    PlayingState& state() {
        return m_state;
    }
    const PlayingState& state() const {
        return m_state;
    }
    const std::vector<PlayRange>& ranges() const {
        return m_ranges;
    }
    /// Pass of the current range, from 1.
    int pass() const;
    std::uint32_t position() const;
    bool playing() const {
        return m_playing;
    }
    /// Whether the song has come to the end of its ranges or of its fade-out.
    bool ended() const;
    bool fadingOut() const {
        return m_fading;
    }
    bool metronome() const {
        return m_metronome;
    }
    /// The percentage in force: the listener's, or that of the practice.
    float tempoPercent() const {
        return m_practice ? m_practicePercent : m_settings.tempoPercent;
    }
    /// Microseconds per quarter note in force.
    std::uint32_t tempo() const;

    /// Position that the words are shown for: the display offset taken into account.
    std::uint32_t shownPosition() const;
    /// Lyric and chord that were due last at that position; -1 = none.
    int shownLyric() const;
    int shownChord() const;

private:
    class Halt;

    void openPlayer(const SongFile& file, const PlayPlan& plan);
    void installRanges();
    void goTo(std::uint32_t tick);
    void startFadeIn();
    double secondsLeft() const;
    void planFadeOut();
    void startFadeOut(std::uint32_t start, std::uint32_t length, std::int32_t level);
    void applyTempo();
    void followPractice();

    EngineSession& m_engine;
    HMIDIOUT m_player;
    ChannelMixer m_mixer;
    PlayingState m_state;
    std::optional<Song> m_song;
    SongSettings m_settings;
    PlayPlan m_plan;
    std::vector<PlayRange> m_ranges;
    std::optional<Practice> m_practice;
    float m_practicePercent = 0;
    bool m_open = false;
    bool m_playing = false;
    bool m_ended = false;
    bool m_fading = false;
    double m_fadeSeconds = 0; ///< length of the fade at the song's end
    bool m_metronome = false;
};

} // namespace host
