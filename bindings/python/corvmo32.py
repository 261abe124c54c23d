"""corvmo32 for Python: constants, records and functions of the library, through ctypes.

    engine = corvmo32.load()
    engine.mm_GetTicks(player)

include/corvmo32.h is the manual; this module repeats its declarations with a line about each.
On Windows it takes a 32-bit Python, because corvmo32.dll is for 32-bit processes. On Linux pointers
and handles are native, and the functions of corvmo32_linux.h are there too.

Whatever is handed to the engine for longer than a call must stay referenced in Python: the lock
until mm_EndEngine has returned, the functions of a corvmo_output until other outputs are set. Names
that Python reserves end with an underscore.
"""

import ctypes
import sys
from ctypes import (
    CFUNCTYPE,
    POINTER,
    Structure,
    Union,
    c_char,
    c_char_p,
    c_float,
    c_int,
    c_int8,
    c_int16,
    c_int32,
    c_size_t,
    c_ssize_t,
    c_uint,
    c_uint8,
    c_uint16,
    c_uint32,
    c_uint64,
    c_void_p,
)

# Sizes of a song's tables
MM_MAX_LYRICS = 1536
MM_MAX_CHORDS = 1000
MM_MAX_MARKERS = 10  # at most 9 of them are filled
MM_MAX_SYSEX = 620
MM_MAX_LOOPS = 10
MM_TEXTLINE_SIZE = 96
MM_LONG_MESSAGE_SIZE = 4096  # bytes of the longest message of mm_LongMessage

# Sizes and special values
MMINIT_TEXT_SIZE = 1024  # bytes read from MMINIT.initSysExText
MMPATCH_NO_OVERRIDE = -127  # MMPATCH.program: the song's own programs are played

# MMINIT.mode1, MMINIT.mode2: the device's standard
MMMODE_GM = 0  # any other value counts as this
MMMODE_GS = 1
MMMODE_XG = 2

# MMINIT.flags
MMINIT_SECONDPLAYER = 0x0001  # player 2 is bound to device deviceIndex2
MMINIT_NORESET = 0x0002  # player 2 gets no device; no-reset songs do not reset the device
MMINIT_SYSEXSTORE = 0x0004  # songs keep and play their system-exclusive messages
MMINIT_RESETONOPEN = 0x0008  # opening a song sends the reset message of the player's mode

# Options word: mm_Open, mm_SetOptions
MMOPT_NOTES = 0x01  # MMN_NOTEON and MMN_NOTEOFF
MMOPT_CHANNELS = 0x02  # MMN_PROGRAM, _PATCH, _VOLUME, _PAN, _REVERB, _CHORUS
MMOPT_LYRICS = 0x04  # MMN_LYRIC
MMOPT_CHORDS = 0x08  # MMN_CHORD
MMOPT_POSITION = 0x10  # MMN_POSITION
MMOPT_POSITION2 = 0x20  # MMN_POSITION as well
MMOPT_TEMPO = 0x40  # MMN_TEMPO
MMOPT_SCAN = 0x80  # mm_Open reads the song for its information only

# Notifications: the message numbers that are posted, with wParam and lParam
MMN_PROGRAM = 0x401  # program change sent: channel, program << 16 | bank LSB << 8 | bank MSB
MMN_TEMPO = 0x402  # tempo changed: 0 played, 1 before the first note, 2 by a seek; microseconds
MMN_POSITION = 0x403  # position was moved: 0, tick
MMN_END = 0x408  # the song ended: player handle, 0
MMN_NOTEON = 0x40A  # note-on: channel, 0
MMN_NOTEOFF = 0x40B  # note-off: channel, 0
MMN_VOLUME = 0x414  # controller 7 sent: channel, the song's value
MMN_PAN = 0x415  # controller 10 sent: channel, the song's value
MMN_REVERB = 0x416  # controller 91 sent: channel, the song's value
MMN_CHORUS = 0x417  # controller 93 sent: channel, the song's value
MMN_LYRIC = 0x418  # lyric is due: its index, 0
MMN_CHORD = 0x419  # chord is due: its index, 0
MMN_PATCH = 0x41F  # override sent in its place: channel, as MMN_PROGRAM
MMN_LOOP = 0x421  # a play range begins: 0, its first tick

# MMLOOP.start and mm_SetNextLocator
MMLOOP_UNUSED = 0xFFFFFFFF  # MMLOOP.start of a record that is not in use
MMLOCATOR_KEEP_END = 0xFFFFFFFF  # the range now playing keeps its end
MMLOCATOR_NO_NEXT = 0xFFFFFFFE  # no range follows the one now playing

