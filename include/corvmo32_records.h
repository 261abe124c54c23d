/** @file
 * The records that cross the interface.
 *
 * All are packed and little-endian; on 32-bit targets their offsets are fixed and part of the
 * interface, on 64-bit builds pointers and handles are native. "Host" below names the fields that the
 * host fills in; every other field is the engine's to write and the host's to read. Unless said
 * otherwise times are absolute song ticks (division ticks per quarter note, the song begins at 0) and
 * a channel index is the song channel, 0 to 15.
 */
#ifndef CORVMO32_RECORDS_H
#define CORVMO32_RECORDS_H

#include <stdint.h>

#include "corvmo32_map.h"
#include "corvmo32_system.h"

/** Instrument standards (MMINIT.mode1, MMINIT.mode2, MIDIOUT.mode): they choose the reset message.
 *  Any other value counts as MMMODE_GM. */
enum { MMMODE_GM = 0, MMMODE_GS = 1, MMMODE_XG = 2 };

/** Bits of MMINIT.flags; the others are not read. */
enum {
    MMINIT_SECONDPLAYER = 0x0001, /**< player 2 is bound to device deviceIndex2 */
    MMINIT_NORESET = 0x0002, /**< player 2 gets no device, and songs that are opened with a no-reset
                                       request neither reset the device nor send their reset messages */
    MMINIT_SYSEXSTORE = 0x0004, /**< songs keep and play their system-exclusive messages */
    MMINIT_RESETONOPEN = 0x0008 /**< opening a song sends the reset message of the player's mode */
};

enum {
    MMINIT_TEXT_SIZE = 1024,   /**< bytes read from MMINIT.initSysExText */
    MMPATCH_NO_OVERRIDE = -127 /**< MMPATCH.program: the song's own programs are played */
};

/** Sizes of the tables of a song. */
enum {
    MM_MAX_LYRICS = 1536,
    MM_MAX_CHORDS = 1000,
    MM_MAX_MARKERS = 10, /**< at most 9 of them are filled */
    MM_MAX_SYSEX = 620,
    MM_MAX_LOOPS = 10,
    MM_TEXTLINE_SIZE = 96,
    MM_LONG_MESSAGE_SIZE = 4096 /**< the longest message that mm_LongMessage takes, in bytes */
};

/** MMLOOP.start of a record that is not in use. */
#define MMLOOP_UNUSED 0xFFFFFFFFu
/** mm_SetNextLocator: the range now playing keeps its end. */
#define MMLOCATOR_KEEP_END 0xFFFFFFFFu
/** mm_SetNextLocator: no range follows the one now playing. */
#define MMLOCATOR_NO_NEXT 0xFFFFFFFEu

#pragma pack(push, 1)

/** Settings of mm_InitEngine, filled by the host and read once. */
typedef struct MMINIT {
    HWND hwnd;             /**< window that receives the notifications; null = nothing is posted */
    int16_t timerPeriod;   /**< wanted timer period in milliseconds; held within what the timer can
                                    do: 0 becomes the shortest period, a negative one the longest */
    uint16_t reserved1;    /**< not read */
    uint32_t deviceIndex1; /**< player 1's MIDI output, 0 to 31; a larger index or one without a
                                    device leaves the player without output */
    uint32_t deviceIndex2; /**< player 2's MIDI output; read with MMINIT_SECONDPLAYER and without
                                    MMINIT_NORESET */
    uint16_t mode1;        /**< MMMODE_... of player 1's device */
    uint16_t mode2;        /**< MMMODE_... of player 2's device */
    uint16_t flags;        /**< MMINIT_... bits */
    int16_t resetGap;      /**< milliseconds that mm_PlayFirstNote waits after the song's last reset
                                    message; below 0 counts as 0 */
    int16_t noChase;       /**< 0 = a jump restores the channels' state; 1 = the map records only
                                    tempo and time signature and no state is sent; any other value =
                                    the state is recorded but not sent */
    CRITICAL_SECTION* lock; /**< the host's initialised lock, which must live until mm_EndEngine has
                                    returned; the engine only enters and leaves it */
    int16_t sendInitText;   /**< 1 = every mm_PlayFirstNote sends the init text, once; else never */
    const char*
        initSysExText;       /**< 1024 readable bytes, copied: lines of hexadecimal digit pairs, one
                                    system-exclusive message a line, sent as it stands; spaces and
                                    an odd last digit do not count; CR, LF or both end a line, a
                                    zero byte the text (the last byte counts as zero); null = none */
    uint32_t firstNoteDelay; /**< milliseconds that mm_PlayFirstNote waits at its end */
    uint32_t eventGap;       /**< milliseconds that mm_PlayFirstNote waits after each message of the
                                    song, bank selects that it only stores included */
} MMINIT;

