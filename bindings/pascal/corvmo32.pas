// corvmo32 for Delphi and Free Pascal: constants, records and functions of corvmo32.dll.
//
// The DLL is for 32-bit programs. include/corvmo32.h is the manual; this unit repeats its
// declarations with a line about each. Names that Pascal reserves end with an underscore.
//
// Free Pascal under Unix links libcorvmo32.so; there pointers and handles are native.
unit corvmo32;

{$IFDEF FPC}
  {$MODE DELPHI}
  {$IFDEF UNIX}
    {$MACRO ON}
    {$DEFINE stdcall:=cdecl}
  {$ENDIF}
{$ENDIF}

interface

const
{$IFDEF UNIX}
  CorvmoLib = 'libcorvmo32.so';
{$ELSE}
  CorvmoLib = 'corvmo32.dll';
{$ENDIF}

  // Sizes of a song's tables
  MM_MAX_LYRICS = 1536;
  MM_MAX_CHORDS = 1000;
  MM_MAX_MARKERS = 10; // at most 9 of them are filled
  MM_MAX_SYSEX = 620;
  MM_MAX_LOOPS = 10;
  MM_TEXTLINE_SIZE = 96;
  MM_LONG_MESSAGE_SIZE = 4096; // bytes of the longest message of mm_LongMessage

  // Sizes and special values
  MMINIT_TEXT_SIZE = 1024; // bytes read from MMINIT.initSysExText
  MMPATCH_NO_OVERRIDE = -127; // MMPATCH.program: the song's own programs are played

  // MMINIT.mode1, MMINIT.mode2: the device's standard
  MMMODE_GM = 0; // any other value counts as this
  MMMODE_GS = 1;
  MMMODE_XG = 2;

  // MMINIT.flags
  MMINIT_SECONDPLAYER = $0001; // player 2 is bound to device deviceIndex2
  MMINIT_NORESET = $0002; // player 2 gets no device; no-reset songs do not reset the device
  MMINIT_SYSEXSTORE = $0004; // songs keep and play their system-exclusive messages
  MMINIT_RESETONOPEN = $0008; // opening a song sends the reset message of the player's mode

  // Options word: mm_Open, mm_SetOptions
  MMOPT_NOTES = $01; // MMN_NOTEON and MMN_NOTEOFF
  MMOPT_CHANNELS = $02; // MMN_PROGRAM, _PATCH, _VOLUME, _PAN, _REVERB, _CHORUS
  MMOPT_LYRICS = $04; // MMN_LYRIC
  MMOPT_CHORDS = $08; // MMN_CHORD
  MMOPT_POSITION = $10; // MMN_POSITION
  MMOPT_POSITION2 = $20; // MMN_POSITION as well
  MMOPT_TEMPO = $40; // MMN_TEMPO
  MMOPT_SCAN = $80; // mm_Open reads the song for its information only

  // Notifications: the message numbers that are posted, with wParam and lParam
  MMN_PROGRAM = $401; // program change sent: channel, program << 16 | bank LSB << 8 | bank MSB
  MMN_TEMPO = $402; // tempo changed: 0 played, 1 before the first note, 2 by a seek; microseconds
  MMN_POSITION = $403; // position was moved: 0, tick
  MMN_END = $408; // the song ended: player handle, 0
  MMN_NOTEON = $40A; // note-on: channel, 0
  MMN_NOTEOFF = $40B; // note-off: channel, 0
  MMN_VOLUME = $414; // controller 7 sent: channel, the song's value
  MMN_PAN = $415; // controller 10 sent: channel, the song's value
  MMN_REVERB = $416; // controller 91 sent: channel, the song's value
  MMN_CHORUS = $417; // controller 93 sent: channel, the song's value
  MMN_LYRIC = $418; // lyric is due: its index, 0
  MMN_CHORD = $419; // chord is due: its index, 0
  MMN_PATCH = $41F; // override sent in its place: channel, as MMN_PROGRAM
  MMN_LOOP = $421; // a play range begins: 0, its first tick

  // MMLOOP.start and mm_SetNextLocator
  MMLOOP_UNUSED = LongWord($FFFFFFFF); // MMLOOP.start of a record that is not in use
  MMLOCATOR_KEEP_END = LongWord($FFFFFFFF); // the range now playing keeps its end
  MMLOCATOR_NO_NEXT = LongWord($FFFFFFFE); // no range follows the one now playing

  // mm_GetLastError
  ENGINE_ERR_CHUNK = 1001; // song: no track chunk where one is expected
  ENGINE_ERR_STATUS = 1002; // song: data byte without a status, or an undefined status
  ENGINE_ERR_SYSEX = 1003; // song: malformed system-exclusive event
  ENGINE_ERR_TIMER = 1008; // start-up: the timer cannot be had
  ENGINE_ERR_ALLOC = 1009; // out of memory
  ENGINE_ERR_LOCK = 1010; // memory cannot be locked; song: no memory for the events
  // song: cannot be opened, or is no Standard MIDI File that the engine reads
  ENGINE_ERR_FILE = 1011;
  ENGINE_ERR_READ = 1015; // song: reading yields no bytes

  // Results of the system's that the engine gives itself
  MMSYSERR_NOERROR = 0; // the message was sent
  MMSYSERR_INVALPARAM = 11; // an argument lies outside its range

  // Channel map: values that the song did not set
  MMMAP_NONE8 = $FF; // map slot that the song did not set
  MMMAP_NONE16 = $FFFF; // map time signature that the song did not set
  MMMAP_NONE32 = LongWord($FFFFFFFF); // map tempo that the song did not set

  // Channel map: slots (data bytes) of a channel
  MMSLOT_POLY_KEY = 0; // polyphonic key pressure: key; recorded, not sent
  MMSLOT_POLY_PRESSURE = 1; // its pressure; recorded, not sent
  MMSLOT_PROGRAM = 2;
  MMSLOT_CHANNEL_PRESSURE = 3;
  MMSLOT_BEND_LOW = 4; // pitch bend, first data byte
  MMSLOT_BEND_HIGH = 5;
  MMSLOT_BANK_MSB = 6; // controller 0
  MMSLOT_BANK_LSB = 7; // controller 32
  MMSLOT_MODULATION = 8;
  MMSLOT_BREATH = 10;
  MMSLOT_FOOT = 12;
  MMSLOT_PORTAMENTO_TIME = 14;
  MMSLOT_VOLUME = 16;
  MMSLOT_VOLUME_FINE = 17; // recorded, not sent
  MMSLOT_BALANCE = 18; // controller 8
  MMSLOT_PAN = 20; // controller 10
  MMSLOT_PAN_FINE = 21; // recorded, not sent
  MMSLOT_EXPRESSION = 22;
  MMSLOT_EFFECT1 = 24; // controller 12
  MMSLOT_EFFECT2 = 26; // controller 13
  MMSLOT_GENERAL1 = 28; // controllers 16 to 19 in slots 28 to 31
  MMSLOT_SUSTAIN = 32; // controllers 64 to 84 in slots 32 to 52
  MMSLOT_PORTAMENTO_CONTROL = 52; // controller 84
  MMSLOT_REVERB = 53; // controller 91
  MMSLOT_TREMOLO = 54; // controller 92
  MMSLOT_CHORUS = 55; // controller 93
  MMSLOT_DETUNE = 56; // controller 94
  MMSLOT_PHASER = 57; // controller 95
  MMSLOT_RPN_BEND_RANGE = 58; // registered parameter 0/0
  MMSLOT_NEVER_SET = 59; // holds 0xFF in every map that was built
  MMSLOT_RPN_FINE_TUNING = 60; // registered parameter 0/1
  MMSLOT_RPN_COARSE_TUNING = 62; // registered parameter 0/2
  MMSLOT_NRPN_VIBRATO_RATE = 64; // non-registered parameter 1/8
  MMSLOT_NRPN_VIBRATO_DEPTH = 66; // 1/9
  MMSLOT_NRPN_VIBRATO_DELAY = 68; // 1/10
  MMSLOT_NRPN_CUTOFF = 70; // 1/32
  MMSLOT_NRPN_RESONANCE = 72; // 1/33
  MMSLOT_NRPN_ATTACK = 74; // 1/99
  MMSLOT_NRPN_DECAY = 76; // 1/100
  MMSLOT_NRPN_RELEASE = 78; // 1/102
  MMMAP_SLOTS = 90;