# mm_GetLastError
ENGINE_ERR_CHUNK = 1001  # song: no track chunk where one is expected
ENGINE_ERR_STATUS = 1002  # song: data byte without a status, or an undefined status
ENGINE_ERR_SYSEX = 1003  # song: malformed system-exclusive event
ENGINE_ERR_TIMER = 1008  # start-up: the timer cannot be had
ENGINE_ERR_ALLOC = 1009  # out of memory
ENGINE_ERR_LOCK = 1010  # memory cannot be locked; song: no memory for the events
ENGINE_ERR_FILE = 1011  # song: cannot be opened, or is no Standard MIDI File that the engine reads
ENGINE_ERR_READ = 1015  # song: reading yields no bytes

# Results of the system's that the engine gives itself
MMSYSERR_NOERROR = 0  # the message was sent
MMSYSERR_INVALPARAM = 11  # an argument lies outside its range

# Channel map: values that the song did not set
MMMAP_NONE8 = 0xFF  # map slot that the song did not set
MMMAP_NONE16 = 0xFFFF  # map time signature that the song did not set
MMMAP_NONE32 = 0xFFFFFFFF  # map tempo that the song did not set

# Channel map: slots (data bytes) of a channel
MMSLOT_POLY_KEY = 0  # polyphonic key pressure: key; recorded, not sent
MMSLOT_POLY_PRESSURE = 1  # its pressure; recorded, not sent
MMSLOT_PROGRAM = 2
MMSLOT_CHANNEL_PRESSURE = 3
MMSLOT_BEND_LOW = 4  # pitch bend, first data byte
MMSLOT_BEND_HIGH = 5
MMSLOT_BANK_MSB = 6  # controller 0
MMSLOT_BANK_LSB = 7  # controller 32
MMSLOT_MODULATION = 8
MMSLOT_BREATH = 10
MMSLOT_FOOT = 12
MMSLOT_PORTAMENTO_TIME = 14
MMSLOT_VOLUME = 16
MMSLOT_VOLUME_FINE = 17  # recorded, not sent
MMSLOT_BALANCE = 18  # controller 8
MMSLOT_PAN = 20  # controller 10
MMSLOT_PAN_FINE = 21  # recorded, not sent
MMSLOT_EXPRESSION = 22
MMSLOT_EFFECT1 = 24  # controller 12
MMSLOT_EFFECT2 = 26  # controller 13
MMSLOT_GENERAL1 = 28  # controllers 16 to 19 in slots 28 to 31
MMSLOT_SUSTAIN = 32  # controllers 64 to 84 in slots 32 to 52
MMSLOT_PORTAMENTO_CONTROL = 52  # controller 84
MMSLOT_REVERB = 53  # controller 91
MMSLOT_TREMOLO = 54  # controller 92
MMSLOT_CHORUS = 55  # controller 93
MMSLOT_DETUNE = 56  # controller 94
MMSLOT_PHASER = 57  # controller 95
MMSLOT_RPN_BEND_RANGE = 58  # registered parameter 0/0
MMSLOT_NEVER_SET = 59  # holds 0xFF in every map that was built
MMSLOT_RPN_FINE_TUNING = 60  # registered parameter 0/1
MMSLOT_RPN_COARSE_TUNING = 62  # registered parameter 0/2
MMSLOT_NRPN_VIBRATO_RATE = 64  # non-registered parameter 1/8
MMSLOT_NRPN_VIBRATO_DEPTH = 66  # 1/9
MMSLOT_NRPN_VIBRATO_DELAY = 68  # 1/10
MMSLOT_NRPN_CUTOFF = 70  # 1/32
MMSLOT_NRPN_RESONANCE = 72  # 1/33
MMSLOT_NRPN_ATTACK = 74  # 1/99
MMSLOT_NRPN_DECAY = 76  # 1/100
MMSLOT_NRPN_RELEASE = 78  # 1/102
MMMAP_SLOTS = 90

HMIDIOUT = c_void_p  # an open MIDI output
HWND = c_void_p  # the window that receives notifications
HGLOBAL = c_void_p  # a block of the global heap


class _Record(Structure):
    _pack_ = 1
    _layout_ = "ms"


class MMMAPCHANNEL(_Record):
    """One channel of the map."""

    _fields_ = [
        # data bytes, indexed by MMSLOT_...; 0xFF = not set by the song
        ("slot", c_uint8 * MMMAP_SLOTS),
    ]


class MMMAP(_Record):
    """The channel map: the state that the song gave the channels before a tick."""

    _fields_ = [
        ("tempo", c_uint32),  # microseconds per quarter note as in the file; 0xFFFFFFFF = none
        ("beatsPerBar", c_uint16),  # numerator of the time signature in force; 0xFFFF = none
        ("beatUnit", c_uint16),  # its note value as a number (4 = quarter note)
        ("timeSigTick", c_uint32),  # tick of that time signature
        ("channel", MMMAPCHANNEL * 16),  # by song channel
    ]


