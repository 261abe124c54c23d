/** @file
 * The system types that cross the interface.
 *
 * On Windows they are the system's own. Elsewhere the same names stand for opaque handles of the
 * project's platform layer; its host header, corvmo32_linux.h, makes and destroys them.
 */
#ifndef CORVMO32_SYSTEM_H
#define CORVMO32_SYSTEM_H

#include <stdint.h>

#ifdef _WIN32

#include <windows.h>

#include <mmsystem.h>

/** Calling convention of every export: the callee cleans the stack on 32-bit Windows. */
#define CORVMO_CALL __stdcall

#else

#define CORVMO_CALL

typedef unsigned int UINT;
typedef uint32_t DWORD;
typedef uintptr_t DWORD_PTR;
typedef UINT MMRESULT;

/** An open MIDI output. */
typedef struct HMIDIOUT__* HMIDIOUT;

/** A queue of posted messages. */
typedef struct HWND__* HWND;

/** A block of the global heap. */
typedef struct HGLOBAL__* HGLOBAL;

/** A recursive lock that the host owns. */
typedef struct corvmo_critical_section CRITICAL_SECTION;

/** Header of one long message. */
typedef struct midihdr_tag MIDIHDR;

/** The call was carried out. */
#define MMSYSERR_NOERROR 0
/** An argument lies outside its range. */
#define MMSYSERR_INVALPARAM 11

#endif

#endif