type
  // An integer as wide as a pointer.
{$IFDEF FPC}
  TCorvmoHandle = PtrUInt;
{$ELSE}
  TCorvmoHandle = Cardinal;
{$ENDIF}
  HMIDIOUT = TCorvmoHandle; // an open MIDI output
  HWND = TCorvmoHandle;     // the window that receives notifications
  HGLOBAL = TCorvmoHandle;  // a block of the global heap
  PHMIDIOUT = ^HMIDIOUT;

  // One channel of the map.
  MMMAPCHANNEL = packed record
    // data bytes, indexed by MMSLOT_...; 0xFF = not set by the song
    slot: array[0..MMMAP_SLOTS - 1] of Byte;
  end;
  PMMMAPCHANNEL = ^MMMAPCHANNEL;

  // The channel map: the state that the song gave the channels before a tick.
  MMMAP = packed record
    tempo: LongWord; // microseconds per quarter note as in the file; 0xFFFFFFFF = none
    beatsPerBar: Word; // numerator of the time signature in force; 0xFFFF = none
    beatUnit: Word; // its note value as a number (4 = quarter note)
    timeSigTick: LongWord; // tick of that time signature
    channel: array[0..15] of MMMAPCHANNEL; // by song channel
  end;
  PMMMAP = ^MMMAP;

  // Settings of mm_InitEngine.
  MMINIT = packed record
    hwnd: HWND; // window that receives the notifications; may be nil
    timerPeriod: SmallInt; // milliseconds
    reserved1: Word; // not read
    deviceIndex1: LongWord; // player 1's MIDI output, 0 to 31
    deviceIndex2: LongWord; // player 2's; read with MMINIT_SECONDPLAYER
    mode1: Word; // MMMODE_... of player 1's device
    mode2: Word; // MMMODE_... of player 2's device
    flags: Word; // MMINIT_... bits
    resetGap: SmallInt; // milliseconds to wait after the last reset message
    noChase: SmallInt; // 0 = a jump restores the channels' state
    lock: Pointer; // initialised CRITICAL_SECTION; lives until mm_EndEngine has returned
    sendInitText: SmallInt; // 1 = mm_PlayFirstNote sends the init text
    initSysExText: PAnsiChar; // 1024 readable bytes of hexadecimal lines; nil = none
    firstNoteDelay: LongWord; // milliseconds at the end of mm_PlayFirstNote
    eventGap: LongWord; // milliseconds after each message of mm_PlayFirstNote
  end;
  PMMINIT = ^MMINIT;

  // One event of a song.
  MMEVENT = packed record
    kind: Byte; // MIDI status; F0 stored message, 51 tempo, 58 time signature
    byte1: Byte; // first data byte
    byte2: Byte; // second data byte
    byte3: Byte; // 0; tempo: low byte
    time: LongWord; // tick
  end;
  PMMEVENT = ^MMEVENT;

  // One lyric: a syllable, a word, or a line break (byte 13).
  MMLYRIC = packed record
    time: LongWord; // tick at which it is due
    text: array[0..79] of AnsiChar; // ends with a zero
  end;
  PMMLYRIC = ^MMLYRIC;

  // One marker.
  MMMARKER = packed record
    time: LongWord; // tick
    text: array[0..79] of AnsiChar; // ends with a zero unless it is full
  end;
  PMMMARKER = ^MMMARKER;

  // One chord name.
  MMCHORD = packed record
    time: LongWord; // tick at which it is due
    text: array[0..15] of AnsiChar; // ends with a zero
  end;
  PMMCHORD = ^MMCHORD;

  // One stored system-exclusive message.
  MMSYSEX = packed record
    data: array[0..95] of Byte; // ownBlock 0: the message; its length is the event's byte3
    isReset: Word; // 1 = the GM, GS or XG reset message
    ownBlock: Word; // 1 = longer than 96 bytes, in a block of its own
    isKaraokeText: Word; // 1 = a karaoke text message
  end;
  PMMSYSEX = ^MMSYSEX;

  // MMSYSEX with ownBlock 1: what stands at the start of data.
  MMSYSEXBLOCK = packed record
    mem: HGLOBAL; // handle of the message's block
    ptr: PByte; // the message
    length: SmallInt; // its length in bytes
  end;
  PMMSYSEXBLOCK = ^MMSYSEXBLOCK;

  // State of the loader in one track.
  MMTRACK = packed record
    number: Word; // 1 for the first track chunk
    length: LongWord; // declared data length in bytes
    dataStart: LongWord; // file offset of the first data byte
    reserved: Word; // 0
    parsed: Word; // 1 once the track was read to its end
    eventPos: LongWord; // file offset of the current event
    readPos: LongWord; // file offset of the next byte to read
    time: LongWord; // tick of the current event
    runningStatus: SmallInt; // status in force, -1 = none
  end;
  PMMTRACK = ^MMTRACK;

  // Metronome settings of mm_Open.
  MMCLICK = packed record
    clickOn: Word; // 1 = the metronome clicks
    clickDevice: SmallInt; // MIDI output, 0 to 31; another index gives no click
    clickChannel: Word; // MIDI channel, 0 to 15
    clickAccentNote: Word; // note of the first beat of a bar
    clickAccentVelocity: Word; // its velocity
    clickNote: Word; // note of the other beats
    clickVelocity: Word; // their velocity
    timeSigTick: LongWord; // tick from which bars are counted; 0 after opening
    nextClick: LongWord; // tick of the next click; 0 after opening
  end;
  PMMCLICK = ^MMCLICK;

  // One play range; mm_SetLoop takes ten.
  MMLOOP = packed record
    endLocked: Word; // 1 = mm_SetNextLocator may not move the end
    start: LongWord; // first tick; MMLOOP_UNUSED = record not in use
    end_: LongWord; // tick at which the range ends; 0 = the end of the song
    reserved: LongWord; // copied, not read
    repeats: SmallInt; // passes to play, counted down
    repeatsSet: SmallInt; // the passes as set; by the engine
  end;
  PMMLOOP = ^MMLOOP;

  // One fade: in segment k, level = slope[k] * time + base[k].
  MMFADE = packed record
    active: Word; // 1 while the fade acts on the notes
    level: LongInt; // 1/1024 percent: 102400 = full loudness
    time: LongWord; // milliseconds since the fade began
    reserved1: LongWord; // not read
    segmentEnd: array[0..4] of LongWord; // milliseconds, not decreasing
    reserved2: array[0..5] of LongWord; // not read
    slope: array[0..4] of LongInt; // level change a millisecond
    reserved3: LongInt; // not read
    base: array[0..4] of LongInt; // level of the segment's line at time 0
    reserved4: LongInt; // not read
  end;
  PMMFADE = ^MMFADE;

  // Patch override of a channel.
  MMPATCH = packed record
    bankMsb: SmallInt; // 0 to 127
    bankLsb: SmallInt; // 0 to 127
    program_: SmallInt; // 0 to 127, or MMPATCH_NO_OVERRIDE
    keepBank: SmallInt; // not 0 = the song's banks do not replace these
  end;
  PMMPATCH = ^MMPATCH;

  // One note replacement of the drum channel; mm_SetReplaceNotes takes ten.
  MMNOTEPAIR = packed record
    from: ShortInt; // note that is replaced, -1 = pair not in use
    to_: ShortInt; // note that is sent in its place
  end;
  PMMNOTEPAIR = ^MMNOTEPAIR;

  // What the engine found out about a song.
  MMINFO = packed record
    title: array[0..32] of AnsiChar; // first title line, ends with a zero
    title2: array[0..32] of AnsiChar; // second title line, ends with a zero
    firstTempo: LongWord; // microseconds per quarter note
    keySignature: LongInt; // (sharps, or minus flats) << 8 | minor; -1 = none
    hasLyrics: SmallInt; // 1 = more than four lyrics
    hasChords: SmallInt; // 1 = more than four chords
  end;
  PMMINFO = ^MMINFO;

  // One player.
  MIDIOUT = packed record
    hmo: HMIDIOUT; // the player's handle; set at start-up, kept by closing
    mode: LongWord; // MMMODE_... of the device; set at start-up, kept by closing
    options: LongWord; // MMOPT_... bits of the song; mm_Open, mm_SetOptions
    format: SmallInt; // Standard MIDI File format, 0 or 1
    trackCount: SmallInt; // tracks that the file header declares, 1 to 127
    division: SmallInt; // ticks per quarter note, 1 to 960
    info: MMINFO; // what scanning found out
    fileSize: LongWord; // bytes
    fileData: PByte; // the file while it is loaded
    fileMem: HGLOBAL; // its memory handle
    reserved1: array[0..5] of Byte; // 0
    eventCapacity: LongInt; // events that the event buffer can hold
    reserved2: array[0..3] of Byte; // 0
    eventIndex: LongInt; // index of the next event to play
    eventCount: LongInt; // events in the list
    eventMem: HGLOBAL; // memory handle of the event buffer
    events: PMMEVENT; // the event list in time order
    eventEnd: PMMEVENT; // next free record while loading
    eventPlay: PMMEVENT; // next event to play
    patch: array[0..15] of MMPATCH; // mm_SetPatch; without an override the song's own bank selects
    volume: array[0..15] of SmallInt; // mm_SetVolume: offset to controller 7
    reverb: array[0..15] of SmallInt; // mm_SetReverb: offset to controller 91
    chorus: array[0..15] of SmallInt; // mm_SetChorus: offset to controller 93
    balance: array[0..15] of SmallInt; // mm_SetBalance: offset to controller 10
    keyShift: array[0..15] of SmallInt; // mm_SetKeyShift: semitones
    velocity: array[0..15] of SmallInt; // mm_SetVelocity: percent
    mute: array[0..15] of SmallInt; // mm_SetMute: not 0 = notes are not sent
    // mm_SetNoTranspose: not 0 = not transposed; by output channel
    noTranspose: array[0..15] of SmallInt;
    tempoPercent: Single; // mm_SetTempo: percent, positive = faster
    transpose: SmallInt; // mm_SetTranspose: semitones
    // the song's own bank selects while the host's bank is in force
    songPatch: array[0..15] of MMPATCH;
    fadeIn: MMFADE; // mm_SetFadeIn
    fadeOut: MMFADE; // mm_SetFadeOut
    eventPos: LongWord; // loader: file offset of the current event
    readPos: LongWord; // loader: file offset of the next byte to read
    trackTime: LongWord; // loader: tick of the current event
    runningStatus: SmallInt; // loader: status in force, -1 = none
    vlqLength: SmallInt; // loader: bytes of the last variable-length number
    reserved3: array[0..1] of Byte; // 0
    tracks: PMMTRACK; // track table, one entry a track chunk
    trackMem: HGLOBAL; // its memory handle
    lyricMem: HGLOBAL; // memory handle of the lyric table
    lyrics: PMMLYRIC; // lyric table of MM_MAX_LYRICS records; record 0 is a line break
    lyricCount: SmallInt; // lyrics, the start record included
    lyricIndex: SmallInt; // index of the next lyric to announce
    lyricPlay: PMMLYRIC; // next lyric to announce
    chordMem: HGLOBAL; // memory handle of the chord table
    chords: PMMCHORD; // chord table of MM_MAX_CHORDS records; record 0 is a start record
    chordCount: SmallInt; // chords, the start record included
    chordIndex: SmallInt; // index of the next chord to announce
    chordPlay: PMMCHORD; // next chord to announce
    sysexMem: HGLOBAL; // memory handle of the system-exclusive store
    sysex: PMMSYSEX; // store of MM_MAX_SYSEX messages; nil without MMINIT_SYSEXSTORE
    sysexCount: SmallInt; // messages in the store
    resetCount: SmallInt; // reset messages in the store, counted down by mm_PlayFirstNote
    ticks: LongWord; // song position
    tempo: LongWord; // microseconds per quarter note * 256, after tempoPercent
    tickStep: LongWord; // division * timer period * 256000, its low 32 bits
    tickRemainder: LongWord; // what the clock carries to the next timer period, below tempo
    playing: SmallInt; // not 0 while the player plays
    loops: array[0..MM_MAX_LOOPS - 1] of MMLOOP; // play ranges; mm_SetLoop, mm_SetNextLocator
    map: MMMAP; // channel map; mm_GetMap
    loopIndex: SmallInt; // index of the current play range
    curLoop: PMMLOOP; // the current play range
    reserved4: array[0..3] of Byte; // 0
    loopsSet: Word; // 1 once play ranges were set
    numLoops: SmallInt; // play ranges in use
    endOnBeat: SmallInt; // argument of mm_Open
    markers: PMMMARKER; // marker table of MM_MAX_MARKERS records
    markerMem: HGLOBAL; // its memory handle
    markerCount: SmallInt; // markers
    channelDevice: array[0..15] of HMIDIOUT; // by song channel: the output that its messages go to
    channelOut: array[0..15] of Byte; // by song channel: the MIDI channel that its messages carry
    click: MMCLICK; // metronome
    beatsPerBar: SmallInt; // beats in a bar of the last time signature played; 4 at first
    beatUnit: SmallInt; // note value of a beat as a number; 4 at first
    textLine: array[0..3] of PAnsiChar; // loader: karaoke text lines of MM_TEXTLINE_SIZE bytes
    textLineIndex: SmallInt; // loader: current text line
    longBufferMem: HGLOBAL; // memory handle of the long-message buffer; kept by closing
    longBuffer: PByte; // the long-message buffer; kept by closing
    longHeaderMem: HGLOBAL; // memory handle of the long-message header; kept by closing
    longHeader: Pointer; // the long-message header; kept by closing
    replaceNotes: array[0..9] of MMNOTEPAIR; // mm_SetReplaceNotes
  end;
  PMIDIOUT = ^MIDIOUT;