class MMINIT(_Record):
    """Settings of mm_InitEngine."""

    _fields_ = [
        ("hwnd", HWND),  # window that receives the notifications; may be None
        ("timerPeriod", c_int16),  # milliseconds
        ("reserved1", c_uint16),  # not read
        ("deviceIndex1", c_uint32),  # player 1's MIDI output, 0 to 31
        ("deviceIndex2", c_uint32),  # player 2's; read with MMINIT_SECONDPLAYER
        ("mode1", c_uint16),  # MMMODE_... of player 1's device
        ("mode2", c_uint16),  # MMMODE_... of player 2's device
        ("flags", c_uint16),  # MMINIT_... bits
        ("resetGap", c_int16),  # milliseconds to wait after the last reset message
        ("noChase", c_int16),  # 0 = a jump restores the channels' state
        ("lock", c_void_p),  # initialised CRITICAL_SECTION; lives until mm_EndEngine has returned
        ("sendInitText", c_int16),  # 1 = mm_PlayFirstNote sends the init text
        ("initSysExText", c_char_p),  # 1024 readable bytes of hexadecimal lines; None = none
        ("firstNoteDelay", c_uint32),  # milliseconds at the end of mm_PlayFirstNote
        ("eventGap", c_uint32),  # milliseconds after each message of mm_PlayFirstNote
    ]


class MMEVENT(_Record):
    """One event of a song."""

    _fields_ = [
        ("kind", c_uint8),  # MIDI status; F0 stored message, 51 tempo, 58 time signature
        ("byte1", c_uint8),  # first data byte
        ("byte2", c_uint8),  # second data byte
        ("byte3", c_uint8),  # 0; tempo: low byte
        ("time", c_uint32),  # tick
    ]


class MMLYRIC(_Record):
    """One lyric: a syllable, a word, or a line break (byte 13)."""

    _fields_ = [
        ("time", c_uint32),  # tick at which it is due
        ("text", c_char * 80),  # ends with a zero
    ]


class MMMARKER(_Record):
    """One marker."""

    _fields_ = [
        ("time", c_uint32),  # tick
        ("text", c_char * 80),  # ends with a zero unless it is full
    ]


class MMCHORD(_Record):
    """One chord name."""

    _fields_ = [
        ("time", c_uint32),  # tick at which it is due
        ("text", c_char * 16),  # ends with a zero
    ]


class MMSYSEXBLOCK(_Record):
    """MMSYSEX with ownBlock 1: what stands at the start of data."""

    _fields_ = [
        ("mem", HGLOBAL),  # handle of the message's block
        ("ptr", POINTER(c_uint8)),  # the message
        ("length", c_int16),  # its length in bytes
    ]


class _SysExMessage(Union):
    _fields_ = [("data", c_uint8 * 96), ("block", MMSYSEXBLOCK)]


class MMSYSEX(_Record):
    """One stored system-exclusive message."""

    _anonymous_ = ["message"]
    _fields_ = [
        ("message", _SysExMessage),  # ownBlock 0: the message; its length is the event's byte3
        ("isReset", c_uint16),  # 1 = the GM, GS or XG reset message
        ("ownBlock", c_uint16),  # 1 = longer than 96 bytes, in a block of its own
        ("isKaraokeText", c_uint16),  # 1 = a karaoke text message
    ]


class MMTRACK(_Record):
    """State of the loader in one track."""

    _fields_ = [
        ("number", c_uint16),  # 1 for the first track chunk
        ("length", c_uint32),  # declared data length in bytes
        ("dataStart", c_uint32),  # file offset of the first data byte
        ("reserved", c_uint16),  # 0
        ("parsed", c_uint16),  # 1 once the track was read to its end
        ("eventPos", c_uint32),  # file offset of the current event
        ("readPos", c_uint32),  # file offset of the next byte to read
        ("time", c_uint32),  # tick of the current event
        ("runningStatus", c_int16),  # status in force, -1 = none
    ]


class MMCLICK(_Record):
    """Metronome settings of mm_Open."""

    _fields_ = [
        ("clickOn", c_uint16),  # 1 = the metronome clicks
        ("clickDevice", c_int16),  # MIDI output, 0 to 31; another index gives no click
        ("clickChannel", c_uint16),  # MIDI channel, 0 to 15
        ("clickAccentNote", c_uint16),  # note of the first beat of a bar
        ("clickAccentVelocity", c_uint16),  # its velocity
        ("clickNote", c_uint16),  # note of the other beats
        ("clickVelocity", c_uint16),  # their velocity
        ("timeSigTick", c_uint32),  # tick from which bars are counted; 0 after opening
        ("nextClick", c_uint32),  # tick of the next click; 0 after opening
    ]