/** One timed event of a song. Written while a song is opened. */
typedef struct MMEVENT {
    uint8_t kind; /**< MIDI status (80-EF, F1-FE), F0 = stored system-exclusive message, 51 = tempo,
                        58 = time signature */
    uint8_t
        byte1; /**< first data byte; F0: slot number, high byte; 51: tempo, high byte; 58: beats in
                        a bar */
    uint8_t
        byte2; /**< second data byte; F0: slot number, low byte; 51: tempo, middle byte; 58: note
                        value of a beat as a number */
    uint8_t byte3; /**< 0; F0: the message's length modulo 256; 51: tempo, low byte */
    uint32_t time; /**< tick */
} MMEVENT;

/** One lyric: a syllable, a word or a line break. Written while a song is opened. */
typedef struct MMLYRIC {
    uint32_t time; /**< tick at which it is due */
    char text[80]; /**< the song's bytes as they stand, ending with a zero; "\r" is a line break */
} MMLYRIC;

/** One marker. Written while a song is opened. */
typedef struct MMMARKER {
    uint32_t time; /**< tick */
    char text[80]; /**< the song's bytes as they stand; a text of 80 bytes has no ending zero */
} MMMARKER;

/** One chord name. Written while a song is opened. */
typedef struct MMCHORD {
    uint32_t time; /**< tick at which it is due */
    char text[16]; /**< at most 14 bytes and an ending zero; "\r" in the start record */
} MMCHORD;

/** One stored system-exclusive message, from its F0 to its F7. Written while a song is opened. */
typedef struct MMSYSEX {
    union {
        uint8_t data[96]; /**< ownBlock 0: the message itself; its length is the event's byte3 */
        struct {
            HGLOBAL mem;    /**< ownBlock 1: handle of the message's own block */
            uint8_t* ptr;   /**< ownBlock 1: the message */
            int16_t length; /**< ownBlock 1: its length in bytes, the F0 included */
        } block;
    } message;              /**< the message or where it lies */
    uint16_t isReset;       /**< 1 = the GM, GS or XG reset message */
    uint16_t ownBlock;      /**< 1 = longer than 96 bytes, in a block of its own */
    uint16_t isKaraokeText; /**< 1 = a karaoke text message; mm_PlayFirstNote does not send it */
} MMSYSEX;

/** State of the loader in one track chunk. Written while a song is opened. */
typedef struct MMTRACK {
    uint16_t number;       /**< 1 for the first track chunk */
    uint32_t length;       /**< declared data length in bytes */
    uint32_t dataStart;    /**< file offset of the first data byte */
    uint16_t reserved;     /**< 0 */
    uint16_t parsed;       /**< 1 once the track was read to its end */
    uint32_t eventPos;     /**< file offset of the current event */
    uint32_t readPos;      /**< file offset of the next byte to read */
    uint32_t time;         /**< tick of the current event */
    int16_t runningStatus; /**< status in force, -1 = none */
} MMTRACK;

/** Metronome settings: host, handed to mm_Open. Of the five 16-bit fields from clickChannel on only
 *  the low byte is used. */
typedef struct MMCLICK {
    uint16_t clickOn;             /**< host: 1 = the metronome clicks */
    int16_t clickDevice;          /**< host: MIDI output, 0 to 31; another index gives no click */
    uint16_t clickChannel;        /**< host: MIDI channel, 0 to 15 */
    uint16_t clickAccentNote;     /**< host: note of the first beat of a bar */
    uint16_t clickAccentVelocity; /**< host: its velocity */
    uint16_t clickNote;           /**< host: note of the other beats */
    uint16_t clickVelocity;       /**< host: their velocity */
    uint32_t timeSigTick;         /**< tick from which bars are counted; 0 after opening */
    uint32_t nextClick;           /**< tick of the next click; 0 after opening */
} MMCLICK;

/** One play range: host, handed to mm_SetLoop in tables of 10. */
typedef struct MMLOOP {
    uint16_t endLocked; /**< 1 = mm_SetNextLocator may not replace the range's end */
    uint32_t start;     /**< first tick; MMLOOP_UNUSED = record not in use */
    uint32_t end;       /**< tick at which the range ends; 0 = the end of the song */
    uint32_t reserved;  /**< copied, not read */
    int16_t repeats;    /**< passes to play, counted down while playing; below 1 counts as 1 */
    int16_t repeatsSet; /**< the passes as set; written by the engine */
} MMLOOP;