// ---- engine ----

// Opens every MIDI output, binds the players, starts the timer. 1 = done.
function mm_InitEngine(settings: PMMINIT;
  player1, player2: PHMIDIOUT): SmallInt; stdcall; external CorvmoLib;

// Stops both players, closes every output, stops the timer.
procedure mm_EndEngine; stdcall; external CorvmoLib;

// Code of the last failure (ENGINE_ERR_...), 0 = nothing failed yet.
function mm_GetLastError: LongWord; stdcall; external CorvmoLib;

// The timer's callback, handed to the system. Not for hosts.
procedure SyncTimer(timerId, reserved: LongWord;
  user, reserved1, reserved2: TCorvmoHandle); stdcall; external CorvmoLib;

// ---- raw output, records and routing ----

// Sends status + data 1 * 256 + data 2 * 65536 to an output. 0 = sent.
function mm_ShortMessage(device: HMIDIOUT;
  message: LongWord): LongWord; stdcall; external CorvmoLib;

// Sends a system-exclusive message of 1 to 4096 bytes.
procedure mm_LongMessage(player: HMIDIOUT; message: PByte;
  length: SmallInt); stdcall; external CorvmoLib;

// Releases pedals, resets controllers, sends the player's reset message.
procedure mm_Reset(player: HMIDIOUT); stdcall; external CorvmoLib;