class MMLOOP(_Record):
    """One play range; mm_SetLoop takes ten."""

    _fields_ = [
        ("endLocked", c_uint16),  # 1 = mm_SetNextLocator may not move the end
        ("start", c_uint32),  # first tick; MMLOOP_UNUSED = record not in use
        ("end", c_uint32),  # tick at which the range ends; 0 = the end of the song
        ("reserved", c_uint32),  # copied, not read
        ("repeats", c_int16),  # passes to play, counted down
        ("repeatsSet", c_int16),  # the passes as set; by the engine
    ]


class MMFADE(_Record):
    """One fade: in segment k, level = slope[k] * time + base[k]."""

    _fields_ = [
        ("active", c_uint16),  # 1 while the fade acts on the notes
        ("level", c_int32),  # 1/1024 percent: 102400 = full loudness
        ("time", c_uint32),  # milliseconds since the fade began
        ("reserved1", c_uint32),  # not read
        ("segmentEnd", c_uint32 * 5),  # milliseconds, not decreasing
        ("reserved2", c_uint32 * 6),  # not read
        ("slope", c_int32 * 5),  # level change a millisecond
        ("reserved3", c_int32),  # not read
        ("base", c_int32 * 5),  # level of the segment's line at time 0
        ("reserved4", c_int32),  # not read
    ]


class MMPATCH(_Record):
    """Patch override of a channel."""

    _fields_ = [
        ("bankMsb", c_int16),  # 0 to 127
        ("bankLsb", c_int16),  # 0 to 127
        ("program", c_int16),  # 0 to 127, or MMPATCH_NO_OVERRIDE
        ("keepBank", c_int16),  # not 0 = the song's banks do not replace these
    ]


class MMNOTEPAIR(_Record):
    """One note replacement of the drum channel; mm_SetReplaceNotes takes ten."""

    _fields_ = [
        ("from_", c_int8),  # note that is replaced, -1 = pair not in use
        ("to", c_int8),  # note that is sent in its place
    ]


class MMINFO(_Record):
    """What the engine found out about a song."""

    _fields_ = [
        ("title", c_char * 33),  # first title line, ends with a zero
        ("title2", c_char * 33),  # second title line, ends with a zero
        ("firstTempo", c_uint32),  # microseconds per quarter note
        ("keySignature", c_int32),  # (sharps, or minus flats) << 8 | minor; -1 = none
        ("hasLyrics", c_int16),  # 1 = more than four lyrics
        ("hasChords", c_int16),  # 1 = more than four chords
    ]


