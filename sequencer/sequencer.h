// What the sequencer's files and the transport share: the clock, the tempo rule, the rules by which events
// reach a device, and the jump to another position. Callers hold the lock unless a line says otherwise.
#pragma once

#include <cstdint>

#include "corvmo32_records.h"

// ---- clock and position ----

/// What one timer period adds to the clock: division * period * 256000, in full width.
std::uint64_t clockStep(const MIDIOUT& player) noexcept;

/// Sets tickStep, which holds the clock step's low 32 bits.
void storeClockStep(MIDIOUT& player) noexcept;

/// Moves the position one timer period on and carries the fraction of a tick.
void advanceClock(MIDIOUT& player) noexcept;

/// Sets the song position, which getters read at any time.
void setPosition(MIDIOUT& player, std::uint32_t ticks) noexcept;

/// Tick of the last event, 0 for an empty list.
std::uint32_t endOfSong(const MIDIOUT& player) noexcept;

/// Puts the event, lyric and chord cursors, the position and the metronome back to the start.
void rewindCursors(MIDIOUT& player) noexcept;

// ---- tempo ----

/// Makes a tempo of the song (microseconds per quarter note) the one in force, changed by the player's
/// percentage. One that would come to 0 is refused; above 0xFFFFFF it is held there.
void applyTempo(MIDIOUT& player, std::uint32_t songTempo) noexcept;

/// The tempo in a tempo event's three bytes.
std::uint32_t tempoOf(const MMEVENT& event) noexcept;

/// Posts MMN_TEMPO with one of its origins: 0 played, 1 before the first note, 2 restored by a seek.
void postTempo(const MIDIOUT& player, int origin) noexcept;

// ---- rules for channel messages ----

/// The four controllers that carry a channel's mix: volume, pan, reverb, chorus.
bool isMixController(std::uint8_t controller) noexcept;

/// Sends a mix controller with the channel's offset and posts the song's value.
void sendMixController(const MIDIOUT& player, int channel, std::uint8_t controller,
                       std::uint8_t value) noexcept;

/// Stores a bank select of the song (controller 0 or 32); the next program change sends it.
void storeBankSelect(MIDIOUT& player, int channel, std::uint8_t controller,
                     std::uint8_t value) noexcept;

/// Takes a controller of the song: stores a bank select, applies the mix rule, sends any other unchanged.
void takeController(MIDIOUT& player, const MMEVENT& event) noexcept;

/// Sends bank and program, the channel's override in place of the song's program, and posts both.
void sendProgramChange(const MIDIOUT& player, int channel, std::uint8_t program) noexcept;

/// Sends a channel message of the song with its channel replaced.
void sendUnchanged(const MIDIOUT& player, const MMEVENT& event) noexcept;

/// All Notes Off on all 16 routes.
void allNotesOff(const MIDIOUT& player) noexcept;

// ---- events ----

/// Takes a time signature event.
void takeTimeSignature(MIDIOUT& player, const MMEVENT& event) noexcept;

/// The store's message that an event refers to, null when there is none.
const MMSYSEX* storedMessage(const MIDIOUT& player, const MMEVENT& event) noexcept;

/// Sends a stored message on the player's own output.
void sendStoredMessage(MIDIOUT& player, const MMSYSEX& slot, const MMEVENT& event) noexcept;

/// True when the song's reset messages are not to be sent.
bool resetsSuppressed() noexcept;

/// Plays one event of the list: the lock is held and the busy flag claimed.
void playEvent(MIDIOUT& player, const MMEVENT& event) noexcept;

/// Plays a note-on or note-off through the channel's settings and the fades.
void playNote(const MIDIOUT& player, const MMEVENT& event) noexcept;

// ---- channel map ----

/// Records the channels' state before a tick.
void buildMap(MIDIOUT& player, std::uint32_t tick) noexcept;

/// Sends the recorded state and moves the cursors and the position to a tick, with the notifications.
void sendMapAndSeek(MIDIOUT& player, std::uint32_t tick) noexcept;

// ---- parts of the tick ----

/// Steps the running fades by one timer period.
void stepFades(MIDIOUT& player) noexcept;

/// Ends, repeats or leaves the current play range when the position has reached its end. False when the
/// song is over.
bool followPlayRanges(MIDIOUT& player) noexcept;

/// Strikes the metronome when a beat is due.
void strikeClick(MIDIOUT& player) noexcept;
