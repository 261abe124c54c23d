/* What a host on Linux needs beside the engine: locks, windows that receive notifications, MIDI outputs to
 * choose from, and the choice of the clock. Usable from C and C++.
 *
 * Outputs and clock are chosen while the engine is stopped. Every function may be called from any thread.
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

/** Destroys a window; a thread that waits on it returns. Posting to it afterwards fails harmlessly. */
void corvmo_DestroyWindow(HWND window);

/** Takes the oldest message off the window's queue.
 *  @param timeout  milliseconds of real time to wait for one; 0 = do not wait; 0xFFFFFFFF = no limit
 *  @return 1 = *message was filled in; 0 = there was none, or no such window */
int corvmo_WaitMessage(HWND window, corvmo_message* message, uint32_t timeout);

/* ---- MIDI outputs ---- */

/** An output of the host's own. Null functions do nothing and succeed. The functions are called from
 *  whatever thread sends, and answer MMSYSERR_... codes where they have a result. */
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

/** Replaces the machine's outputs by the host's own, in this order; copied. None of them open now.
 *  @param outputs  null = the machine's outputs again: the software synthesizer and after it every ALSA
 *                  sequencer port that can be written to */
void corvmo_SetOutputs(const corvmo_output* outputs, UINT count);

/** @return the number of outputs there are. */
UINT corvmo_GetOutputCount(void);

/** Writes the zero-terminated name of an output, cut to size.
 *  @return 1 = written; 0 = there is no such output */
int corvmo_GetOutputName(UINT index, char* name, size_t size);

/** One message that was handed to an output. */
typedef struct corvmo_sent {
    UINT output;         /**< index of the output */
    uint64_t time;       /**< corvmo_GetClock() when it was sent */
    const uint8_t* data; /**< the message's bytes, valid during the call */
    uint32_t length;     /**< bytes */
} corvmo_sent;

/** Records what every output receives, one call a message on the sending thread, before the output gets it.
 *  @param sent  null = no recording */
void corvmo_RecordOutputs(void (*sent)(void* user, const corvmo_sent* message), void* user);

/** File of the sound font that the software synthesizer loads when it is opened next; null = the system's
 *  General MIDI font. */
void corvmo_SetSoundFont(const char* path);

/** Audio output of the software synthesizer, a driver name of FluidSynth ("alsa", "pulseaudio", ...).
 *  Null = whatever works; "none" = silent. */
void corvmo_SetAudioDriver(const char* name);

/* ---- clock ---- */

/** The machine's monotonic clock and a timer thread. The default. */
void corvmo_UseRealClock(void);

/** A clock that stands until it is told to go on: the timer runs inside corvmo_AdvanceClock, on the
 *  caller's thread. The engine's own reading of the time lets one millisecond pass, so that its pauses end.
 *  @param start  milliseconds that the engine's first reading answers */
void corvmo_UseManualClock(uint32_t start);

/** Lets manual time pass, running every timer period that falls due, in order and at its exact time. */
void corvmo_AdvanceClock(uint32_t milliseconds);

/** @return microseconds of the clock in use, from an arbitrary origin; never runs backwards. */
uint64_t corvmo_GetClock(void);

#ifdef __cplusplus
}
#endif

#endif