class MIDIOUT(_Record):
    """One player."""

    _fields_ = [
        ("hmo", HMIDIOUT),  # the player's handle; set at start-up, kept by closing
        ("mode", c_uint32),  # MMMODE_... of the device; set at start-up, kept by closing
        ("options", c_uint32),  # MMOPT_... bits of the song; mm_Open, mm_SetOptions
        ("format", c_int16),  # Standard MIDI File format, 0 or 1
        ("trackCount", c_int16),  # tracks that the file header declares, 1 to 127
        ("division", c_int16),  # ticks per quarter note, 1 to 960
        ("info", MMINFO),  # what scanning found out
        ("fileSize", c_uint32),  # bytes
        ("fileData", POINTER(c_uint8)),  # the file while it is loaded
        ("fileMem", HGLOBAL),  # its memory handle
        ("reserved1", c_uint8 * 6),  # 0
        ("eventCapacity", c_int32),  # events that the event buffer can hold
        ("reserved2", c_uint8 * 4),  # 0
        ("eventIndex", c_int32),  # index of the next event to play
        ("eventCount", c_int32),  # events in the list
        ("eventMem", HGLOBAL),  # memory handle of the event buffer
        ("events", POINTER(MMEVENT)),  # the event list in time order
        ("eventEnd", POINTER(MMEVENT)),  # next free record while loading
        ("eventPlay", POINTER(MMEVENT)),  # next event to play
        ("patch", MMPATCH * 16),  # mm_SetPatch; without an override the song's own bank selects
        ("volume", c_int16 * 16),  # mm_SetVolume: offset to controller 7
        ("reverb", c_int16 * 16),  # mm_SetReverb: offset to controller 91
        ("chorus", c_int16 * 16),  # mm_SetChorus: offset to controller 93
        ("balance", c_int16 * 16),  # mm_SetBalance: offset to controller 10
        ("keyShift", c_int16 * 16),  # mm_SetKeyShift: semitones
        ("velocity", c_int16 * 16),  # mm_SetVelocity: percent
        ("mute", c_int16 * 16),  # mm_SetMute: not 0 = notes are not sent
        # mm_SetNoTranspose: not 0 = not transposed; by output channel
        ("noTranspose", c_int16 * 16),
        ("tempoPercent", c_float),  # mm_SetTempo: percent, positive = faster
        ("transpose", c_int16),  # mm_SetTranspose: semitones
        # the song's own bank selects while the host's bank is in force
        ("songPatch", MMPATCH * 16),
        ("fadeIn", MMFADE),  # mm_SetFadeIn
        ("fadeOut", MMFADE),  # mm_SetFadeOut
        ("eventPos", c_uint32),  # loader: file offset of the current event
        ("readPos", c_uint32),  # loader: file offset of the next byte to read
        ("trackTime", c_uint32),  # loader: tick of the current event
        ("runningStatus", c_int16),  # loader: status in force, -1 = none
        ("vlqLength", c_int16),  # loader: bytes of the last variable-length number
        ("reserved3", c_uint8 * 2),  # 0
        ("tracks", POINTER(MMTRACK)),  # track table, one entry a track chunk
        ("trackMem", HGLOBAL),  # its memory handle
        ("lyricMem", HGLOBAL),  # memory handle of the lyric table
        # lyric table of MM_MAX_LYRICS records; record 0 is a line break
        ("lyrics", POINTER(MMLYRIC)),
        ("lyricCount", c_int16),  # lyrics, the start record included
        ("lyricIndex", c_int16),  # index of the next lyric to announce
        ("lyricPlay", POINTER(MMLYRIC)),  # next lyric to announce
        ("chordMem", HGLOBAL),  # memory handle of the chord table
        # chord table of MM_MAX_CHORDS records; record 0 is a start record
        ("chords", POINTER(MMCHORD)),
        ("chordCount", c_int16),  # chords, the start record included
        ("chordIndex", c_int16),  # index of the next chord to announce
        ("chordPlay", POINTER(MMCHORD)),  # next chord to announce
        ("sysexMem", HGLOBAL),  # memory handle of the system-exclusive store
        # store of MM_MAX_SYSEX messages; None without MMINIT_SYSEXSTORE
        ("sysex", POINTER(MMSYSEX)),
        ("sysexCount", c_int16),  # messages in the store
        ("resetCount", c_int16),  # reset messages in the store, counted down by mm_PlayFirstNote
        ("ticks", c_uint32),  # song position
        ("tempo", c_uint32),  # microseconds per quarter note * 256, after tempoPercent
        ("tickStep", c_uint32),  # division * timer period * 256000, its low 32 bits
        ("tickRemainder", c_uint32),  # what the clock carries to the next timer period, below tempo
        ("playing", c_int16),  # not 0 while the player plays
        ("loops", MMLOOP * MM_MAX_LOOPS),  # play ranges; mm_SetLoop, mm_SetNextLocator
        ("map", MMMAP),  # channel map; mm_GetMap
        ("loopIndex", c_int16),  # index of the current play range
        ("curLoop", POINTER(MMLOOP)),  # the current play range
        ("reserved4", c_uint8 * 4),  # 0
        ("loopsSet", c_uint16),  # 1 once play ranges were set
        ("numLoops", c_int16),  # play ranges in use
        ("endOnBeat", c_int16),  # argument of mm_Open
        ("markers", POINTER(MMMARKER)),  # marker table of MM_MAX_MARKERS records
        ("markerMem", HGLOBAL),  # its memory handle
        ("markerCount", c_int16),  # markers
        ("channelDevice", HMIDIOUT * 16),  # by song channel: the output that its messages go to
        ("channelOut", c_uint8 * 16),  # by song channel: the MIDI channel that its messages carry
        ("click", MMCLICK),  # metronome
        ("beatsPerBar", c_int16),  # beats in a bar of the last time signature played; 4 at first
        ("beatUnit", c_int16),  # note value of a beat as a number; 4 at first
        ("textLine", c_char_p * 4),  # loader: karaoke text lines of MM_TEXTLINE_SIZE bytes
        ("textLineIndex", c_int16),  # loader: current text line
        ("longBufferMem", HGLOBAL),  # memory handle of the long-message buffer; kept by closing
        ("longBuffer", POINTER(c_uint8)),  # the long-message buffer; kept by closing
        ("longHeaderMem", HGLOBAL),  # memory handle of the long-message header; kept by closing
        ("longHeader", c_void_p),  # the long-message header; kept by closing
        ("replaceNotes", MMNOTEPAIR * 10),  # mm_SetReplaceNotes
    ]


