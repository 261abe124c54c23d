/* What a host on Linux needs beside the engine: locks, windows that receive notifications, MIDI
 * outputs to choose from, and the choice of the clock. Usable from C and C++.
 *
 * Outputs and clock are chosen while the engine is stopped. Every function may be called from
 * any thread, except where it says otherwise.
 */
#ifndef CORVMO32_LINUX_H
#define CORVMO32_LINUX_H

#include <stddef.h>
#include <stdint.h>

#include "corvmo32_system.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- the host's lock ---- */

/** A recursive lock. */
struct corvmo_critical_section {
    void* state; /**< made by InitializeCriticalSection */
};

void InitializeCriticalSection(CRITICAL_SECTION* lock);
void DeleteCriticalSection(CRITICAL_SECTION* lock);
void EnterCriticalSection(CRITICAL_SECTION* lock);
void LeaveCriticalSection(CRITICAL_SECTION* lock);

/* ---- windows: queues of posted messages ---- */

/** One posted message. */
typedef struct corvmo_message {
    UINT message; /**< MMN_... */
    uintptr_t wParam;
    intptr_t lParam;
    uint64_t time; /**< corvmo_GetClock() when it was posted */
} corvmo_message;

/** Makes a window. Its queue holds 10,000 messages; what is posted beyond them is lost. */
HWND corvmo_CreateWindow(void);

/** Destroys a window; a thread that waits on it returns. Posting to it afterwards fails
 *  harmlessly. */
void corvmo_DestroyWindow(HWND window);

/** Takes the oldest message off the window's queue.
 *  @param timeout  milliseconds of real time to wait for one; 0 = do not wait; 0xFFFFFFFF = no
 *                  limit
 *  @return 1 = *message was filled in; 0 = there was none, or no such window */
int corvmo_WaitMessage(HWND window, corvmo_message* message, uint32_t timeout);

/* ---- MIDI outputs ---- */

/** An output of the host's own. Null functions do nothing and succeed. The functions are called
 *  from whatever thread sends, several at once, and answer MMSYSERR_... codes where they have a
 *  result. They may send to other outputs, but not choose, open or close outputs or change the
 *  recording. */
typedef struct corvmo_output {
    const char* name;
    void* user; /**< handed to every function */
    MMRESULT (*open)(void* user);
    void (*close)(void* user);
    void (*reset)(void* user);
    MMRESULT (*short_message)(void* user, uint32_t message);
    MMRESULT (*long_message)(void* user, const uint8_t* data, uint32_t length);
    MMRESULT (*prepare)(void* user);  /**< before a long message; not 0 = it cannot be sent */
    int (*still_playing)(void* user); /**< not 0 = the last long message is not finished yet */
} corvmo_output;

/** Replaces the outputs by the host's own, in this order; copied. An output that is still open
 *  is closed.
 *  @param outputs  null = the machine's outputs again: the software synthesizer and after it
 *                  every ALSA sequencer port that can be written to. Those are listed when they
 *                  are first asked for, and afresh after all of them have been closed.
 *  @param count    0 with outputs not null = no outputs at all */
void corvmo_SetOutputs(const corvmo_output* outputs, UINT count);

/** @return the number of outputs there are. */
UINT corvmo_GetOutputCount(void);

/** Writes the zero-terminated name of an output, cut to size.
 *  @return 1 = written; 0 = there is no such output */
int corvmo_GetOutputName(UINT index, char* name, size_t size);

/** @return how many messages in a row an output has refused since it was opened or last took one; 0
 *  also for an output that does not exist. An ALSA port that has gone away refuses everything. */
uint32_t corvmo_GetRefusals(UINT index);

/** One message that was handed to an output. */
typedef struct corvmo_sent {
    UINT output;         /**< index of the output */
    uint64_t time;       /**< corvmo_GetClock() when it was sent */
    const uint8_t* data; /**< the message's bytes, valid during the call */
    uint32_t length;     /**< bytes */
} corvmo_sent;

/** Records what every output receives, one call a message on the sending thread, before the
 *  output gets it; several threads may send at once. What an output sends of its own when it is
 *  reset is not recorded. A word that begins with no short message's status byte is recorded
 *  with three bytes and not sent. Once this has returned the function recorded to before is not
 *  called any more.
 *  @param sent  null = no recording; not to call this function or corvmo_SetOutputs */
void corvmo_RecordOutputs(void (*sent)(void* user, const corvmo_sent* message), void* user);

/** File of the sound font that the software synthesizer loads when it is opened next; null = the
 *  system's General MIDI font. A file that is no sound font leaves it silent. */
void corvmo_SetSoundFont(const char* path);

/** Audio output that the software synthesizer plays through when it is opened next, a driver
 *  name of FluidSynth ("alsa", "jack", ...). Null = the first that works of PipeWire,
 *  PulseAudio, ALSA and OSS; "none", or one that does not work = silent. */
void corvmo_SetAudioDriver(const char* name);

/* ---- sound into memory ---- */

/** Replaces the outputs by one, the software synthesizer without an audio output: its sound waits
 *  for corvmo_RenderAudio. With the manual clock a song becomes sound as fast as the machine can.
 *  An output that is still open is closed; corvmo_SetOutputs(NULL, 0) brings the machine's back.
 *  @param rate  frames a second, held within 8000 and 96000 */
void corvmo_UseRenderedOutput(UINT rate);

/** Takes the next sound of that output, in which everything that was sent so far is heard. Time
 *  passes for the synthesizer in here alone.
 *  @param stereo  receives 2 * frames samples, left and right in turn; full scale is 1, and what is
 *                 louder is not cut off
 *  @return 1 = sound; 0 = silence, as the output is not open or no sound font could be loaded */
int corvmo_RenderAudio(float* stereo, size_t frames);

/* ---- clock ---- */

/** The machine's monotonic clock and a timer thread. The default. Choosing a clock stops every
 *  timer. */
void corvmo_UseRealClock(void);

/** A clock that stands until it is told to go on: the timer runs inside corvmo_AdvanceClock, on
 *  the caller's thread. The engine's own reading of the time lets one millisecond pass, so that
 *  its pauses end.
 *  @param start  milliseconds that the engine's first reading answers */
void corvmo_UseManualClock(uint32_t start);

/** Lets manual time pass, running every timer period that falls due, in order and at its exact
 *  time. Waits for another thread that is doing so; not to be called then while holding a lock
 *  that the timer takes. Inside a timer callback only time passes, and the periods are made up
 *  for later. Does nothing on the real clock. */
void corvmo_AdvanceClock(uint32_t milliseconds);

/** @return microseconds of the clock in use, from an arbitrary origin; never runs backwards. */
uint64_t corvmo_GetClock(void);

#ifdef __cplusplus
}
#endif

#endif