// Address of player 1's record.
function mm_GetMM1: PMIDIOUT; stdcall; external CorvmoLib;

// Address of player 2's record.
function mm_GetMM2: PMIDIOUT; stdcall; external CorvmoLib;

// Address of the record that the handle selects.
function mm_GetMM(player: HMIDIOUT): PMIDIOUT; stdcall; external CorvmoLib;

// Sends a song channel's messages to another output (0 to 31).
procedure mm_SetChannelDevice(player: HMIDIOUT;
  channel, deviceIndex, silence: SmallInt); stdcall; external CorvmoLib;

// Sends a song channel's messages on another MIDI channel.
procedure mm_SetChannelOut(player: HMIDIOUT;
  channel, outputChannel, silence: SmallInt); stdcall; external CorvmoLib;

// Address of the 16 output channels (bytes), by song channel.
function mm_GetChannelOut(player: HMIDIOUT): PByte; stdcall; external CorvmoLib;

// Address of the 16 output handles, by song channel.
function mm_GetChannelDevice(player: HMIDIOUT): PHMIDIOUT; stdcall; external CorvmoLib;

// ---- song information ----

// Number of events in the player's list.
function mm_GetNumEvents(player: HMIDIOUT): LongInt; stdcall; external CorvmoLib;

// Address of an event; nil without a song. The index is not checked.
function mm_GetPointerEvents(player: HMIDIOUT;
  index: LongInt): PMMEVENT; stdcall; external CorvmoLib;

