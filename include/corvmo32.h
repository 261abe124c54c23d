/** @file
 * Plays Standard MIDI Files on the machine's MIDI outputs and tells a host program about their
 * words, chords and progress. This header is the manual.
 *
 * @par Calling order
 * @code{.unparsed}
 *   mm_InitEngine                      once
 *     mm_Open                          a song into a player
 *     mm_SetLoop                       its play ranges (null: the whole song once)
 *     mm_PlayFirstNote                 sends the set-up and stands on the first note (optional)
 *     mm_StartSync                     plays; pause, settings, seeks, ranges as the host likes
 *     mm_Close                         frees the song; the next mm_Open may follow
 *   mm_EndEngine                       once
 * @endcode
 * A second mm_InitEngine before mm_EndEngine answers 0 and changes nothing. A start-up that failed is
 * ended by mm_EndEngine too (the next mm_InitEngine does it if the host does not). Before start-up,
 * after a failed one and after shut-down every call that would wait, lock, open, prepare or send a long
 * message returns at once without effect, 0 where it has a result; getters keep answering from the
 * records, and short messages meet the system's refusal of a handle that is not open.
 *
 * @par Players
 * Two players, MM1 and MM2, are each bound to a MIDI output and named by that output's handle, as
 * mm_InitEngine hands them out. A handle that equals player 1's selects player 1; every other handle
 * selects player 2, also one that belongs to nobody. A player without an output has the handle 0. When
 * both handles are equal, they select player 1, and player 2 answers to the others.
 *
 * @par Threads
 * One periodic timer, on a thread of the system's, plays both players. Every call below may be made
 * from any thread of the host unless it says otherwise, but two calls that open, close, or prepare
 * the same player must not overlap (openings on different players wait for each other), and
 * mm_InitEngine and mm_EndEngine must not overlap anything.
 * Two guards keep the calls and the timer apart, always taken in this order: the host's lock
 * (MMINIT.lock), which the timer holds for its whole run, and the engine's busy flag. "Guards" below
 * says what a call takes:
 *
 * - lock: it holds the host's lock while it works
 * - waits: it waits until no timer run or claiming call is under way, then stores a single value
 * - claims: it waits, then keeps the flag while it works; a timer run that falls into it is lost, and
 *   the song waits for one timer period
 * - none: it takes neither
 *
 * A host that holds its lock sees both players standing still. It must not hold it in mm_EndEngine, nor
 * in mm_Open or mm_Scan while another thread opens a song too.
 *
 * @par Ownership
 * Everything handed to a call is copied or only read during the call, except MMINIT.lock, which must
 * live until mm_EndEngine has returned. Addresses handed out (records, table entries, maps) belong to
 * the engine; table entries of a song stay valid until that player is closed or opened again.
 *
 * @par Units and numbers
 * Times in a song are absolute ticks, mm_GetUnits ticks to the quarter note. Tempo is microseconds
 * per quarter note. Pauses, fades and the timer period are milliseconds. Fade levels are 1/1024
 * percent. Channels are 0 to 15; "channel" is the song channel (the channel in the file) and "output
 * channel" the MIDI channel that messages carry after routing; output channel 9 is the drum channel.
 * A switch acts only when it equals 1.
 *
 * @par Bad arguments
 * Channels and output channels outside 0..15, device indexes outside 0..31 and null record addresses
 * are refused: the call has no effect (mm_SetMIDI... answer MMSYSERR_INVALPARAM). A value that a host
 * stored is kept as it was given; what leaves in a short message is limited to 0..127.
 *
 * @par Errors
 * mm_InitEngine, mm_Open and mm_Scan answer 1, or 0 with a code of corvmo32_errors.h in
 * mm_GetLastError. Nothing else fails.
 */
#ifndef CORVMO32_H
#define CORVMO32_H