# Name: (result, [arguments]).
_FUNCTIONS = {
    # ---- engine ----
    # Opens every MIDI output, binds the players, starts the timer. 1 = done.
    "mm_InitEngine": (c_int16, [POINTER(MMINIT), POINTER(HMIDIOUT), POINTER(HMIDIOUT)]),
    # Stops both players, closes every output, stops the timer.
    "mm_EndEngine": (None, []),
    # Code of the last failure (ENGINE_ERR_...), 0 = nothing failed yet.
    "mm_GetLastError": (c_uint32, []),
    # The timer's callback, handed to the system. Not for hosts.
    "SyncTimer": (None, [c_uint, c_uint, c_size_t, c_size_t, c_size_t]),
    # ---- raw output, records and routing ----
    # Sends status + data 1 * 256 + data 2 * 65536 to an output. 0 = sent.
    "mm_ShortMessage": (c_uint32, [HMIDIOUT, c_uint32]),
    # Sends a system-exclusive message of 1 to 4096 bytes.
    "mm_LongMessage": (None, [HMIDIOUT, c_char_p, c_int16]),
    # Releases pedals, resets controllers, sends the player's reset message.
    "mm_Reset": (None, [HMIDIOUT]),
    # Address of player 1's record.
    "mm_GetMM1": (POINTER(MIDIOUT), []),
    # Address of player 2's record.
    "mm_GetMM2": (POINTER(MIDIOUT), []),
    # Address of the record that the handle selects.
    "mm_GetMM": (POINTER(MIDIOUT), [HMIDIOUT]),
    # Sends a song channel's messages to another output (0 to 31).
    "mm_SetChannelDevice": (None, [HMIDIOUT, c_int16, c_int16, c_int16]),
    # Sends a song channel's messages on another MIDI channel.
    "mm_SetChannelOut": (None, [HMIDIOUT, c_int16, c_int16, c_int16]),
    # Address of the 16 output channels (bytes), by song channel.
    "mm_GetChannelOut": (POINTER(c_uint8), [HMIDIOUT]),
    # Address of the 16 output handles, by song channel.
    "mm_GetChannelDevice": (POINTER(HMIDIOUT), [HMIDIOUT]),
    # ---- song information ----
    # Number of events in the player's list.
    "mm_GetNumEvents": (c_int32, [HMIDIOUT]),
    # Address of an event; None without a song. The index is not checked.
    "mm_GetPointerEvents": (POINTER(MMEVENT), [HMIDIOUT, c_int32]),
    # Number of lyrics, the start record included.
    "mm_GetNumLyrics": (c_int16, [HMIDIOUT]),
    # Only lyrics below this count are announced.
    "mm_SetNumLyrics": (None, [HMIDIOUT, c_int16]),
    # Address of a lyric; None without a song. The index is not checked.
    "mm_GetPointerLyrics": (POINTER(MMLYRIC), [HMIDIOUT, c_int16]),
    # Number of chords, the start record included.
    "mm_GetNumChords": (c_int16, [HMIDIOUT]),
    # Only chords below this count are announced.
    "mm_SetNumChords": (None, [HMIDIOUT, c_int16]),
    # Address of a chord; None without a song. The index is not checked.
    "mm_GetPointerChords": (POINTER(MMCHORD), [HMIDIOUT, c_int16]),
    # Number of markers, 0 to 9.
    "mm_GetNumMarkers": (c_int16, [HMIDIOUT]),
    # Address of a marker; None without a song. The index is not checked.
    "mm_GetPointerMarkers": (POINTER(MMMARKER), [HMIDIOUT, c_int16]),
    # Tempo in force, microseconds per quarter note; 0 without a song.
    "mm_GetTempo": (c_uint32, [HMIDIOUT]),
    # Ticks per quarter note; 0 without a song.
    "mm_GetUnits": (c_int16, [HMIDIOUT]),
    # Song position in ticks.
    "mm_GetTicks": (c_uint32, [HMIDIOUT]),
    # Address of the player's song information.
    "mm_GetInfo": (POINTER(MMINFO), [HMIDIOUT]),
    # Replaces the player's options word (MMOPT_... bits).
    "mm_SetOptions": (None, [HMIDIOUT, c_uint32]),
    # Names the window that receives the notifications; may be None.
    "mm_SetWindow": (None, [HWND]),
    # The window that receives the notifications.
    "mm_GetWindow": (HWND, []),
    # ---- channel settings ----
    # Overrides a channel's instrument from its next program change on.
    "mm_SetPatch": (None, [HMIDIOUT, c_int16, POINTER(MMPATCH)]),
    # Replaces the ten note replacements of the drum channel.
    "mm_SetReplaceNotes": (None, [HMIDIOUT, c_int16, POINTER(MMNOTEPAIR), c_int16]),
    # Added to the channel's controller 7.
    "mm_SetVolume": (None, [HMIDIOUT, c_int16, c_int16]),
    # Added to the channel's controller 10.
    "mm_SetBalance": (None, [HMIDIOUT, c_int16, c_int16]),
    # Added to the channel's controller 91.
    "mm_SetReverb": (None, [HMIDIOUT, c_int16, c_int16]),
    # Added to the channel's controller 93.
    "mm_SetChorus": (None, [HMIDIOUT, c_int16, c_int16]),
    # Percent by which the channel's note velocities change.
    "mm_SetVelocity": (None, [HMIDIOUT, c_int16, c_int16]),
    # Not 0 = notes on this output channel are never transposed.
    "mm_SetNoTranspose": (None, [HMIDIOUT, c_int16, c_int16]),
    # Not 0 = the channel's notes are not sent.
    "mm_SetMute": (None, [HMIDIOUT, c_int16, c_int16, c_int16]),
    # Semitones added to the channel's notes, drum notes included.
    "mm_SetKeyShift": (None, [HMIDIOUT, c_int16, c_int16, c_int16]),
    # Semitones added to every note that is not sent on output channel 9.
    "mm_SetTranspose": (None, [HMIDIOUT, c_int16, c_int16]),
    # Transposes both players, after their own transposition.
    "mm_SetMasterTranspose": (None, [c_int16]),
    # Sends three words now: bank MSB, bank LSB, program. 0 = sent.
    "mm_SetMIDIPatch": (c_uint32, [HMIDIOUT, c_int16, POINTER(c_int16)]),
    # Sends controller 7 on the channel's route now. 0 = sent.
    "mm_SetMIDIVolume": (c_uint32, [HMIDIOUT, c_int16, c_int16]),
    # Sends controller 10 on the channel's route now. 0 = sent.
    "mm_SetMIDIBalance": (c_uint32, [HMIDIOUT, c_int16, c_int16]),
    # Sends controller 91 on the channel's route now. 0 = sent.
    "mm_SetMIDIReverb": (c_uint32, [HMIDIOUT, c_int16, c_int16]),
    # Sends controller 93 on the channel's route now. 0 = sent.
    "mm_SetMIDIChorus": (c_uint32, [HMIDIOUT, c_int16, c_int16]),
    # ---- songs ----
    # Loads a song into a player. 1 = loaded, 0 = see mm_GetLastError.
    "mm_Open": (c_int16, [HMIDIOUT, c_char_p, c_uint16, c_int16, c_int16, POINTER(MMCLICK)]),
    # Loads a file for its information and tables only. 1 = loaded.
    "mm_Scan": (c_int16, [HMIDIOUT, c_char_p]),
    # Halts the player, frees its song, clears its settings and ranges.
    "mm_Close": (None, [HMIDIOUT]),
    # ---- channel map ----
    # Gathers the channels' state from what the song sets before a tick.
    "mm_CreateMap": (None, [HMIDIOUT, c_uint32]),
    # Address of the player's channel map.
    "mm_GetMap": (POINTER(MMMAP), [HMIDIOUT]),
    # Sends the map and moves the player to a tick.
    "mm_SendMap": (None, [HMIDIOUT, c_uint32]),
    # ---- transport ----
    # Starts or continues playing at the song position.
    "mm_StartSync": (None, [HMIDIOUT]),
    # The same as mm_StartSync.
    "mm_ReStartSync": (None, [HMIDIOUT]),
    # Halts the player where it stands and silences its routes.
    "mm_StopSync": (None, [HMIDIOUT]),
    # Halts the player where it stands and silences its routes.
    "mm_PauseSync": (None, [HMIDIOUT]),
    # Sends the set-up and stands on the first note. 1 = there is one.
    "mm_PlayFirstNote": (c_int16, [HMIDIOUT]),
    # Tempo to apply now, and from now on percent faster.
    "mm_SetTempo": (None, [HMIDIOUT, c_uint32, c_float]),
    # Installs the ten play ranges; None = the whole song.
    "mm_SetLoop": (None, [HMIDIOUT, POINTER(MMLOOP)]),
    # Moves the end of the range now playing, and says where to go on.
    "mm_SetNextLocator": (None, [HMIDIOUT, c_uint32, c_uint32]),
    # Halts the player and puts its position to 0.
    "mm_RewindSync": (None, [HMIDIOUT]),
    # Starts a fade-in.
    "mm_SetFadeIn": (None, [HMIDIOUT, POINTER(MMFADE)]),
    # Starts a fade-out.
    "mm_SetFadeOut": (None, [HMIDIOUT, POINTER(MMFADE)]),
}