// Number of lyrics, the start record included.
function mm_GetNumLyrics(player: HMIDIOUT): SmallInt; stdcall; external CorvmoLib;

// Only lyrics below this count are announced.
procedure mm_SetNumLyrics(player: HMIDIOUT; count: SmallInt); stdcall; external CorvmoLib;

// Address of a lyric; nil without a song. The index is not checked.
function mm_GetPointerLyrics(player: HMIDIOUT;
  index: SmallInt): PMMLYRIC; stdcall; external CorvmoLib;

// Number of chords, the start record included.
function mm_GetNumChords(player: HMIDIOUT): SmallInt; stdcall; external CorvmoLib;

// Only chords below this count are announced.
procedure mm_SetNumChords(player: HMIDIOUT; count: SmallInt); stdcall; external CorvmoLib;

// Address of a chord; nil without a song. The index is not checked.
function mm_GetPointerChords(player: HMIDIOUT;
  index: SmallInt): PMMCHORD; stdcall; external CorvmoLib;

// Number of markers, 0 to 9.
function mm_GetNumMarkers(player: HMIDIOUT): SmallInt; stdcall; external CorvmoLib;

// Address of a marker; nil without a song. The index is not checked.
function mm_GetPointerMarkers(player: HMIDIOUT;
  index: SmallInt): PMMMARKER; stdcall; external CorvmoLib;

