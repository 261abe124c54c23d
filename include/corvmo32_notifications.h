/** @file
 * The messages that the engine posts to the host's window (MMINIT.hwnd, mm_SetWindow).
 *
 * They are posted, never sent: the engine does not wait for the window, and a message that the
 * window's queue cannot take is lost. A notification with an option bit is posted only while the bit
 * is set in the player's options word (mm_Open, mm_SetOptions). A channel in wParam is the song
 * channel: the channel nibble of the event in the file, 0 to 15, before any routing.
 */
#ifndef CORVMO32_NOTIFICATIONS_H
#define CORVMO32_NOTIFICATIONS_H

/** Bits of a player's options word. */
enum {
    MMOPT_NOTES = 0x01, /**< MMN_NOTEON and MMN_NOTEOFF */
    MMOPT_CHANNELS =
        0x02,            /**< MMN_PROGRAM, MMN_PATCH, MMN_VOLUME, MMN_PAN, MMN_REVERB, MMN_CHORUS */
    MMOPT_LYRICS = 0x04, /**< MMN_LYRIC */
    MMOPT_CHORDS = 0x08, /**< MMN_CHORD */
    MMOPT_POSITION = 0x10,  /**< MMN_POSITION */
    MMOPT_POSITION2 = 0x20, /**< MMN_POSITION as well: either bit switches it on */
    MMOPT_TEMPO = 0x40,     /**< MMN_TEMPO */
    MMOPT_SCAN = 0x80 /**< scan only: mm_Open reads the song for its information, not to play it */
};

/** Message numbers: WM_USER (0x400) and an offset. */
enum {
    /** A program change was sent. wParam: song channel. lParam: program << 16 | bank LSB << 8 | bank
     *  MSB: what was sent, or, while a patch override is in force, what the song asked for.
     *  Bit MMOPT_CHANNELS. */
    MMN_PROGRAM = 0x401,

    /** The tempo changed. wParam: 0 a tempo event was played, 1 one was met before the first note,
     *  2 a seek restored it. lParam: microseconds per quarter note, the tempo percentage applied.
     *  Bit MMOPT_TEMPO. */
    MMN_TEMPO = 0x402,

    /** The position was moved. wParam: 0. lParam: the new position in ticks, 0 after a rewind.
     *  Bit MMOPT_POSITION or MMOPT_POSITION2. */
    MMN_POSITION = 0x403,

    /** The last play range ended and the player stopped. wParam: the player's handle. lParam: 0.
     *  Always posted. */
    MMN_END = 0x408,

    /** A note-on was played whose velocity, all settings applied, is not 0, whether or not its channel
     *  is muted. wParam: song channel. lParam: 0. Bit MMOPT_NOTES. */
    MMN_NOTEON = 0x40A,

    /** A note-off was played, or a note-on whose velocity came to 0. wParam: song channel. lParam: 0.
     *  Bit MMOPT_NOTES. */
    MMN_NOTEOFF = 0x40B,

    /** Controller 7 was sent. wParam: song channel. lParam: the song's value, before the channel's
     *  offset. Bit MMOPT_CHANNELS. */
    MMN_VOLUME = 0x414,

    /** Controller 10 was sent; otherwise as MMN_VOLUME (a pan of 0, sent as 64, is reported as 0). */
    MMN_PAN = 0x415,

    /** Controller 91 was sent; otherwise as MMN_VOLUME. */
    MMN_REVERB = 0x416,

    /** Controller 93 was sent; otherwise as MMN_VOLUME. */
    MMN_CHORUS = 0x417,

    /** While playing: the lyric with this index is due. After a seek: the index of the next lyric.
     *  After a rewind: 0. wParam: lyric index. lParam: 0. Bit MMOPT_LYRICS. */
    MMN_LYRIC = 0x418,

    /** As MMN_LYRIC, for the chord table. Bit MMOPT_CHORDS. */
    MMN_CHORD = 0x419,

    /** Follows MMN_PROGRAM while a patch override is in force. wParam: song channel. lParam: the
     *  override's program << 16 | bank LSB << 8 | bank MSB, which is what was sent.
     *  Bit MMOPT_CHANNELS. */
    MMN_PATCH = 0x41F,

    /** A play range begins: posted once when the player goes on to the next range, twice when it
     *  repeats the current one. wParam: 0. lParam: the range's first tick. Always posted. */
    MMN_LOOP = 0x421
};

#endif