#include "corvmo32_errors.h"
#include "corvmo32_notifications.h"
#include "corvmo32_records.h"
#include "corvmo32_system.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Engine
 *  @{ */

/** Starts the engine: opens every MIDI output (at most 32), binds the players, starts the timer.
 *  @param settings  read during the call; null, or a null lock in it, answers 0 and does nothing. The
 *                   lock must live until mm_EndEngine has returned, after a failed start-up too.
 *  @param player1   receives player 1's handle, 0 without a device; may be null
 *  @param player2   receives player 2's handle, 0 when it has no device; may be null
 *  @return 1 = started; 0 = not started: ENGINE_ERR_TIMER, ENGINE_ERR_ALLOC or ENGINE_ERR_LOCK, or no
 *          new code when the engine runs already. Neither handle is written then.
 *  An output that cannot be opened is not reported: its player plays in silence.
 *  Guards: none. */
int16_t CORVMO_CALL mm_InitEngine(const MMINIT* settings, HMIDIOUT* player1, HMIDIOUT* player2);

/** Stops both players, resets and closes every output, stops the timer. When it has returned, the engine
 *  no longer touches the host's lock. Songs that are still open keep their memory until the player is
 *  closed after the next start-up; close them first. A second call does nothing.
 *  Guards: lock, claims. */
void CORVMO_CALL mm_EndEngine(void);

/** @return the code of the last failure (corvmo32_errors.h), 0 when nothing has failed yet. Success does
 *  not clear it. Guards: none. */
uint32_t CORVMO_CALL mm_GetLastError(void);

/** The timer's callback: one call is one timer period of both players. The engine hands it to the system
 *  itself; a host has no reason to call it. The arguments are not read.
 *  @param timerId    not read
 *  @param reserved   not read
 *  @param user       not read
 *  @param reserved1  not read
 *  @param reserved2  not read
 *  Guards: lock, claims; when it finds the busy flag set it returns at once and the period is lost. */
void CORVMO_CALL SyncTimer(UINT timerId, UINT reserved, DWORD_PTR user, DWORD_PTR reserved1,
                           DWORD_PTR reserved2);

/** @} */

/** @name Raw output, records and routing
 *  @{ */

/** Sends one short message.
 *  @param device   any open output handle, not only a player's
 *  @param message  status in bits 0..7, data bytes in bits 8..15 and 16..23; sent unchanged
 *  @return the system's result code, 0 = sent. Guards: none. */
uint32_t CORVMO_CALL mm_ShortMessage(HMIDIOUT device, uint32_t message);

/** Sends one long (system-exclusive) message on the player's own output and returns when the output has
 *  taken the whole of it. One message at a time goes through a player: a call waits for the message that
 *  the timer or another call is sending.
 *  @param player   player handle
 *  @param message  its bytes, F0 to F7; null sends nothing
 *  @param length   1 to 4096 bytes; any other length sends nothing
 *  Guards: none. */
void CORVMO_CALL mm_LongMessage(HMIDIOUT player, const uint8_t* message, int16_t length);

/** Releases the damper and sostenuto pedals and resets the controllers on the player's 16 routes, then
 *  sends the reset message of the player's mode. No stored setting changes.
 *  @param player  player handle. Guards: none. */
void CORVMO_CALL mm_Reset(HMIDIOUT player);

/** @return the address of player 1's record; never null. Guards: none. */
MIDIOUT* CORVMO_CALL mm_GetMM1(void);

/** @return the address of player 2's record; never null. Guards: none. */
MIDIOUT* CORVMO_CALL mm_GetMM2(void);

/** @param player  player handle
 *  @return the address of the record that the handle selects; never null. Guards: none. */
MIDIOUT* CORVMO_CALL mm_GetMM(HMIDIOUT player);

/** Sends a channel's messages to another output, until the player is closed or opened.
 *  @param player       player handle
 *  @param channel      song channel
 *  @param deviceIndex  output, 0 to 31
 *  @param silence      1 = All Sound Off on the route that the channel leaves
 *  Guards: claims. */
void CORVMO_CALL mm_SetChannelDevice(HMIDIOUT player, int16_t channel, int16_t deviceIndex,
                                     int16_t silence);

/** Sends a channel's messages on another MIDI channel, until the player is closed or opened.
 *  @param player         player handle
 *  @param channel        song channel
 *  @param outputChannel  0 to 15
 *  @param silence        1 = All Sound Off on the route that the channel leaves
 *  Guards: claims. */
void CORVMO_CALL mm_SetChannelOut(HMIDIOUT player, int16_t channel, int16_t outputChannel,
                                  int16_t silence);

/** @param player  player handle
 *  @return the address of the 16 output channels, by song channel. A host may also write them; their low
 *          four bits count. Guards: none. */
uint8_t* CORVMO_CALL mm_GetChannelOut(HMIDIOUT player);

/** @param player  player handle
 *  @return the address of the 16 output handles, by song channel; in the packed record it may be
 *          unaligned. Guards: none. */
HMIDIOUT* CORVMO_CALL mm_GetChannelDevice(HMIDIOUT player);

/** @} */

/** @name Song information
 *  Getters take no guard; a position or tempo is one whole read of a value that the timer may be changing.
 *  Without a song the counts are 0 and the table addresses null.
 *  @{ */

/** @param player  player handle
 *  @return the number of events in the player's list. */
int32_t CORVMO_CALL mm_GetNumEvents(HMIDIOUT player);

/** @param player  player handle
 *  @param index   0 to mm_GetNumEvents - 1; not checked
 *  @return the address of the event; null without a song. */
MMEVENT* CORVMO_CALL mm_GetPointerEvents(HMIDIOUT player, int32_t index);

/** @param player  player handle
 *  @return the number of lyrics, the start record (a line break) included. */
int16_t CORVMO_CALL mm_GetNumLyrics(HMIDIOUT player);

/** Shortens (or restores) the lyric table: only lyrics below the count are announced.
 *  @param player  player handle
 *  @param count   held within 0 and MM_MAX_LYRICS; without a song it stays 0
 *  Guards: waits. */
void CORVMO_CALL mm_SetNumLyrics(HMIDIOUT player, int16_t count);

/** @param player  player handle
 *  @param index   0 to mm_GetNumLyrics - 1; not checked
 *  @return the address of the lyric; null without a song. */
MMLYRIC* CORVMO_CALL mm_GetPointerLyrics(HMIDIOUT player, int16_t index);

/** @param player  player handle
 *  @return the number of chords, the start record included. */
int16_t CORVMO_CALL mm_GetNumChords(HMIDIOUT player);

/** Shortens (or restores) the chord table: only chords below the count are announced.
 *  @param player  player handle
 *  @param count   held within 0 and MM_MAX_CHORDS; without a song it stays 0
 *  Guards: waits. */
void CORVMO_CALL mm_SetNumChords(HMIDIOUT player, int16_t count);

/** @param player  player handle
 *  @param index   0 to mm_GetNumChords - 1; not checked
 *  @return the address of the chord; null without a song. */
MMCHORD* CORVMO_CALL mm_GetPointerChords(HMIDIOUT player, int16_t index);

/** @param player  player handle
 *  @return the number of markers, 0 to 9. */
int16_t CORVMO_CALL mm_GetNumMarkers(HMIDIOUT player);

/** @param player  player handle
 *  @param index   0 to mm_GetNumMarkers - 1; not checked
 *  @return the address of the marker; null without a song. */
MMMARKER* CORVMO_CALL mm_GetPointerMarkers(HMIDIOUT player, int16_t index);

/** @param player  player handle
 *  @return the tempo in force in microseconds per quarter note, the tempo percentage applied; 500000
 *  right after opening, 0 without a song. */
uint32_t CORVMO_CALL mm_GetTempo(HMIDIOUT player);

/** @param player  player handle
 *  @return ticks per quarter note of the song, 1 to 960; 0 without a song. */
int16_t CORVMO_CALL mm_GetUnits(HMIDIOUT player);

/** @param player  player handle
 *  @return the song position in ticks. */
uint32_t CORVMO_CALL mm_GetTicks(HMIDIOUT player);

/** @param player  player handle
 *  @return the address of the player's song information; never null. */
MMINFO* CORVMO_CALL mm_GetInfo(HMIDIOUT player);

/** Replaces the whole options word of the player.
 *  @param player   player handle
 *  @param options  MMOPT_... bits
 *  Guards: waits. */
void CORVMO_CALL mm_SetOptions(HMIDIOUT player, uint32_t options);

/** Names the window that receives the notifications of both players.
 *  @param window  null = nothing is posted. Guards: waits. */
void CORVMO_CALL mm_SetWindow(HWND window);

/** @return the window that receives the notifications. */
HWND CORVMO_CALL mm_GetWindow(void);

/** @} */

/** @name Channel settings
 *  Stored in the player's record until it is closed and applied to everything that is played from then on.
 *  Opening a song that is not only scanned takes the program out of every patch override; every opening
 *  clears the note replacements. All other settings that were stored since the last closing stay.
 *  @{ */

/** Overrides a channel's instrument. Nothing is sent: the override acts from the channel's next program
 *  change on (mm_SetMIDIPatch changes the sound at once).
 *  @param player   player handle
 *  @param channel  song channel
 *  @param patch    bank, program (MMPATCH_NO_OVERRIDE: the song's) and whether the song's bank selects are
 *                  kept away from the bank
 *  Guards: claims. */
void CORVMO_CALL mm_SetPatch(HMIDIOUT player, int16_t channel, const MMPATCH* patch);

/** Replaces the player's ten note replacements, which act on notes sent on output channel 9.
 *  @param player   player handle
 *  @param channel  its route is silenced when asked; the pairs serve the whole player
 *  @param pairs    ten pairs; from = -1 marks one that is not in use; the first that matches counts
 *  @param silence  1 = All Sound Off on the channel's route first
 *  Guards: claims. */
void CORVMO_CALL mm_SetReplaceNotes(HMIDIOUT player, int16_t channel, const MMNOTEPAIR* pairs,
                                    int16_t silence);

/** @param player   player handle
 *  @param channel  song channel
 *  @param value    added to the channel's controller 7, the sum held within 0..127
 *  Guards: waits. */
void CORVMO_CALL mm_SetVolume(HMIDIOUT player, int16_t channel, int16_t value);

/** @param player   player handle
 *  @param channel  song channel
 *  @param value    added to the channel's controller 10 (a song value of 0 counts as 64), the sum held
 *                  within 1..127
 *  Guards: waits. */
void CORVMO_CALL mm_SetBalance(HMIDIOUT player, int16_t channel, int16_t value);

/** @param player   player handle
 *  @param channel  song channel
 *  @param value    added to the channel's controller 91, the sum held within 0..127
 *  Guards: waits. */
void CORVMO_CALL mm_SetReverb(HMIDIOUT player, int16_t channel, int16_t value);

/** @param player   player handle
 *  @param channel  song channel
 *  @param value    added to the channel's controller 93, the sum held within 0..127
 *  Guards: waits. */
void CORVMO_CALL mm_SetChorus(HMIDIOUT player, int16_t channel, int16_t value);

/** @param player   player handle
 *  @param channel  song channel
 *  @param value    percent by which the channel's note velocities change, truncated toward 0 and held
 *                  within 0..127
 *  Guards: waits. */
void CORVMO_CALL mm_SetVelocity(HMIDIOUT player, int16_t channel, int16_t value);

/** @param player         player handle
 *  @param outputChannel  output channel, not song channel
 *  @param value          not 0 = notes sent there are moved neither by the transpositions nor by the key
 *                        shift
 *  Guards: waits. */
void CORVMO_CALL mm_SetNoTranspose(HMIDIOUT player, int16_t outputChannel, int16_t value);

/** Mutes a channel's notes; its controllers still go out and its notifications are still posted.
 *  @param player   player handle
 *  @param channel  song channel
 *  @param value    not 0 = muted
 *  @param silence  1, with value 1 = All Sound Off on the channel's route, after storing
 *  Guards: claims. */
void CORVMO_CALL mm_SetMute(HMIDIOUT player, int16_t channel, int16_t value, int16_t silence);

/** @param player   player handle
 *  @param channel  song channel
 *  @param value    semitones added to the channel's notes, drum notes included, after the transpositions
 *  @param silence  1 = All Sound Off on the channel's route first
 *  Guards: claims. */
void CORVMO_CALL mm_SetKeyShift(HMIDIOUT player, int16_t channel, int16_t value, int16_t silence);

/** @param player   player handle
 *  @param value    semitones added to every note that is not sent on output channel 9
 *  @param silence  1 = All Sound Off on the player's 16 routes first
 *  Guards: claims. */
void CORVMO_CALL mm_SetTranspose(HMIDIOUT player, int16_t value, int16_t silence);

/** Transposes both players, after their own transposition; 0 at start-up. All Sound Off goes out on all
 *  32 routes first.
 *  @param value  semitones. Guards: claims. */
void CORVMO_CALL mm_SetMasterTranspose(int16_t value);

/** @} */

/** @name Immediate senders
 *  They store nothing. They answer the system's result code of their last message (0 =
 *  sent), or MMSYSERR_INVALPARAM. Values are limited to 0..127. Guards: none.
 *  @{ */

/** Sends bank select and program change on the channel's route.
 *  @param player   player handle
 *  @param channel  song channel
 *  @param words    three words: bank MSB, bank LSB, program
 *  @return the system's result code, 0 = sent, or MMSYSERR_INVALPARAM */
uint32_t CORVMO_CALL mm_SetMIDIPatch(HMIDIOUT player, int16_t channel, const int16_t* words);

/** Sends controller 7 on the channel's route.
 *  @param player   player handle
 *  @param channel  song channel
 *  @param value    0 to 127
 *  @return as mm_SetMIDIPatch */
uint32_t CORVMO_CALL mm_SetMIDIVolume(HMIDIOUT player, int16_t channel, int16_t value);

/** Sends controller 10 on the channel's route.
 *  @param player   player handle
 *  @param channel  song channel
 *  @param value    0 to 127
 *  @return as mm_SetMIDIPatch */
uint32_t CORVMO_CALL mm_SetMIDIBalance(HMIDIOUT player, int16_t channel, int16_t value);

/** Sends controller 91 on the channel's route.
 *  @param player   player handle
 *  @param channel  song channel
 *  @param value    0 to 127
 *  @return as mm_SetMIDIPatch */
uint32_t CORVMO_CALL mm_SetMIDIReverb(HMIDIOUT player, int16_t channel, int16_t value);

/** Sends controller 93 on the channel's route.
 *  @param player   player handle
 *  @param channel  song channel
 *  @param value    0 to 127
 *  @return as mm_SetMIDIPatch */
uint32_t CORVMO_CALL mm_SetMIDIChorus(HMIDIOUT player, int16_t channel, int16_t value);

/** @} */

/** @name Songs
 *  @{ */

/** Loads a Standard MIDI File (format 0 or 1) into a player and leaves it halted at the song's start,
 *  without play ranges. A player that holds a song, or what a failed opening left, is closed first.
 *  @param player     player handle; every channel is routed to it
 *  @param fileName   ANSI path, zero-terminated; null cannot be opened (ENGINE_ERR_FILE)
 *  @param options    MMOPT_... bits. With MMOPT_SCAN nothing is sent, and channel patches, routing and
 *                    metronome keep their values
 *  @param noReset    not 0, with MMINIT_NORESET = neither opening nor the song resets the device
 *  @param endOnBeat  0 = the song ends with its last note; not 0 = it ends on the beat after its last
 *                    event, and mm_SetLoop with null repeats it
 *  @param click      metronome; null = no metronome; not read with MMOPT_SCAN
 *  @return 1 = loaded; 0 = not: a code of corvmo32_errors.h, or no new code when a track or a meta event
 *          runs past the end of the file, or an event takes no bytes. mm_Close frees what was obtained.
 *  The host's own thread, not the timer's. Guards: none, but it takes lock and claim for a moment when
 *  the event list grows, and while it closes. */
int16_t CORVMO_CALL mm_Open(HMIDIOUT player, const char* fileName, uint16_t options,
                            int16_t noReset, int16_t endOnBeat, const MMCLICK* click);

/** Loads a file for its information only (mm_GetInfo and the tables), as mm_Open with MMOPT_SCAN; a song
 *  without tempo or key gets 500000 microseconds and C major.
 *  @param player    player handle
 *  @param fileName  as in mm_Open
 *  @return as mm_Open. Guards: as mm_Open. */
int16_t CORVMO_CALL mm_Scan(HMIDIOUT player, const char* fileName);

/** Halts the player, frees its song and clears its record, all settings and play ranges included; then
 *  releases the pedals, resets the controllers and silences the 16 routes that the song used, and routes
 *  every channel back to the player's own output, on its own number. The player's handle and mode stay.
 *  On a player without a song there is nothing to free; the rest is the same.
 *  @param player  player handle
 *  Guards: lock, claims. */
void CORVMO_CALL mm_Close(HMIDIOUT player);

/** @} */

/** @name Channel map
 *  @{ */

/** Gathers the channels' state from everything the song sets before a tick.
 *  @param player  player handle
 *  @param tick    events at this tick are not part of the map
 *  Guards: lock, claims. */
void CORVMO_CALL mm_CreateMap(HMIDIOUT player, uint32_t tick);

/** @param player  player handle
 *  @return the address of the player's channel map; never null. A jump may be rebuilding it while the
 *  host reads it; a host that needs it whole holds its lock. Guards: none. */
MMMAP* CORVMO_CALL mm_GetMap(HMIDIOUT player);

/** Sends the map as it was last built (one that was never built for the song is built at the tick first)
 *  and moves the player to a tick, with the notifications of a seek.
 *  @param player  player handle
 *  @param tick    beyond the last event it means the last event's tick
 *  Guards: lock. */
void CORVMO_CALL mm_SendMap(HMIDIOUT player, uint32_t tick);

/** @} */

/** @name Transport
 *  @{ */

/** Starts or continues playing at the song position; nothing is sent before the next timer period. A
 *  player without a song stays halted; a song without play ranges gets those of mm_SetLoop with null.
 *  @param player  player handle
 *  Guards: lock, waits. */
void CORVMO_CALL mm_StartSync(HMIDIOUT player);

/** The same as mm_StartSync.
 *  @param player  player handle
 *  Guards: lock, waits. */
void CORVMO_CALL mm_ReStartSync(HMIDIOUT player);

/** Halts the player where it stands, with All Sound Off on its 16 routes.
 *  @param player  player handle
 *  Guards: lock, claims. */
void CORVMO_CALL mm_StopSync(HMIDIOUT player);

/** Halts the player where it stands, with All Sound Off on its 16 routes.
 *  @param player  player handle
 *  Guards: lock, waits. */
void CORVMO_CALL mm_PauseSync(HMIDIOUT player);

/** Sends everything that the song sets before its first note, with the pauses of MMINIT, and puts the
 *  position on that note (or note-off); mm_StartSync plays it. The init text goes out before the first
 *  channel message or the note. Of the song's reset messages only the last one goes out, if it lies
 *  before the note; called again for the same song, it sends each of them. Karaoke texts are left out.
 *  Blocks the caller for the pauses. Only while the player is halted; the host's own thread.
 *  @param player  player handle
 *  @return 1 = the position stands on the first note; 0 = the song has none, the position is unchanged.
 *  Guards: none. */
int16_t CORVMO_CALL mm_PlayFirstNote(HMIDIOUT player);

/** Changes the tempo now and for the rest of the song.
 *  @param player     player handle
 *  @param songTempo  unscaled tempo to apply now, microseconds per quarter note
 *  @param percent    change of this and every later tempo, positive = faster; 100 and more, or not a
 *                    number, changes nothing. A tempo that would become 0 leaves the one in force; the
 *                    slowest is 0xFFFFFF microseconds.
 *  Guards: lock, waits. */
void CORVMO_CALL mm_SetTempo(HMIDIOUT player, uint32_t songTempo, float percent);

/** Installs the play ranges and begins with the first; the position is not moved.
 *  @param player  player handle
 *  @param table   10 records, those in use first; null = the whole song, once, or 32767 times when it was
 *                 opened with endOnBeat. Neither order nor overlap is tested.
 *  Guards: lock, claims. */
void CORVMO_CALL mm_SetLoop(HMIDIOUT player, const MMLOOP* table);

/** Replaces the plan from the range now playing on: it plays to its end once more, then the song goes on
 *  at another tick to its end, or ends.
 *  @param player     player handle
 *  @param newEnd     tick at which the range now playing ends; MMLOCATOR_KEEP_END keeps it, as does a
 *                    range whose endLocked is set
 *  @param nextStart  tick at which playing goes on; MMLOCATOR_NO_NEXT = the song ends there, and a later
 *                    call cannot change the end again
 *  Guards: lock, claims. */
void CORVMO_CALL mm_SetNextLocator(HMIDIOUT player, uint32_t newEnd, uint32_t nextStart);

/** Halts the player and puts its position to 0; posts MMN_POSITION, MMN_CHORD and MMN_LYRIC in this
 *  order, each by its option. Sends nothing (mm_StopSync silences); tempo, time signature, settings and
 *  play ranges stay, with the passes already counted down (mm_SetLoop begins them anew).
 *  @param player  player handle
 *  Guards: lock, claims. */
void CORVMO_CALL mm_RewindSync(HMIDIOUT player);

/** Starts a fade-in: from the next timer period on the curve scales the velocity of every note. Its time
 *  runs while the player plays. It ends itself, and hides a fade-out while it runs.
 *  @param player  player handle
 *  @param fade    curve; active, level and time are the engine's
 *  Guards: claims. */
void CORVMO_CALL mm_SetFadeIn(HMIDIOUT player, const MMFADE* fade);

/** Starts a fade-out; after its end the player stays silent until it is closed or a fade is set.
 *  @param player  player handle
 *  @param fade    curve; active, level and time are the engine's
 *  Guards: claims. */
void CORVMO_CALL mm_SetFadeOut(HMIDIOUT player, const MMFADE* fade);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