// Tempo in force, microseconds per quarter note; 0 without a song.
function mm_GetTempo(player: HMIDIOUT): LongWord; stdcall; external CorvmoLib;

// Ticks per quarter note; 0 without a song.
function mm_GetUnits(player: HMIDIOUT): SmallInt; stdcall; external CorvmoLib;

// Song position in ticks.
function mm_GetTicks(player: HMIDIOUT): LongWord; stdcall; external CorvmoLib;

// Address of the player's song information.
function mm_GetInfo(player: HMIDIOUT): PMMINFO; stdcall; external CorvmoLib;

// Replaces the player's options word (MMOPT_... bits).
procedure mm_SetOptions(player: HMIDIOUT; options: LongWord); stdcall; external CorvmoLib;

// Names the window that receives the notifications; may be nil.
procedure mm_SetWindow(window: HWND); stdcall; external CorvmoLib;

// The window that receives the notifications.
function mm_GetWindow: HWND; stdcall; external CorvmoLib;

// ---- channel settings ----

// Overrides a channel's instrument from its next program change on.
procedure mm_SetPatch(player: HMIDIOUT; channel: SmallInt;
  patch: PMMPATCH); stdcall; external CorvmoLib;

// Replaces the ten note replacements of the drum channel.
procedure mm_SetReplaceNotes(player: HMIDIOUT; channel: SmallInt; pairs: PMMNOTEPAIR;
  silence: SmallInt); stdcall; external CorvmoLib;

