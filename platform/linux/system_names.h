// The system's functions that the engine calls, under the names that Windows gives them. Each does
// what its namesake does as far as the engine relies on it, and answers the same result codes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "corvmo32_linux.h"
#include "corvmo32_system.h"

using BOOL = int;
using WORD = std::uint16_t;
using HANDLE = void*;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LPTIMECALLBACK = void (*)(UINT, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR);

#define CALLBACK
#define WINAPI

// ---- global memory ----

constexpr UINT GMEM_FIXED = 0x0000;
constexpr UINT GMEM_MOVEABLE = 0x0002;
constexpr UINT GMEM_ZEROINIT = 0x0040;
constexpr UINT GMEM_SHARE = 0x2000;
constexpr UINT GPTR = GMEM_FIXED | GMEM_ZEROINIT;

HGLOBAL GlobalAlloc(UINT flags, std::size_t bytes);
/// With GMEM_MOVEABLE a locked block may move; its lock count stays. The old block survives a
/// failure.
HGLOBAL GlobalReAlloc(HGLOBAL block, std::size_t bytes, UINT flags);
/// Bytes of the block, 0 for a handle that is none.
std::size_t GlobalSize(HGLOBAL block);
void* GlobalLock(HGLOBAL block);
BOOL GlobalUnlock(HGLOBAL block);
/// Null on success, as on Windows.
HGLOBAL GlobalFree(HGLOBAL block);

// ---- files ----

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(-1);

HANDLE CreateFileA(const char* name, DWORD access, DWORD share, void* security, DWORD disposition,
                   DWORD attributes, HANDLE pattern);
DWORD GetFileSize(HANDLE file, DWORD* high);
BOOL ReadFile(HANDLE file, void* buffer, DWORD bytes, DWORD* bytesRead, void* overlapped);
BOOL CloseHandle(HANDLE file);

// ---- messages ----

BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// ---- timer ----

struct TIMECAPS {
    UINT wPeriodMin; ///< milliseconds
    UINT wPeriodMax; ///< milliseconds
};

constexpr MMRESULT TIMERR_NOERROR = 0;
constexpr MMRESULT TIMERR_NOCANDO = 97;
constexpr UINT TIME_PERIODIC = 0x0001;
constexpr UINT TIME_CALLBACK_FUNCTION = 0x0000;

DWORD timeGetTime();
MMRESULT timeGetDevCaps(TIMECAPS* caps, UINT size);
MMRESULT timeBeginPeriod(UINT period);
MMRESULT timeEndPeriod(UINT period);
/// Starts a periodic timer and answers its id, 0 on failure.
MMRESULT timeSetEvent(UINT delay, UINT resolution, LPTIMECALLBACK callback, DWORD_PTR user,
                      UINT flags);
/// No callback begins once it has returned; one that is under way may still be running.
MMRESULT timeKillEvent(UINT timerId);

// ---- MIDI outputs ----

struct midihdr_tag {
    char* lpData;
    DWORD dwBufferLength;
    DWORD dwBytesRecorded;
    DWORD_PTR dwUser;
    DWORD dwFlags;
    midihdr_tag* lpNext;
    DWORD_PTR reserved;
    DWORD dwOffset;
    DWORD_PTR dwReserved[8];
};

constexpr MMRESULT MMSYSERR_BADDEVICEID = 2;
constexpr MMRESULT MMSYSERR_ALLOCATED = 4;
constexpr MMRESULT MMSYSERR_INVALHANDLE = 5;
constexpr MMRESULT MMSYSERR_NODRIVER = 6;
constexpr MMRESULT MMSYSERR_NOMEM = 7;
constexpr MMRESULT MIDIERR_UNPREPARED = 64;
constexpr MMRESULT MIDIERR_STILLPLAYING = 65;
constexpr MMRESULT MIDIERR_NOTREADY = 67;
constexpr DWORD CALLBACK_NULL = 0;
constexpr DWORD MHDR_DONE = 1;
constexpr DWORD MHDR_PREPARED = 2;
constexpr DWORD MHDR_INQUEUE = 4;

UINT midiOutGetNumDevs();
MMRESULT midiOutOpen(HMIDIOUT* device, UINT index, DWORD_PTR callback, DWORD_PTR instance,
                     DWORD flags);
MMRESULT midiOutClose(HMIDIOUT device);
/// All notes off, and no pedal held, on every channel.
MMRESULT midiOutReset(HMIDIOUT device);
MMRESULT midiOutShortMsg(HMIDIOUT device, DWORD message);
MMRESULT midiOutPrepareHeader(HMIDIOUT device, MIDIHDR* header, UINT size);
MMRESULT midiOutLongMsg(HMIDIOUT device, MIDIHDR* header, UINT size);
MMRESULT midiOutUnprepareHeader(HMIDIOUT device, MIDIHDR* header, UINT size);

// ---- waiting ----

/// Lets other threads run for so many milliseconds of real time, 0 = just gives way.
void Sleep(DWORD milliseconds);

// ---- floating-point unit ----

constexpr unsigned _PC_24 = 0x00020000;
constexpr unsigned _PC_53 = 0x00010000;
constexpr unsigned _PC_64 = 0x00000000;
constexpr unsigned _MCW_PC = 0x00030000;

/// Sets the precision of the old x86 floating-point unit and answers the setting in force; other
/// processors always compute in the precision of the type.
unsigned _controlfp(unsigned value, unsigned mask);
