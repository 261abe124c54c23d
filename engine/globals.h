// The engine globals, one instance each for the whole library. engine/globals.cpp defines them.
#pragma once

#include <atomic>
#include <cstdint>

#include "corvmo32_records.h"
#include "platform/system.h"

constexpr int kMaxDevices = 32;
constexpr int kInitTextSize = MMINIT_TEXT_SIZE;

// The two players.
extern MIDIOUT MM1;
extern MIDIOUT MM2;

/// Where the engine stands between start-up and shut-down.
enum class EngineState : std::uint32_t {
    Stopped, ///< before start-up, after shut-down
    Failed,  ///< a start-up failed; shut-down has not cleaned up yet
    Running
};
extern std::atomic<EngineState> g_engineState;

// Guards; engine/guards.h is the only place that takes them.
extern CRITICAL_SECTION* g_lock;
extern std::atomic<std::uint32_t> g_busy;

// Outputs and timer.
extern HMIDIOUT g_devices[kMaxDevices]; ///< by device id
extern std::uint32_t g_timerId;         ///< 0 = no timer
extern std::int16_t g_timerPeriod;      ///< milliseconds

// Read by hosts' threads and the timer at once.
extern std::atomic<std::uint32_t> g_lastError;
extern std::atomic<HWND> g_hwndNotify;
extern std::atomic<std::int32_t> g_noResetArg; ///< no-reset request of the last opening

// Settings of start-up.
extern char g_initSysExText[kInitTextSize];
extern std::uint32_t g_noResetFlag;
extern std::uint32_t g_sysexStore;
extern std::uint32_t g_resetOnOpen;
extern std::int16_t g_resetGap; ///< milliseconds
extern std::int32_t g_noChase;
extern std::int32_t g_sendInitText;
extern std::uint32_t g_firstNoteDelay; ///< milliseconds
extern std::uint32_t g_eventGap;       ///< milliseconds

extern std::int32_t g_masterTranspose; ///< semitones, both players
extern std::uint32_t g_resetTime;      ///< system time of the last reset message, 0 = none

// Loading state of words and chords, for the song being opened.
extern std::uint32_t g_ccLyrics;        ///< controller 31 carries syllables
extern std::uint32_t g_karaokeSysEx;    ///< words come in system-exclusive messages
extern std::uint32_t g_atHeader;        ///< a text beginning with '@' was met
extern std::uint32_t g_lyricsRestarted; ///< a "?" lyric restarted the table in this track
extern const char* g_syllableText;      ///< next unread character of the text line
extern std::int32_t g_syllablePos;      ///< character position of the previous syllable
