// What the rooms share about loading a song: the event list, the text tables, and giving a song back.
// Everything here runs on the host's thread while a song is opened or closed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "corvmo32_records.h"

// ---- event list ----

/// Appends a record; grows the buffer (lock, claim) when it is full. False when memory for that cannot be
/// had: the list keeps what it has and the last error is ENGINE_ERR_LOCK.
bool appendEvent(MIDIOUT& player, const MMEVENT& event) noexcept;

/// Puts the list in time order. Not stable: equal times end in the order of one fixed procedure.
void sortEvents(MMEVENT* events, std::int32_t count) noexcept;

/// Ends the list on a beat or cuts it after its last note, as the song's endOnBeat asks. False as
/// appendEvent.
bool settleEnd(MIDIOUT& player) noexcept;

// ---- loading ----

/// Reads one track chunk of the file copy into the song's tables. False ends the opening; the last error
/// is set where the failure has a code.
bool parseTrack(MIDIOUT& player, MMTRACK& track) noexcept;

/// Takes one meta event. False as appendEvent.
bool takeMetaEvent(MIDIOUT& player, std::uint8_t type, const std::uint8_t* data,
                   std::int32_t length) noexcept;

/// Takes one system-exclusive message, without its leading F0 and with its closing F7. False as
/// appendEvent.
bool takeSystemExclusive(MIDIOUT& player, const std::uint8_t* data, std::int32_t length) noexcept;

// ---- words and chords ----

/// Makes both text tables hold their start records alone.
void restartTextTables(MIDIOUT& player) noexcept;

/// Adds a line break unless the last lyric is one. False when the table is full.
bool appendLineBreak(MIDIOUT& player, std::uint32_t time) noexcept;

/// Adds a lyric at the track's current time.
void appendLyric(MIDIOUT& player, const char* text, std::int32_t length) noexcept;

/// Adds a chord name at the track's current time.
void appendChord(MIDIOUT& player, const char* text, std::int32_t length) noexcept;

/// Steps to the next of the four karaoke text lines.
void stepTextLine(MIDIOUT& player) noexcept;

/// Makes a controller-31 value, a character position in the current text line, into a lyric.
void takeSyllable(MIDIOUT& player, std::uint8_t position) noexcept;

/// Forgets where the last song's syllables stood.
void resetSyllables() noexcept;

// ---- closing ----

/// Halts the player, frees its song, clears its record, silences the routes it used and sets the default
/// ones. Guards: lock, claims.
void unloadSong(MIDIOUT& player) noexcept;
