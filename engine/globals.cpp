// Defines the engine globals.
#include "engine/globals.h"

MIDIOUT MM1;
MIDIOUT MM2;

std::atomic<EngineState> g_engineState{EngineState::Stopped};

CRITICAL_SECTION* g_lock;
std::atomic<std::uint32_t> g_busy{0};

HMIDIOUT g_devices[kMaxDevices];
std::uint32_t g_timerId;
std::int16_t g_timerPeriod;

std::atomic<std::uint32_t> g_lastError{0};
std::atomic<HWND> g_hwndNotify{nullptr};
std::atomic<std::int32_t> g_noResetArg{0};

char g_initSysExText[kInitTextSize];
std::uint32_t g_noResetFlag;
std::uint32_t g_sysexStore;
std::uint32_t g_resetOnOpen;
std::int16_t g_resetGap;
std::int32_t g_noChase;
std::int32_t g_sendInitText;
std::uint32_t g_firstNoteDelay;
std::uint32_t g_eventGap;

std::int32_t g_masterTranspose;
std::uint32_t g_resetTime;

std::uint32_t g_ccLyrics;
std::uint32_t g_karaokeSysEx;
std::uint32_t g_atHeader;
std::uint32_t g_lyricsRestarted;
const char* g_syllableText = "";
std::int32_t g_syllablePos;