// Added to the channel's controller 7.
procedure mm_SetVolume(player: HMIDIOUT; channel, value: SmallInt); stdcall; external CorvmoLib;

// Added to the channel's controller 10.
procedure mm_SetBalance(player: HMIDIOUT; channel, value: SmallInt); stdcall; external CorvmoLib;

// Added to the channel's controller 91.
procedure mm_SetReverb(player: HMIDIOUT; channel, value: SmallInt); stdcall; external CorvmoLib;

// Added to the channel's controller 93.
procedure mm_SetChorus(player: HMIDIOUT; channel, value: SmallInt); stdcall; external CorvmoLib;

// Percent by which the channel's note velocities change.
procedure mm_SetVelocity(player: HMIDIOUT; channel, value: SmallInt); stdcall; external CorvmoLib;

// Not 0 = notes on this output channel are never transposed.
procedure mm_SetNoTranspose(player: HMIDIOUT;
  outputChannel, value: SmallInt); stdcall; external CorvmoLib;

// Not 0 = the channel's notes are not sent.
procedure mm_SetMute(player: HMIDIOUT;
  channel, value, silence: SmallInt); stdcall; external CorvmoLib;

// Semitones added to the channel's notes, drum notes included.
procedure mm_SetKeyShift(player: HMIDIOUT;
  channel, value, silence: SmallInt); stdcall; external CorvmoLib;

