/** @file
 * The codes that mm_GetLastError() answers. The numbers form one range with gaps; a code stays until
 * the next failure replaces it, success never clears it.
 */
#ifndef CORVMO32_ERRORS_H
#define CORVMO32_ERRORS_H

enum {
    /** mm_Open, mm_Scan: a chunk where a track ("MTrk") is expected carries another tag, or the file
     *  ends where a declared track should begin. */
    ENGINE_ERR_CHUNK = 1001,

    /** mm_Open, mm_Scan: a data byte where a status byte is expected and no running status is in
     *  force, or one of the undefined statuses F4, F5, F9 and FD. */
    ENGINE_ERR_STATUS = 1002,

    /** mm_Open, mm_Scan: a system-exclusive event whose length is 0 or takes more than two bytes, or
     *  whose last data byte is not F7. */
    ENGINE_ERR_SYSEX = 1003,

    /** mm_InitEngine: the timer's capabilities cannot be read, its resolution cannot be set, or the
     *  periodic timer cannot be started. */
    ENGINE_ERR_TIMER = 1008,

    /** mm_InitEngine: a long-message block cannot be allocated. mm_Open, mm_Scan: a song table, a
     *  text line or the copy of the file cannot be allocated or locked. */
    ENGINE_ERR_ALLOC = 1009,

    /** mm_InitEngine: a long-message block cannot be locked. mm_Open, mm_Scan: the event buffer
     *  cannot be allocated, locked or grown. */
    ENGINE_ERR_LOCK = 1010,

    /** mm_Open, mm_Scan: the file cannot be opened, its size cannot be read or is 0, or its header is
     *  not that of a Standard MIDI File of format 0 or 1 with 1 to 127 tracks and 1 to 960 ticks per
     *  quarter note. */
    ENGINE_ERR_FILE = 1011,

    /** mm_Open, mm_Scan: reading the file yields no bytes. */
    ENGINE_ERR_READ = 1015
};

#endif