/** One fade: a curve of five straight segments over time, which scales the velocity of every note.
 *  In the first segment k whose end is not yet past, the level is slope[k] * time + base[k] in signed
 *  32-bit arithmetic, a negative result counting as 0. */
typedef struct MMFADE {
    uint16_t active;    /**< 1 while the fade acts on the notes */
    int32_t level;      /**< in 1/1024 percent: 102400 = full loudness, 0 = silence */
    uint32_t time;      /**< milliseconds since the fade began; stands while the player is halted */
    uint32_t reserved1; /**< not read */
    uint32_t
        segmentEnd[5];     /**< host: milliseconds, not decreasing; the last is the fade's length */
    uint32_t reserved2[6]; /**< not read */
    int32_t slope[5];      /**< host: level change a millisecond */
    int32_t reserved3;     /**< not read */
    int32_t base[5];       /**< host: level of the segment's line at time 0 */
    int32_t reserved4;     /**< not read */
} MMFADE;

/** Patch override of one channel: host, handed to mm_SetPatch. */
typedef struct MMPATCH {
    int16_t bankMsb;  /**< 0 to 127 */
    int16_t bankLsb;  /**< 0 to 127 */
    int16_t program;  /**< 0 to 127 replaces the song's programs; MMPATCH_NO_OVERRIDE does not */
    int16_t keepBank; /**< not 0 = the song's bank selects do not replace bankMsb and bankLsb */
} MMPATCH;

/** One note replacement of the drum channel: host, handed to mm_SetReplaceNotes in tables of 10. */
typedef struct MMNOTEPAIR {
    int8_t from; /**< note that is replaced, -1 = pair not in use */
    int8_t to;   /**< note that is sent in its place */
} MMNOTEPAIR;

/** What the engine found out about a song; mm_GetInfo. The first four fields are filled by mm_Scan
 *  (or mm_Open with MMOPT_SCAN), zero or "none" otherwise. */
typedef struct MMINFO {
    char title[33];  /**< first title line, at most 32 bytes and an ending zero */
    char title2[33]; /**< second title line, same form */
    uint32_t
        firstTempo; /**< microseconds per quarter note of the first tempo event; mm_Scan makes it
                               500000 where there is none */
    int32_t
        keySignature;  /**< sf << 8 | mi: sharps (above 0) or flats (below 0), 0 major or 1 minor;
                               -1 = none, which mm_Scan makes 0 */
    int16_t hasLyrics; /**< 1 = the song has more than four lyrics */
    int16_t hasChords; /**< 1 = the song has more than four chords */
} MMINFO;

/** One player: its device, its song, its settings and where it stands. mm_GetMM1, mm_GetMM2 and mm_GetMM
 *  hand out the addresses of the two records, which never move. The host reads fields in place; while
 *  the timer runs a field may change between two reads, unless the host holds its lock. */
