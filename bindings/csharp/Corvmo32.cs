// corvmo32 for C# and other .NET languages: constants, records and functions of corvmo32.dll.
//
// The DLL is for 32-bit processes: build for x86. include/corvmo32.h is the manual; this file
// repeats its declarations with a line about each.
//
// Addresses stay IntPtr, because the engine keeps the records behind them. Read one with
//     MMLYRIC lyric = Corvmo32.Read<MMLYRIC>(Corvmo32.mm_GetPointerLyrics(player, index));
// and one field of a player's record in place with
//     Marshal.ReadInt32(Corvmo32.mm_GetMM(player), Corvmo32.Offset<MIDIOUT>("ticks"));
// Texts are the song's bytes as they stand; Corvmo32.Text decodes them.
using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Corvmo
{
    /// <summary>One channel of the map.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMMAPCHANNEL
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = Corvmo32.MMMAP_SLOTS)]
        public byte[] slot; // data bytes, indexed by MMSLOT_...; 0xFF = not set by the song
    }

    /// <summary>The channel map: the state that the song gave the channels before a tick.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMMAP
    {
        public uint tempo; // microseconds per quarter note as in the file; 0xFFFFFFFF = none
        public ushort beatsPerBar; // numerator of the time signature in force; 0xFFFF = none
        public ushort beatUnit; // its note value as a number (4 = quarter note)
        public uint timeSigTick; // tick of that time signature
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public MMMAPCHANNEL[] channel; // by song channel
    }

    /// <summary>Settings of mm_InitEngine.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMINIT
    {
        public IntPtr hwnd; // window that receives the notifications; may be null
        public short timerPeriod; // milliseconds
        public ushort reserved1; // not read
        public uint deviceIndex1; // player 1's MIDI output, 0 to 31
        public uint deviceIndex2; // player 2's; read with MMINIT_SECONDPLAYER
        public ushort mode1; // MMMODE_... of player 1's device
        public ushort mode2; // MMMODE_... of player 2's device
        public ushort flags; // MMINIT_... bits
        public short resetGap; // milliseconds to wait after the last reset message
        public short noChase; // 0 = a jump restores the channels' state
        public IntPtr @lock; // initialised CRITICAL_SECTION; lives until mm_EndEngine has returned
        public short sendInitText; // 1 = mm_PlayFirstNote sends the init text
        public IntPtr initSysExText; // 1024 readable bytes of hexadecimal lines; null = none
        public uint firstNoteDelay; // milliseconds at the end of mm_PlayFirstNote
        public uint eventGap; // milliseconds after each message of mm_PlayFirstNote
    }

    /// <summary>One event of a song.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMEVENT
    {
        public byte kind; // MIDI status; F0 stored message, 51 tempo, 58 time signature
        public byte byte1; // first data byte
        public byte byte2; // second data byte
        public byte byte3; // 0; tempo: low byte
        public uint time; // tick
    }

    /// <summary>One lyric: a syllable, a word, or a line break (byte 13).</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMLYRIC
    {
        public uint time; // tick at which it is due
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 80)]
        public byte[] text; // ends with a zero
    }

    /// <summary>One marker.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMMARKER
    {
        public uint time; // tick
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 80)]
        public byte[] text; // ends with a zero unless it is full
    }

    /// <summary>One chord name.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMCHORD
    {
        public uint time; // tick at which it is due
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public byte[] text; // ends with a zero
    }

    /// <summary>One stored system-exclusive message.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMSYSEX
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 96)]
        public byte[] data; // ownBlock 0: the message; its length is the event's byte3
        public ushort isReset; // 1 = the GM, GS or XG reset message
        public ushort ownBlock; // 1 = longer than 96 bytes, in a block of its own
        public ushort isKaraokeText; // 1 = a karaoke text message
    }

    /// <summary>MMSYSEX with ownBlock 1: what stands at the start of data.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMSYSEXBLOCK
    {
        public IntPtr mem; // handle of the message's block
        public IntPtr ptr; // the message
        public short length; // its length in bytes
    }

    /// <summary>State of the loader in one track.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMTRACK
    {
        public ushort number; // 1 for the first track chunk
        public uint length; // declared data length in bytes
        public uint dataStart; // file offset of the first data byte
        public ushort reserved; // 0
        public ushort parsed; // 1 once the track was read to its end
        public uint eventPos; // file offset of the current event
        public uint readPos; // file offset of the next byte to read
        public uint time; // tick of the current event
        public short runningStatus; // status in force, -1 = none
    }

    /// <summary>Metronome settings of mm_Open.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMCLICK
    {
        public ushort clickOn; // 1 = the metronome clicks
        public short clickDevice; // MIDI output, 0 to 31; another index gives no click
        public ushort clickChannel; // MIDI channel, 0 to 15
        public ushort clickAccentNote; // note of the first beat of a bar
        public ushort clickAccentVelocity; // its velocity
        public ushort clickNote; // note of the other beats
        public ushort clickVelocity; // their velocity
        public uint timeSigTick; // tick from which bars are counted; 0 after opening
        public uint nextClick; // tick of the next click; 0 after opening
    }

    /// <summary>One play range; mm_SetLoop takes ten.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMLOOP
    {
        public ushort endLocked; // 1 = mm_SetNextLocator may not move the end
        public uint start; // first tick; MMLOOP_UNUSED = record not in use
        public uint end; // tick at which the range ends; 0 = the end of the song
        public uint reserved; // copied, not read
        public short repeats; // passes to play, counted down
        public short repeatsSet; // the passes as set; by the engine
    }

    /// <summary>One fade: in segment k, level = slope[k] * time + base[k].</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMFADE
    {
        public ushort active; // 1 while the fade acts on the notes
        public int level; // 1/1024 percent: 102400 = full loudness
        public uint time; // milliseconds since the fade began
        public uint reserved1; // not read
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 5)]
        public uint[] segmentEnd; // milliseconds, not decreasing
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)]
        public uint[] reserved2; // not read
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 5)]
        public int[] slope; // level change a millisecond
        public int reserved3; // not read
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 5)]
        public int[] @base; // level of the segment's line at time 0
        public int reserved4; // not read
    }

    /// <summary>Patch override of a channel.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMPATCH
    {
        public short bankMsb; // 0 to 127
        public short bankLsb; // 0 to 127
        public short program; // 0 to 127, or MMPATCH_NO_OVERRIDE
        public short keepBank; // not 0 = the song's banks do not replace these
    }

    /// <summary>One note replacement of the drum channel; mm_SetReplaceNotes takes ten.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMNOTEPAIR
    {
        public sbyte from; // note that is replaced, -1 = pair not in use
        public sbyte to; // note that is sent in its place
    }

    /// <summary>What the engine found out about a song.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MMINFO
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 33)]
        public byte[] title; // first title line, ends with a zero
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 33)]
        public byte[] title2; // second title line, ends with a zero
        public uint firstTempo; // microseconds per quarter note
        public int keySignature; // (sharps, or minus flats) << 8 | minor; -1 = none
        public short hasLyrics; // 1 = more than four lyrics
        public short hasChords; // 1 = more than four chords
    }

    /// <summary>One player.</summary>
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    public struct MIDIOUT
    {
        public IntPtr hmo; // the player's handle; set at start-up, kept by closing
        public uint mode; // MMMODE_... of the device; set at start-up, kept by closing
        public uint options; // MMOPT_... bits of the song; mm_Open, mm_SetOptions
        public short format; // Standard MIDI File format, 0 or 1
        public short trackCount; // tracks that the file header declares, 1 to 127
        public short division; // ticks per quarter note, 1 to 960
        public MMINFO info; // what scanning found out
        public uint fileSize; // bytes
        public IntPtr fileData; // the file while it is loaded
        public IntPtr fileMem; // its memory handle
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)]
        public byte[] reserved1; // 0
        public int eventCapacity; // events that the event buffer can hold
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)]
        public byte[] reserved2; // 0
        public int eventIndex; // index of the next event to play
        public int eventCount; // events in the list
        public IntPtr eventMem; // memory handle of the event buffer
        public IntPtr events; // the event list in time order
        public IntPtr eventEnd; // next free record while loading
        public IntPtr eventPlay; // next event to play
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public MMPATCH[] patch; // mm_SetPatch; without an override the song's own bank selects
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] volume; // mm_SetVolume: offset to controller 7
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] reverb; // mm_SetReverb: offset to controller 91
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] chorus; // mm_SetChorus: offset to controller 93
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] balance; // mm_SetBalance: offset to controller 10
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] keyShift; // mm_SetKeyShift: semitones
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] velocity; // mm_SetVelocity: percent
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] mute; // mm_SetMute: not 0 = notes are not sent
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public short[] noTranspose; // mm_SetNoTranspose: not 0 = not transposed; by output channel
        public float tempoPercent; // mm_SetTempo: percent, positive = faster
        public short transpose; // mm_SetTranspose: semitones
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public MMPATCH[] songPatch; // the song's own bank selects while the host's bank is in force
        public MMFADE fadeIn; // mm_SetFadeIn
        public MMFADE fadeOut; // mm_SetFadeOut
        public uint eventPos; // loader: file offset of the current event
        public uint readPos; // loader: file offset of the next byte to read
        public uint trackTime; // loader: tick of the current event
        public short runningStatus; // loader: status in force, -1 = none
        public short vlqLength; // loader: bytes of the last variable-length number
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 2)]
        public byte[] reserved3; // 0
        public IntPtr tracks; // track table, one entry a track chunk
        public IntPtr trackMem; // its memory handle
        public IntPtr lyricMem; // memory handle of the lyric table
        public IntPtr lyrics; // lyric table of MM_MAX_LYRICS records; record 0 is a line break
        public short lyricCount; // lyrics, the start record included
        public short lyricIndex; // index of the next lyric to announce
        public IntPtr lyricPlay; // next lyric to announce
        public IntPtr chordMem; // memory handle of the chord table
        public IntPtr chords; // chord table of MM_MAX_CHORDS records; record 0 is a start record
        public short chordCount; // chords, the start record included
        public short chordIndex; // index of the next chord to announce
        public IntPtr chordPlay; // next chord to announce
        public IntPtr sysexMem; // memory handle of the system-exclusive store
        public IntPtr sysex; // store of MM_MAX_SYSEX messages; null without MMINIT_SYSEXSTORE
        public short sysexCount; // messages in the store
        public short resetCount; // reset messages in the store, counted down by mm_PlayFirstNote
        public uint ticks; // song position
        public uint tempo; // microseconds per quarter note * 256, after tempoPercent
        public uint tickStep; // division * timer period * 256000, its low 32 bits
        public uint tickRemainder; // what the clock carries to the next timer period, below tempo
        public short playing; // not 0 while the player plays
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = Corvmo32.MM_MAX_LOOPS)]
        public MMLOOP[] loops; // play ranges; mm_SetLoop, mm_SetNextLocator
        public MMMAP map; // channel map; mm_GetMap
        public short loopIndex; // index of the current play range
        public IntPtr curLoop; // the current play range
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)]
        public byte[] reserved4; // 0
        public ushort loopsSet; // 1 once play ranges were set
        public short numLoops; // play ranges in use
        public short endOnBeat; // argument of mm_Open
        public IntPtr markers; // marker table of MM_MAX_MARKERS records
        public IntPtr markerMem; // its memory handle
        public short markerCount; // markers
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public IntPtr[] channelDevice; // by song channel: the output that its messages go to
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public byte[] channelOut; // by song channel: the MIDI channel that its messages carry
        public MMCLICK click; // metronome
        public short beatsPerBar; // beats in a bar of the last time signature played; 4 at first
        public short beatUnit; // note value of a beat as a number; 4 at first
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)]
        public IntPtr[] textLine; // loader: karaoke text lines of MM_TEXTLINE_SIZE bytes
        public short textLineIndex; // loader: current text line
        public IntPtr longBufferMem; // memory handle of the long-message buffer; kept by closing
        public IntPtr longBuffer; // the long-message buffer; kept by closing
        public IntPtr longHeaderMem; // memory handle of the long-message header; kept by closing
        public IntPtr longHeader; // the long-message header; kept by closing
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 10)]
        public MMNOTEPAIR[] replaceNotes; // mm_SetReplaceNotes
    }

    public static class Corvmo32
    {
        const string Dll = "corvmo32.dll";

        // Sizes of a song's tables
        public const int MM_MAX_LYRICS = 1536;
        public const int MM_MAX_CHORDS = 1000;
        public const int MM_MAX_MARKERS = 10; // at most 9 of them are filled
        public const int MM_MAX_SYSEX = 620;
        public const int MM_MAX_LOOPS = 10;
        public const int MM_TEXTLINE_SIZE = 96;
        // bytes of the longest message of mm_LongMessage
        public const int MM_LONG_MESSAGE_SIZE = 4096;

        // Sizes and special values
        public const int MMINIT_TEXT_SIZE = 1024; // bytes read from MMINIT.initSysExText
        // MMPATCH.program: the song's own programs are played
        public const int MMPATCH_NO_OVERRIDE = -127;

        // MMINIT.mode1, MMINIT.mode2: the device's standard
        public const int MMMODE_GM = 0; // any other value counts as this
        public const int MMMODE_GS = 1;
        public const int MMMODE_XG = 2;

        // MMINIT.flags
        public const int MMINIT_SECONDPLAYER = 0x0001; // player 2 is bound to device deviceIndex2
        // player 2 gets no device; no-reset songs do not reset the device
        public const int MMINIT_NORESET = 0x0002;
        // songs keep and play their system-exclusive messages
        public const int MMINIT_SYSEXSTORE = 0x0004;
        // opening a song sends the reset message of the player's mode
        public const int MMINIT_RESETONOPEN = 0x0008;

        // Options word: mm_Open, mm_SetOptions
        public const int MMOPT_NOTES = 0x01; // MMN_NOTEON and MMN_NOTEOFF
        // MMN_PROGRAM, _PATCH, _VOLUME, _PAN, _REVERB, _CHORUS
        public const int MMOPT_CHANNELS = 0x02;
        public const int MMOPT_LYRICS = 0x04; // MMN_LYRIC
        public const int MMOPT_CHORDS = 0x08; // MMN_CHORD
        public const int MMOPT_POSITION = 0x10; // MMN_POSITION
        public const int MMOPT_POSITION2 = 0x20; // MMN_POSITION as well
        public const int MMOPT_TEMPO = 0x40; // MMN_TEMPO
        public const int MMOPT_SCAN = 0x80; // mm_Open reads the song for its information only

        // Notifications: the message numbers that are posted, with wParam and lParam
        // program change sent: channel, program << 16 | bank LSB << 8 | bank MSB
        public const int MMN_PROGRAM = 0x401;
        // tempo changed: 0 played, 1 before the first note, 2 by a seek; microseconds
        public const int MMN_TEMPO = 0x402;
        public const int MMN_POSITION = 0x403; // position was moved: 0, tick
        public const int MMN_END = 0x408; // the song ended: player handle, 0
        public const int MMN_NOTEON = 0x40A; // note-on: channel, 0
        public const int MMN_NOTEOFF = 0x40B; // note-off: channel, 0
        public const int MMN_VOLUME = 0x414; // controller 7 sent: channel, the song's value
        public const int MMN_PAN = 0x415; // controller 10 sent: channel, the song's value
        public const int MMN_REVERB = 0x416; // controller 91 sent: channel, the song's value
        public const int MMN_CHORUS = 0x417; // controller 93 sent: channel, the song's value
        public const int MMN_LYRIC = 0x418; // lyric is due: its index, 0
        public const int MMN_CHORD = 0x419; // chord is due: its index, 0
        public const int MMN_PATCH = 0x41F; // override sent in its place: channel, as MMN_PROGRAM
        public const int MMN_LOOP = 0x421; // a play range begins: 0, its first tick

        // MMLOOP.start and mm_SetNextLocator
        // MMLOOP.start of a record that is not in use
        public const uint MMLOOP_UNUSED = 0xFFFFFFFFu;
        public const uint MMLOCATOR_KEEP_END = 0xFFFFFFFFu; // the range now playing keeps its end
        public const uint MMLOCATOR_NO_NEXT = 0xFFFFFFFEu; // no range follows the one now playing

        // mm_GetLastError
        public const int ENGINE_ERR_CHUNK = 1001; // song: no track chunk where one is expected
        // song: data byte without a status, or an undefined status
        public const int ENGINE_ERR_STATUS = 1002;
        public const int ENGINE_ERR_SYSEX = 1003; // song: malformed system-exclusive event
        public const int ENGINE_ERR_TIMER = 1008; // start-up: the timer cannot be had
        public const int ENGINE_ERR_ALLOC = 1009; // out of memory
        // memory cannot be locked; song: no memory for the events
        public const int ENGINE_ERR_LOCK = 1010;
        // song: cannot be opened, or is no Standard MIDI File that the engine reads
        public const int ENGINE_ERR_FILE = 1011;
        public const int ENGINE_ERR_READ = 1015; // song: reading yields no bytes

        // Results of the system's that the engine gives itself
        public const int MMSYSERR_NOERROR = 0; // the message was sent
        public const int MMSYSERR_INVALPARAM = 11; // an argument lies outside its range

        // Channel map: values that the song did not set
        public const uint MMMAP_NONE8 = 0xFFu; // map slot that the song did not set
        public const uint MMMAP_NONE16 = 0xFFFFu; // map time signature that the song did not set
        public const uint MMMAP_NONE32 = 0xFFFFFFFFu; // map tempo that the song did not set

        // Channel map: slots (data bytes) of a channel
        public const int MMSLOT_POLY_KEY = 0; // polyphonic key pressure: key; recorded, not sent
        public const int MMSLOT_POLY_PRESSURE = 1; // its pressure; recorded, not sent
        public const int MMSLOT_PROGRAM = 2;
        public const int MMSLOT_CHANNEL_PRESSURE = 3;
        public const int MMSLOT_BEND_LOW = 4; // pitch bend, first data byte
        public const int MMSLOT_BEND_HIGH = 5;
        public const int MMSLOT_BANK_MSB = 6; // controller 0
        public const int MMSLOT_BANK_LSB = 7; // controller 32
        public const int MMSLOT_MODULATION = 8;
        public const int MMSLOT_BREATH = 10;
        public const int MMSLOT_FOOT = 12;
        public const int MMSLOT_PORTAMENTO_TIME = 14;
        public const int MMSLOT_VOLUME = 16;
        public const int MMSLOT_VOLUME_FINE = 17; // recorded, not sent
        public const int MMSLOT_BALANCE = 18; // controller 8
        public const int MMSLOT_PAN = 20; // controller 10
        public const int MMSLOT_PAN_FINE = 21; // recorded, not sent
        public const int MMSLOT_EXPRESSION = 22;
        public const int MMSLOT_EFFECT1 = 24; // controller 12
        public const int MMSLOT_EFFECT2 = 26; // controller 13
        public const int MMSLOT_GENERAL1 = 28; // controllers 16 to 19 in slots 28 to 31
        public const int MMSLOT_SUSTAIN = 32; // controllers 64 to 84 in slots 32 to 52
        public const int MMSLOT_PORTAMENTO_CONTROL = 52; // controller 84
        public const int MMSLOT_REVERB = 53; // controller 91
        public const int MMSLOT_TREMOLO = 54; // controller 92
        public const int MMSLOT_CHORUS = 55; // controller 93
        public const int MMSLOT_DETUNE = 56; // controller 94
        public const int MMSLOT_PHASER = 57; // controller 95
        public const int MMSLOT_RPN_BEND_RANGE = 58; // registered parameter 0/0
        public const int MMSLOT_NEVER_SET = 59; // holds 0xFF in every map that was built
        public const int MMSLOT_RPN_FINE_TUNING = 60; // registered parameter 0/1
        public const int MMSLOT_RPN_COARSE_TUNING = 62; // registered parameter 0/2
        public const int MMSLOT_NRPN_VIBRATO_RATE = 64; // non-registered parameter 1/8
        public const int MMSLOT_NRPN_VIBRATO_DEPTH = 66; // 1/9
        public const int MMSLOT_NRPN_VIBRATO_DELAY = 68; // 1/10
        public const int MMSLOT_NRPN_CUTOFF = 70; // 1/32
        public const int MMSLOT_NRPN_RESONANCE = 72; // 1/33
        public const int MMSLOT_NRPN_ATTACK = 74; // 1/99
        public const int MMSLOT_NRPN_DECAY = 76; // 1/100
        public const int MMSLOT_NRPN_RELEASE = 78; // 1/102
        public const int MMMAP_SLOTS = 90;

        // ---- engine ----

        /// <summary>Opens every MIDI output, binds the players, starts the timer. 1 = done.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_InitEngine(
            ref MMINIT settings, out IntPtr player1, out IntPtr player2);

        /// <summary>Stops both players, closes every output, stops the timer.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_EndEngine();

        /// <summary>Code of the last failure (ENGINE_ERR_...), 0 = nothing failed yet.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_GetLastError();

        /// <summary>The timer's callback, handed to the system. Not for hosts.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void SyncTimer(
            uint timerId, uint reserved, UIntPtr user, UIntPtr reserved1, UIntPtr reserved2);

        // ---- raw output, records and routing ----

        /// <summary>Sends status + data 1 * 256 + data 2 * 65536 to an output. 0 = sent.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_ShortMessage(IntPtr device, uint message);

        /// <summary>Sends a system-exclusive message of 1 to 4096 bytes.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_LongMessage(IntPtr player, byte[] message, short length);

        /// <summary>Releases pedals, resets controllers, sends the player's reset message.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_Reset(IntPtr player);

        /// <summary>Address of player 1's record.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetMM1();

        /// <summary>Address of player 2's record.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetMM2();

        /// <summary>Address of the record that the handle selects.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetMM(IntPtr player);

        /// <summary>Sends a song channel's messages to another output (0 to 31).</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetChannelDevice(
            IntPtr player, short channel, short deviceIndex, short silence);

        /// <summary>Sends a song channel's messages on another MIDI channel.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetChannelOut(
            IntPtr player, short channel, short outputChannel, short silence);

        /// <summary>Address of the 16 output channels (bytes), by song channel.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetChannelOut(IntPtr player);

        /// <summary>Address of the 16 output handles, by song channel.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetChannelDevice(IntPtr player);

        // ---- song information ----

        /// <summary>Number of events in the player's list.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern int mm_GetNumEvents(IntPtr player);

        /// <summary>Address of an event; null without a song. The index is not checked.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetPointerEvents(IntPtr player, int index);

        /// <summary>Number of lyrics, the start record included.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_GetNumLyrics(IntPtr player);

        /// <summary>Only lyrics below this count are announced.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetNumLyrics(IntPtr player, short count);

        /// <summary>Address of a lyric; null without a song. The index is not checked.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetPointerLyrics(IntPtr player, short index);

        /// <summary>Number of chords, the start record included.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_GetNumChords(IntPtr player);

        /// <summary>Only chords below this count are announced.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetNumChords(IntPtr player, short count);

        /// <summary>Address of a chord; null without a song. The index is not checked.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetPointerChords(IntPtr player, short index);

        /// <summary>Number of markers, 0 to 9.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_GetNumMarkers(IntPtr player);

        /// <summary>Address of a marker; null without a song. The index is not checked.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetPointerMarkers(IntPtr player, short index);

        /// <summary>Tempo in force, microseconds per quarter note; 0 without a song.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_GetTempo(IntPtr player);

        /// <summary>Ticks per quarter note; 0 without a song.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_GetUnits(IntPtr player);

        /// <summary>Song position in ticks.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_GetTicks(IntPtr player);

        /// <summary>Address of the player's song information.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetInfo(IntPtr player);

        /// <summary>Replaces the player's options word (MMOPT_... bits).</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetOptions(IntPtr player, uint options);

        /// <summary>Names the window that receives the notifications; may be null.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetWindow(IntPtr window);

        /// <summary>The window that receives the notifications.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetWindow();

        // ---- channel settings ----

        /// <summary>Overrides a channel's instrument from its next program change on.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetPatch(IntPtr player, short channel, ref MMPATCH patch);

        /// <summary>Replaces the ten note replacements of the drum channel.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetReplaceNotes(
            IntPtr player, short channel, MMNOTEPAIR[] pairs, short silence);

        /// <summary>Added to the channel's controller 7.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetVolume(IntPtr player, short channel, short value);

        /// <summary>Added to the channel's controller 10.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetBalance(IntPtr player, short channel, short value);

        /// <summary>Added to the channel's controller 91.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetReverb(IntPtr player, short channel, short value);

        /// <summary>Added to the channel's controller 93.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetChorus(IntPtr player, short channel, short value);

        /// <summary>Percent by which the channel's note velocities change.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetVelocity(IntPtr player, short channel, short value);

        /// <summary>Not 0 = notes on this output channel are never transposed.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetNoTranspose(
            IntPtr player, short outputChannel, short value);

        /// <summary>Not 0 = the channel's notes are not sent.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetMute(
            IntPtr player, short channel, short value, short silence);

        /// <summary>Semitones added to the channel's notes, drum notes included.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetKeyShift(
            IntPtr player, short channel, short value, short silence);

        /// <summary>Semitones added to every note that is not sent on output channel 9.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetTranspose(IntPtr player, short value, short silence);

        /// <summary>Transposes both players, after their own transposition.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetMasterTranspose(short value);

        /// <summary>Sends three words now: bank MSB, bank LSB, program. 0 = sent.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_SetMIDIPatch(IntPtr player, short channel, short[] words);

        /// <summary>Sends controller 7 on the channel's route now. 0 = sent.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_SetMIDIVolume(IntPtr player, short channel, short value);

        /// <summary>Sends controller 10 on the channel's route now. 0 = sent.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_SetMIDIBalance(IntPtr player, short channel, short value);

        /// <summary>Sends controller 91 on the channel's route now. 0 = sent.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_SetMIDIReverb(IntPtr player, short channel, short value);

        /// <summary>Sends controller 93 on the channel's route now. 0 = sent.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern uint mm_SetMIDIChorus(IntPtr player, short channel, short value);

        // ---- songs ----

        /// <summary>Loads a song into a player. 1 = loaded, 0 = see mm_GetLastError.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_Open(
            IntPtr player, [MarshalAs(UnmanagedType.LPStr)] string fileName, ushort options, short
            noReset, short endOnBeat, ref MMCLICK click);

        /// <summary>The same with IntPtr.Zero: without a metronome.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_Open(
            IntPtr player, [MarshalAs(UnmanagedType.LPStr)] string fileName, ushort options, short
            noReset, short endOnBeat, IntPtr click);

        /// <summary>Loads a file for its information and tables only. 1 = loaded.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_Scan(
            IntPtr player, [MarshalAs(UnmanagedType.LPStr)] string fileName);

        /// <summary>Halts the player, frees its song, clears its settings and ranges.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_Close(IntPtr player);

        // ---- channel map ----

        /// <summary>Gathers the channels' state from what the song sets before a tick.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_CreateMap(IntPtr player, uint tick);

        /// <summary>Address of the player's channel map.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern IntPtr mm_GetMap(IntPtr player);

        /// <summary>Sends the map and moves the player to a tick.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SendMap(IntPtr player, uint tick);

        // ---- transport ----

        /// <summary>Starts or continues playing at the song position.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_StartSync(IntPtr player);

        /// <summary>The same as mm_StartSync.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_ReStartSync(IntPtr player);

        /// <summary>Halts the player where it stands and silences its routes.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_StopSync(IntPtr player);

        /// <summary>Halts the player where it stands and silences its routes.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_PauseSync(IntPtr player);

        /// <summary>Sends the set-up and stands on the first note. 1 = there is one.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern short mm_PlayFirstNote(IntPtr player);

        /// <summary>Tempo to apply now, and from now on percent faster.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetTempo(IntPtr player, uint songTempo, float percent);

        /// <summary>Installs the ten play ranges; null = the whole song.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetLoop(IntPtr player, MMLOOP[] table);

        /// <summary>Moves the end of the range now playing, and says where to go on.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetNextLocator(IntPtr player, uint newEnd, uint nextStart);

        /// <summary>Halts the player and puts its position to 0.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_RewindSync(IntPtr player);

        /// <summary>Starts a fade-in.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetFadeIn(IntPtr player, ref MMFADE fade);

        /// <summary>Starts a fade-out.</summary>
        [DllImport(Dll, CallingConvention = CallingConvention.StdCall, ExactSpelling = true)]
        public static extern void mm_SetFadeOut(IntPtr player, ref MMFADE fade);

        // ---- the lock that MMINIT.lock names ----

        /// <summary>Bytes of a CRITICAL_SECTION; take them from Marshal.AllocHGlobal.</summary>
        public const int LockSize = 24;

        [DllImport("kernel32.dll", ExactSpelling = true)]
        public static extern void InitializeCriticalSection(IntPtr section);

        [DllImport("kernel32.dll", ExactSpelling = true)]
        public static extern void DeleteCriticalSection(IntPtr section);

        [DllImport("kernel32.dll", ExactSpelling = true)]
        public static extern void EnterCriticalSection(IntPtr section);

        [DllImport("kernel32.dll", ExactSpelling = true)]
        public static extern void LeaveCriticalSection(IntPtr section);

        // ---- reading records ----

        /// <summary>A copy of the record at an address that the engine handed out.</summary>
        public static T Read<T>(IntPtr address) where T : struct
        {
            return (T)Marshal.PtrToStructure(address, typeof(T));
        }

        /// <summary>Where a field lies in its record.</summary>
        public static int Offset<T>(string field) where T : struct
        {
            return Marshal.OffsetOf(typeof(T), field).ToInt32();
        }

        /// <summary>The text in a record's bytes, up to the ending zero.</summary>
        public static string Text(byte[] bytes, Encoding encoding)
        {
            int end = Array.IndexOf(bytes, (byte)0);
            return encoding.GetString(bytes, 0, end < 0 ? bytes.Length : end);
        }
    }
}