# ---- corvmo32_linux.h ----


class corvmo_message(Structure):
    """One posted message."""

    _fields_ = [
        ("message", c_uint),  # MMN_...
        ("wParam", c_size_t),
        ("lParam", c_ssize_t),
        ("time", c_uint64),  # corvmo_GetClock() when it was posted
    ]


class corvmo_output(Structure):
    """An output of the host's own; functions that are left out do nothing and succeed."""

    _fields_ = [
        ("name", c_char_p),
        ("user", c_void_p),  # handed to every function
        ("open", CFUNCTYPE(c_uint, c_void_p)),
        ("close", CFUNCTYPE(None, c_void_p)),
        ("reset", CFUNCTYPE(None, c_void_p)),
        ("short_message", CFUNCTYPE(c_uint, c_void_p, c_uint32)),
        ("long_message", CFUNCTYPE(c_uint, c_void_p, POINTER(c_uint8), c_uint32)),
        ("prepare", CFUNCTYPE(c_uint, c_void_p)),  # not 0 = a long message cannot be sent
        ("still_playing", CFUNCTYPE(c_int, c_void_p)),  # not 0 = the last one is not finished
    ]


class corvmo_sent(Structure):
    """One message that was handed to an output."""

    _fields_ = [
        ("output", c_uint),  # index of the output
        ("time", c_uint64),  # corvmo_GetClock() when it was sent
        ("data", POINTER(c_uint8)),  # valid during the call
        ("length", c_uint32),  # bytes
    ]