typedef struct _tagMIDIOUT {
    HMIDIOUT hmo;       /**< the player's handle; set at start-up, kept by closing */
    uint32_t mode;      /**< MMMODE_... of the device; set at start-up, kept by closing */
    uint32_t options;   /**< MMOPT_... bits of the song; mm_Open, mm_SetOptions */
    int16_t format;     /**< Standard MIDI File format, 0 or 1 */
    int16_t trackCount; /**< tracks that the file header declares, 1 to 127 */
    int16_t division;   /**< ticks per quarter note, 1 to 960 */
    MMINFO info;        /**< what scanning found out */

    uint32_t fileSize;     /**< bytes */
    uint8_t* fileData;     /**< the file while it is loaded */
    HGLOBAL fileMem;       /**< its memory handle */
    uint8_t reserved1[6];  /**< 0 */
    int32_t eventCapacity; /**< events that the event buffer can hold */
    uint8_t reserved2[4];  /**< 0 */
    int32_t eventIndex;    /**< index of the next event to play */
    int32_t eventCount;    /**< events in the list */
    HGLOBAL eventMem;      /**< memory handle of the event buffer */
    MMEVENT* events;       /**< the event list in time order */
    MMEVENT* eventEnd;     /**< next free record while loading */
    MMEVENT* eventPlay;    /**< next event to play */

    MMPATCH patch[16];       /**< mm_SetPatch; without an override the song's own bank selects */
    int16_t volume[16];      /**< mm_SetVolume: offset to controller 7 */
    int16_t reverb[16];      /**< mm_SetReverb: offset to controller 91 */
    int16_t chorus[16];      /**< mm_SetChorus: offset to controller 93 */
    int16_t balance[16];     /**< mm_SetBalance: offset to controller 10 */
    int16_t keyShift[16];    /**< mm_SetKeyShift: semitones */
    int16_t velocity[16];    /**< mm_SetVelocity: percent */
    int16_t mute[16];        /**< mm_SetMute: not 0 = notes are not sent */
    int16_t noTranspose[16]; /**< mm_SetNoTranspose: not 0 = not transposed; by output channel */
    float tempoPercent;      /**< mm_SetTempo: percent, positive = faster */
    int16_t transpose;       /**< mm_SetTranspose: semitones */
    MMPATCH songPatch[16];   /**< the song's own bank selects while the host's bank is in force */
    MMFADE fadeIn;           /**< mm_SetFadeIn */
    MMFADE fadeOut;          /**< mm_SetFadeOut */

    uint32_t eventPos;     /**< loader: file offset of the current event */
    uint32_t readPos;      /**< loader: file offset of the next byte to read */
    uint32_t trackTime;    /**< loader: tick of the current event */
    int16_t runningStatus; /**< loader: status in force, -1 = none */
    int16_t vlqLength;     /**< loader: bytes of the last variable-length number */
    uint8_t reserved3[2];  /**< 0 */
    MMTRACK* tracks;       /**< track table, one entry a track chunk */
    HGLOBAL trackMem;      /**< its memory handle */

    HGLOBAL lyricMem;   /**< memory handle of the lyric table */
    MMLYRIC* lyrics;    /**< lyric table of MM_MAX_LYRICS records; record 0 is a line break */
    int16_t lyricCount; /**< lyrics, the start record included */
    int16_t lyricIndex; /**< index of the next lyric to announce */
    MMLYRIC* lyricPlay; /**< next lyric to announce */
    HGLOBAL chordMem;   /**< memory handle of the chord table */
    MMCHORD* chords;    /**< chord table of MM_MAX_CHORDS records; record 0 is a start record */
    int16_t chordCount; /**< chords, the start record included */
    int16_t chordIndex; /**< index of the next chord to announce */
    MMCHORD* chordPlay; /**< next chord to announce */
    HGLOBAL sysexMem;   /**< memory handle of the system-exclusive store */
    MMSYSEX* sysex;     /**< store of MM_MAX_SYSEX messages; null without MMINIT_SYSEXSTORE */
    int16_t sysexCount; /**< messages in the store */
    int16_t resetCount; /**< reset messages in the store, counted down by mm_PlayFirstNote */

    uint32_t ticks;         /**< song position */
    uint32_t tempo;         /**< microseconds per quarter note * 256, after tempoPercent */
    uint32_t tickStep;      /**< division * timer period * 256000, its low 32 bits */
    uint32_t tickRemainder; /**< what the clock carries to the next timer period, below tempo */
    int16_t playing;        /**< not 0 while the player plays */

    MMLOOP loops[MM_MAX_LOOPS]; /**< play ranges; mm_SetLoop, mm_SetNextLocator */
    MMMAP map;                  /**< channel map; mm_GetMap */
    int16_t loopIndex;          /**< index of the current play range */
    MMLOOP* curLoop;            /**< the current play range */
    uint8_t reserved4[4];       /**< 0 */
    uint16_t loopsSet;          /**< 1 once play ranges were set */
    int16_t numLoops;           /**< play ranges in use */
    int16_t endOnBeat;          /**< argument of mm_Open */

    MMMARKER* markers;          /**< marker table of MM_MAX_MARKERS records */
    HGLOBAL markerMem;          /**< its memory handle */
    int16_t markerCount;        /**< markers */
    HMIDIOUT channelDevice[16]; /**< by song channel: the output that its messages go to */
    uint8_t channelOut[16];     /**< by song channel: the MIDI channel that its messages carry */
    MMCLICK click;              /**< metronome */
    int16_t beatsPerBar;        /**< beats in a bar of the last time signature played; 4 at first */
    int16_t beatUnit;           /**< note value of a beat as a number; 4 at first */

    char* textLine[4];           /**< loader: karaoke text lines of MM_TEXTLINE_SIZE bytes */
    int16_t textLineIndex;       /**< loader: current text line */
    HGLOBAL longBufferMem;       /**< memory handle of the long-message buffer; kept by closing */
    uint8_t* longBuffer;         /**< the long-message buffer; kept by closing */
    HGLOBAL longHeaderMem;       /**< memory handle of the long-message header; kept by closing */
    MIDIHDR* longHeader;         /**< the long-message header; kept by closing */
    MMNOTEPAIR replaceNotes[10]; /**< mm_SetReplaceNotes */
} MIDIOUT;

#pragma pack(pop)

#endif