// Semitones added to every note that is not sent on output channel 9.
procedure mm_SetTranspose(player: HMIDIOUT; value, silence: SmallInt); stdcall; external CorvmoLib;

// Transposes both players, after their own transposition.
procedure mm_SetMasterTranspose(value: SmallInt); stdcall; external CorvmoLib;

// Sends three words now: bank MSB, bank LSB, program. 0 = sent.
function mm_SetMIDIPatch(player: HMIDIOUT; channel: SmallInt;
  words: PSmallInt): LongWord; stdcall; external CorvmoLib;

// Sends controller 7 on the channel's route now. 0 = sent.
function mm_SetMIDIVolume(player: HMIDIOUT;
  channel, value: SmallInt): LongWord; stdcall; external CorvmoLib;

// Sends controller 10 on the channel's route now. 0 = sent.
function mm_SetMIDIBalance(player: HMIDIOUT;
  channel, value: SmallInt): LongWord; stdcall; external CorvmoLib;

// Sends controller 91 on the channel's route now. 0 = sent.
function mm_SetMIDIReverb(player: HMIDIOUT;
  channel, value: SmallInt): LongWord; stdcall; external CorvmoLib;

// Sends controller 93 on the channel's route now. 0 = sent.
function mm_SetMIDIChorus(player: HMIDIOUT;
  channel, value: SmallInt): LongWord; stdcall; external CorvmoLib;

// ---- songs ----

// Loads a song into a player. 1 = loaded, 0 = see mm_GetLastError.
function mm_Open(player: HMIDIOUT; fileName: PAnsiChar; options: Word; noReset, endOnBeat: SmallInt;
  click: PMMCLICK): SmallInt; stdcall; external CorvmoLib;

// Loads a file for its information and tables only. 1 = loaded.
function mm_Scan(player: HMIDIOUT; fileName: PAnsiChar): SmallInt; stdcall; external CorvmoLib;

// Halts the player, frees its song, clears its settings and ranges.
procedure mm_Close(player: HMIDIOUT); stdcall; external CorvmoLib;

// ---- channel map ----

// Gathers the channels' state from what the song sets before a tick.
procedure mm_CreateMap(player: HMIDIOUT; tick: LongWord); stdcall; external CorvmoLib;

// Address of the player's channel map.
function mm_GetMap(player: HMIDIOUT): PMMMAP; stdcall; external CorvmoLib;

// Sends the map and moves the player to a tick.
procedure mm_SendMap(player: HMIDIOUT; tick: LongWord); stdcall; external CorvmoLib;

// ---- transport ----

// Starts or continues playing at the song position.
procedure mm_StartSync(player: HMIDIOUT); stdcall; external CorvmoLib;

// The same as mm_StartSync.
procedure mm_ReStartSync(player: HMIDIOUT); stdcall; external CorvmoLib;

// Halts the player where it stands and silences its routes.
procedure mm_StopSync(player: HMIDIOUT); stdcall; external CorvmoLib;

// Halts the player where it stands and silences its routes.
procedure mm_PauseSync(player: HMIDIOUT); stdcall; external CorvmoLib;

// Sends the set-up and stands on the first note. 1 = there is one.
function mm_PlayFirstNote(player: HMIDIOUT): SmallInt; stdcall; external CorvmoLib;

// Tempo to apply now, and from now on percent faster.
procedure mm_SetTempo(player: HMIDIOUT; songTempo: LongWord;
  percent: Single); stdcall; external CorvmoLib;

// Installs the ten play ranges; nil = the whole song.
procedure mm_SetLoop(player: HMIDIOUT; table: PMMLOOP); stdcall; external CorvmoLib;

// Moves the end of the range now playing, and says where to go on.
procedure mm_SetNextLocator(player: HMIDIOUT;
  newEnd, nextStart: LongWord); stdcall; external CorvmoLib;

// Halts the player and puts its position to 0.
procedure mm_RewindSync(player: HMIDIOUT); stdcall; external CorvmoLib;

// Starts a fade-in.
procedure mm_SetFadeIn(player: HMIDIOUT; fade: PMMFADE); stdcall; external CorvmoLib;

// Starts a fade-out.
procedure mm_SetFadeOut(player: HMIDIOUT; fade: PMMFADE); stdcall; external CorvmoLib;

implementation

end.