SENT_FUNCTION = CFUNCTYPE(None, c_void_p, POINTER(corvmo_sent))  # of corvmo_RecordOutputs

_LINUX_FUNCTIONS = {
    # The lock that MMINIT.lock names; HostLock wraps them.
    "InitializeCriticalSection": (None, [c_void_p]),
    "DeleteCriticalSection": (None, [c_void_p]),
    "EnterCriticalSection": (None, [c_void_p]),
    "LeaveCriticalSection": (None, [c_void_p]),
    # Makes a window, which is a queue of posted messages.
    "corvmo_CreateWindow": (HWND, []),
    "corvmo_DestroyWindow": (None, [HWND]),
    # Takes the oldest message, waiting that many real milliseconds for one. 1 = there was one.
    "corvmo_WaitMessage": (c_int, [HWND, POINTER(corvmo_message), c_uint32]),
    # Replaces the machine's outputs by the host's own; None = the machine's again.
    "corvmo_SetOutputs": (None, [POINTER(corvmo_output), c_uint]),
    "corvmo_GetOutputCount": (c_uint, []),
    # Writes an output's name into a buffer of that size. 1 = written.
    "corvmo_GetOutputName": (c_int, [c_uint, c_char_p, c_size_t]),
    # Messages in a row that an output has refused.
    "corvmo_GetRefusals": (c_uint32, [c_uint]),
    # Reports what every output receives, on the sending thread.
    "corvmo_RecordOutputs": (None, [SENT_FUNCTION, c_void_p]),
    # Sound font and audio driver of the software synthesizer; None = the defaults.
    "corvmo_SetSoundFont": (None, [c_char_p]),
    "corvmo_SetAudioDriver": (None, [c_char_p]),
    # The synthesizer's sound into memory: frames a second; interleaved stereo samples and their frames.
    "corvmo_UseRenderedOutput": (None, [c_uint]),
    "corvmo_RenderAudio": (c_int, [POINTER(c_float), c_size_t]),
    # The machine's clock, or one that stands until corvmo_AdvanceClock lets time pass.
    "corvmo_UseRealClock": (None, []),
    "corvmo_UseManualClock": (None, [c_uint32]),
    "corvmo_AdvanceClock": (None, [c_uint32]),
    # Microseconds of the clock in use.
    "corvmo_GetClock": (c_uint64, []),
}


def load(path=None):
    """The library at a path, or where the system looks for it, ready to call."""
    windows = sys.platform == "win32"
    if windows and ctypes.sizeof(c_void_p) != 4:
        raise OSError("corvmo32.dll is for 32-bit processes: start a 32-bit Python")
    if windows:
        library = ctypes.WinDLL(path or "corvmo32.dll")
        declared = _FUNCTIONS
    else:
        library = ctypes.CDLL(path or "libcorvmo32.so.0")
        declared = {**_FUNCTIONS, **_LINUX_FUNCTIONS}
    for name, (result, arguments) in declared.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


class HostLock:
    """The lock that MMINIT.lock names. While it is held ("with lock:") both players stand still."""

    SIZE = 64  # at least what either system's lock takes

    def __init__(self, engine):
        self._system = ctypes.windll.kernel32 if sys.platform == "win32" else engine
        self._section = ctypes.create_string_buffer(self.SIZE)
        self.address = ctypes.addressof(self._section)
        self._system.InitializeCriticalSection(c_void_p(self.address))

    def __enter__(self):
        self._system.EnterCriticalSection(c_void_p(self.address))
        return self

    def __exit__(self, *error):
        self._system.LeaveCriticalSection(c_void_p(self.address))

    def close(self):
        """Destroys the lock, after mm_EndEngine has returned."""
        self._system.DeleteCriticalSection(c_void_p(self.address))
