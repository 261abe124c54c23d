Attribute VB_Name = "Corvmo32"
' corvmo32 for Visual Basic 6: constants, records and functions of corvmo32.dll.
'
' include\corvmo32.h is the manual; this module repeats its declarations with a line about each.
'
' RECORDS. The engine's records are packed, and Visual Basic puts a Long of a Type on an address
' that is a multiple of 4. Records that this leaves alone are Types. Of the others the module gives
' the size (SIZE_...) and the place of every field (OFS_...): read a field in place,
'     position = PeekLong(mm_GetMM(player) + OFS_MIDIOUT_ticks)
' and build what the engine takes as an array of bytes, with the Make functions at the end:
'     Dim settings() As Byte
'     settings = MakeInit(Me.hWnd, VarPtr(hostLock(0)), 5, MMINIT_SYSEXSTORE)
'     If mm_InitEngine(settings(0), player, second) = 1 Then ...
' A parameter "As Any" takes the first byte of such an array, or ByVal 0& where it may be left out.
' The engine reads such an array only during the call, hostLock excepted: it must be a module-level
' array that lives until mm_EndEngine has returned.
'
' NUMBERS. Visual Basic has no unsigned types: a Long or an Integer with its highest bit set reads
' as a negative number. PeekWord answers a 16-bit field as 0 to 65535.
'
' NOTIFICATIONS are window messages (MMN_...). Receive them in a window procedure of your own, set
' with SetWindowLong(hWnd, GWL_WNDPROC, AddressOf ...), and remove it before the window is destroyed.
Option Explicit

' Sizes of a song's tables
Public Const MM_MAX_LYRICS As Long = 1536
Public Const MM_MAX_CHORDS As Long = 1000
Public Const MM_MAX_MARKERS As Long = 10 ' at most 9 of them are filled
Public Const MM_MAX_SYSEX As Long = 620
Public Const MM_MAX_LOOPS As Long = 10
Public Const MM_TEXTLINE_SIZE As Long = 96
Public Const MM_LONG_MESSAGE_SIZE As Long = 4096 ' bytes of the longest message of mm_LongMessage

' Sizes and special values
Public Const MMINIT_TEXT_SIZE As Long = 1024 ' bytes read from MMINIT.initSysExText
' MMPATCH.program: the song's own programs are played
Public Const MMPATCH_NO_OVERRIDE As Long = -127

' MMINIT.mode1, MMINIT.mode2: the device's standard
Public Const MMMODE_GM As Long = 0 ' any other value counts as this
Public Const MMMODE_GS As Long = 1
Public Const MMMODE_XG As Long = 2

' MMINIT.flags
Public Const MMINIT_SECONDPLAYER As Long = &H1& ' player 2 is bound to device deviceIndex2
' player 2 gets no device; no-reset songs do not reset the device
Public Const MMINIT_NORESET As Long = &H2&
Public Const MMINIT_SYSEXSTORE As Long = &H4& ' songs keep and play their system-exclusive messages
' opening a song sends the reset message of the player's mode
Public Const MMINIT_RESETONOPEN As Long = &H8&

' Options word: mm_Open, mm_SetOptions
Public Const MMOPT_NOTES As Long = &H1& ' MMN_NOTEON and MMN_NOTEOFF
Public Const MMOPT_CHANNELS As Long = &H2& ' MMN_PROGRAM, _PATCH, _VOLUME, _PAN, _REVERB, _CHORUS
Public Const MMOPT_LYRICS As Long = &H4& ' MMN_LYRIC
Public Const MMOPT_CHORDS As Long = &H8& ' MMN_CHORD
Public Const MMOPT_POSITION As Long = &H10& ' MMN_POSITION
Public Const MMOPT_POSITION2 As Long = &H20& ' MMN_POSITION as well
Public Const MMOPT_TEMPO As Long = &H40& ' MMN_TEMPO
Public Const MMOPT_SCAN As Long = &H80& ' mm_Open reads the song for its information only

' Notifications: the message numbers that are posted, with wParam and lParam
' program change sent: channel, program << 16 | bank LSB << 8 | bank MSB
Public Const MMN_PROGRAM As Long = &H401&
' tempo changed: 0 played, 1 before the first note, 2 by a seek; microseconds
Public Const MMN_TEMPO As Long = &H402&
Public Const MMN_POSITION As Long = &H403& ' position was moved: 0, tick
Public Const MMN_END As Long = &H408& ' the song ended: player handle, 0
Public Const MMN_NOTEON As Long = &H40A& ' note-on: channel, 0
Public Const MMN_NOTEOFF As Long = &H40B& ' note-off: channel, 0
Public Const MMN_VOLUME As Long = &H414& ' controller 7 sent: channel, the song's value
Public Const MMN_PAN As Long = &H415& ' controller 10 sent: channel, the song's value
Public Const MMN_REVERB As Long = &H416& ' controller 91 sent: channel, the song's value
Public Const MMN_CHORUS As Long = &H417& ' controller 93 sent: channel, the song's value
Public Const MMN_LYRIC As Long = &H418& ' lyric is due: its index, 0
Public Const MMN_CHORD As Long = &H419& ' chord is due: its index, 0
Public Const MMN_PATCH As Long = &H41F& ' override sent in its place: channel, as MMN_PROGRAM
Public Const MMN_LOOP As Long = &H421& ' a play range begins: 0, its first tick

' MMLOOP.start and mm_SetNextLocator
Public Const MMLOOP_UNUSED As Long = &HFFFFFFFF& ' MMLOOP.start of a record that is not in use
Public Const MMLOCATOR_KEEP_END As Long = &HFFFFFFFF& ' the range now playing keeps its end
Public Const MMLOCATOR_NO_NEXT As Long = &HFFFFFFFE& ' no range follows the one now playing

' mm_GetLastError
Public Const ENGINE_ERR_CHUNK As Long = 1001 ' song: no track chunk where one is expected
' song: data byte without a status, or an undefined status
Public Const ENGINE_ERR_STATUS As Long = 1002
Public Const ENGINE_ERR_SYSEX As Long = 1003 ' song: malformed system-exclusive event
Public Const ENGINE_ERR_TIMER As Long = 1008 ' start-up: the timer cannot be had
Public Const ENGINE_ERR_ALLOC As Long = 1009 ' out of memory
' memory cannot be locked; song: no memory for the events
Public Const ENGINE_ERR_LOCK As Long = 1010
' song: cannot be opened, or is no Standard MIDI File that the engine reads
Public Const ENGINE_ERR_FILE As Long = 1011
Public Const ENGINE_ERR_READ As Long = 1015 ' song: reading yields no bytes

' Results of the system's that the engine gives itself
Public Const MMSYSERR_NOERROR As Long = 0 ' the message was sent
Public Const MMSYSERR_INVALPARAM As Long = 11 ' an argument lies outside its range

' Channel map: values that the song did not set
Public Const MMMAP_NONE8 As Long = &HFF& ' map slot that the song did not set
Public Const MMMAP_NONE16 As Long = &HFFFF& ' map time signature that the song did not set
Public Const MMMAP_NONE32 As Long = &HFFFFFFFF& ' map tempo that the song did not set

' Channel map: slots (data bytes) of a channel
Public Const MMSLOT_POLY_KEY As Long = 0 ' polyphonic key pressure: key; recorded, not sent
Public Const MMSLOT_POLY_PRESSURE As Long = 1 ' its pressure; recorded, not sent
Public Const MMSLOT_PROGRAM As Long = 2
Public Const MMSLOT_CHANNEL_PRESSURE As Long = 3
Public Const MMSLOT_BEND_LOW As Long = 4 ' pitch bend, first data byte
Public Const MMSLOT_BEND_HIGH As Long = 5
Public Const MMSLOT_BANK_MSB As Long = 6 ' controller 0
Public Const MMSLOT_BANK_LSB As Long = 7 ' controller 32
Public Const MMSLOT_MODULATION As Long = 8
Public Const MMSLOT_BREATH As Long = 10
Public Const MMSLOT_FOOT As Long = 12
Public Const MMSLOT_PORTAMENTO_TIME As Long = 14
Public Const MMSLOT_VOLUME As Long = 16
Public Const MMSLOT_VOLUME_FINE As Long = 17 ' recorded, not sent
Public Const MMSLOT_BALANCE As Long = 18 ' controller 8
Public Const MMSLOT_PAN As Long = 20 ' controller 10
Public Const MMSLOT_PAN_FINE As Long = 21 ' recorded, not sent
Public Const MMSLOT_EXPRESSION As Long = 22
Public Const MMSLOT_EFFECT1 As Long = 24 ' controller 12
Public Const MMSLOT_EFFECT2 As Long = 26 ' controller 13
Public Const MMSLOT_GENERAL1 As Long = 28 ' controllers 16 to 19 in slots 28 to 31
Public Const MMSLOT_SUSTAIN As Long = 32 ' controllers 64 to 84 in slots 32 to 52
Public Const MMSLOT_PORTAMENTO_CONTROL As Long = 52 ' controller 84
Public Const MMSLOT_REVERB As Long = 53 ' controller 91
Public Const MMSLOT_TREMOLO As Long = 54 ' controller 92
Public Const MMSLOT_CHORUS As Long = 55 ' controller 93
Public Const MMSLOT_DETUNE As Long = 56 ' controller 94
Public Const MMSLOT_PHASER As Long = 57 ' controller 95
Public Const MMSLOT_RPN_BEND_RANGE As Long = 58 ' registered parameter 0/0
Public Const MMSLOT_NEVER_SET As Long = 59 ' holds 0xFF in every map that was built
Public Const MMSLOT_RPN_FINE_TUNING As Long = 60 ' registered parameter 0/1
Public Const MMSLOT_RPN_COARSE_TUNING As Long = 62 ' registered parameter 0/2
Public Const MMSLOT_NRPN_VIBRATO_RATE As Long = 64 ' non-registered parameter 1/8
Public Const MMSLOT_NRPN_VIBRATO_DEPTH As Long = 66 ' 1/9
Public Const MMSLOT_NRPN_VIBRATO_DELAY As Long = 68 ' 1/10
Public Const MMSLOT_NRPN_CUTOFF As Long = 70 ' 1/32
Public Const MMSLOT_NRPN_RESONANCE As Long = 72 ' 1/33
Public Const MMSLOT_NRPN_ATTACK As Long = 74 ' 1/99
Public Const MMSLOT_NRPN_DECAY As Long = 76 ' 1/100
Public Const MMSLOT_NRPN_RELEASE As Long = 78 ' 1/102
Public Const MMMAP_SLOTS As Long = 90

' One channel of the map.
Public Type MMMAPCHANNEL
    slot(0 To 89) As Byte ' data bytes, indexed by MMSLOT_...; 0xFF = not set by the song
End Type

' The channel map: the state that the song gave the channels before a tick.
Public Type MMMAP
    tempo As Long ' microseconds per quarter note as in the file; 0xFFFFFFFF = none
    beatsPerBar As Integer ' numerator of the time signature in force; 0xFFFF = none
    beatUnit As Integer ' its note value as a number (4 = quarter note)
    timeSigTick As Long ' tick of that time signature
    channel(0 To 15) As MMMAPCHANNEL ' by song channel
End Type

' Settings of mm_InitEngine.
Public Const OFS_MMINIT_hwnd As Long = 0 ' Long: window that receives the notifications; may be 0
Public Const OFS_MMINIT_timerPeriod As Long = 4 ' Integer: milliseconds
Public Const OFS_MMINIT_reserved1 As Long = 6 ' Integer: not read
Public Const OFS_MMINIT_deviceIndex1 As Long = 8 ' Long: player 1's MIDI output, 0 to 31
Public Const OFS_MMINIT_deviceIndex2 As Long = 12 ' Long: player 2's; read with MMINIT_SECONDPLAYER
Public Const OFS_MMINIT_mode1 As Long = 16 ' Integer: MMMODE_... of player 1's device
Public Const OFS_MMINIT_mode2 As Long = 18 ' Integer: MMMODE_... of player 2's device
Public Const OFS_MMINIT_flags As Long = 20 ' Integer: MMINIT_... bits
' Integer: milliseconds to wait after the last reset message
Public Const OFS_MMINIT_resetGap As Long = 22
Public Const OFS_MMINIT_noChase As Long = 24 ' Integer: 0 = a jump restores the channels' state
' Long: initialised CRITICAL_SECTION; lives until mm_EndEngine has returned
Public Const OFS_MMINIT_lock As Long = 26
' Integer: 1 = mm_PlayFirstNote sends the init text
Public Const OFS_MMINIT_sendInitText As Long = 30
' Long: 1024 readable bytes of hexadecimal lines; 0 = none
Public Const OFS_MMINIT_initSysExText As Long = 32
' Long: milliseconds at the end of mm_PlayFirstNote
Public Const OFS_MMINIT_firstNoteDelay As Long = 36
' Long: milliseconds after each message of mm_PlayFirstNote
Public Const OFS_MMINIT_eventGap As Long = 40
Public Const SIZE_MMINIT As Long = 44

' One event of a song.
Public Type MMEVENT
    kind As Byte ' MIDI status; F0 stored message, 51 tempo, 58 time signature
    byte1 As Byte ' first data byte
    byte2 As Byte ' second data byte
    byte3 As Byte ' 0; tempo: low byte
    time As Long ' tick
End Type

' One lyric: a syllable, a word, or a line break (byte 13).
Public Type MMLYRIC
    time As Long ' tick at which it is due
    text(0 To 79) As Byte ' ends with a zero
End Type

' One marker.
Public Type MMMARKER
    time As Long ' tick
    text(0 To 79) As Byte ' ends with a zero unless it is full
End Type

' One chord name.
Public Type MMCHORD
    time As Long ' tick at which it is due
    text(0 To 15) As Byte ' ends with a zero
End Type

' One stored system-exclusive message.
' Byte(96): ownBlock 0: the message; its length is the event's byte3
Public Const OFS_MMSYSEX_data As Long = 0
Public Const OFS_MMSYSEX_isReset As Long = 96 ' Integer: 1 = the GM, GS or XG reset message
' Integer: 1 = longer than 96 bytes, in a block of its own
Public Const OFS_MMSYSEX_ownBlock As Long = 98
Public Const OFS_MMSYSEX_isKaraokeText As Long = 100 ' Integer: 1 = a karaoke text message
Public Const SIZE_MMSYSEX As Long = 102

' MMSYSEX with ownBlock 1: what stands at the start of data.
Public Const OFS_MMSYSEXBLOCK_mem As Long = 0 ' Long: handle of the message's block
Public Const OFS_MMSYSEXBLOCK_ptr As Long = 4 ' Long: the message
Public Const OFS_MMSYSEXBLOCK_length As Long = 8 ' Integer: its length in bytes
Public Const SIZE_MMSYSEXBLOCK As Long = 10

' State of the loader in one track.
Public Const OFS_MMTRACK_number As Long = 0 ' Integer: 1 for the first track chunk
Public Const OFS_MMTRACK_length As Long = 2 ' Long: declared data length in bytes
Public Const OFS_MMTRACK_dataStart As Long = 6 ' Long: file offset of the first data byte
Public Const OFS_MMTRACK_reserved As Long = 10 ' Integer: 0
Public Const OFS_MMTRACK_parsed As Long = 12 ' Integer: 1 once the track was read to its end
Public Const OFS_MMTRACK_eventPos As Long = 14 ' Long: file offset of the current event
Public Const OFS_MMTRACK_readPos As Long = 18 ' Long: file offset of the next byte to read
Public Const OFS_MMTRACK_time As Long = 22 ' Long: tick of the current event
Public Const OFS_MMTRACK_runningStatus As Long = 26 ' Integer: status in force, -1 = none
Public Const SIZE_MMTRACK As Long = 28

' Metronome settings of mm_Open.
Public Const OFS_MMCLICK_clickOn As Long = 0 ' Integer: 1 = the metronome clicks
' Integer: MIDI output, 0 to 31; another index gives no click
Public Const OFS_MMCLICK_clickDevice As Long = 2
Public Const OFS_MMCLICK_clickChannel As Long = 4 ' Integer: MIDI channel, 0 to 15
Public Const OFS_MMCLICK_clickAccentNote As Long = 6 ' Integer: note of the first beat of a bar
Public Const OFS_MMCLICK_clickAccentVelocity As Long = 8 ' Integer: its velocity
Public Const OFS_MMCLICK_clickNote As Long = 10 ' Integer: note of the other beats
Public Const OFS_MMCLICK_clickVelocity As Long = 12 ' Integer: their velocity
' Long: tick from which bars are counted; 0 after opening
Public Const OFS_MMCLICK_timeSigTick As Long = 14
Public Const OFS_MMCLICK_nextClick As Long = 18 ' Long: tick of the next click; 0 after opening
Public Const SIZE_MMCLICK As Long = 22

' One play range; mm_SetLoop takes ten.
Public Const OFS_MMLOOP_endLocked As Long = 0 ' Integer: 1 = mm_SetNextLocator may not move the end
Public Const OFS_MMLOOP_start As Long = 2 ' Long: first tick; MMLOOP_UNUSED = record not in use
' Long: tick at which the range ends; 0 = the end of the song
Public Const OFS_MMLOOP_end As Long = 6
Public Const OFS_MMLOOP_reserved As Long = 10 ' Long: copied, not read
Public Const OFS_MMLOOP_repeats As Long = 14 ' Integer: passes to play, counted down
Public Const OFS_MMLOOP_repeatsSet As Long = 16 ' Integer: the passes as set; by the engine
Public Const SIZE_MMLOOP As Long = 18

' One fade: in segment k, level = slope[k] * time + base[k].
Public Const OFS_MMFADE_active As Long = 0 ' Integer: 1 while the fade acts on the notes
Public Const OFS_MMFADE_level As Long = 2 ' Long: 1/1024 percent: 102400 = full loudness
Public Const OFS_MMFADE_time As Long = 6 ' Long: milliseconds since the fade began
Public Const OFS_MMFADE_reserved1 As Long = 10 ' Long: not read
Public Const OFS_MMFADE_segmentEnd As Long = 14 ' Long(5): milliseconds, not decreasing
Public Const OFS_MMFADE_reserved2 As Long = 34 ' Long(6): not read
Public Const OFS_MMFADE_slope As Long = 58 ' Long(5): level change a millisecond
Public Const OFS_MMFADE_reserved3 As Long = 78 ' Long: not read
Public Const OFS_MMFADE_base As Long = 82 ' Long(5): level of the segment's line at time 0
Public Const OFS_MMFADE_reserved4 As Long = 102 ' Long: not read
Public Const SIZE_MMFADE As Long = 106

' Patch override of a channel.
Public Type MMPATCH
    bankMsb As Integer ' 0 to 127
    bankLsb As Integer ' 0 to 127
    program As Integer ' 0 to 127, or MMPATCH_NO_OVERRIDE
    keepBank As Integer ' not 0 = the song's banks do not replace these
End Type

' One note replacement of the drum channel; mm_SetReplaceNotes takes ten.
Public Type MMNOTEPAIR
    from As Byte ' note that is replaced, -1 = pair not in use
    to_ As Byte ' note that is sent in its place
End Type

' What the engine found out about a song.
Public Const OFS_MMINFO_title As Long = 0 ' Byte(33): first title line, ends with a zero
Public Const OFS_MMINFO_title2 As Long = 33 ' Byte(33): second title line, ends with a zero
Public Const OFS_MMINFO_firstTempo As Long = 66 ' Long: microseconds per quarter note
' Long: (sharps, or minus flats) << 8 | minor; -1 = none
Public Const OFS_MMINFO_keySignature As Long = 70
Public Const OFS_MMINFO_hasLyrics As Long = 74 ' Integer: 1 = more than four lyrics
Public Const OFS_MMINFO_hasChords As Long = 76 ' Integer: 1 = more than four chords
Public Const SIZE_MMINFO As Long = 78

' One player.
' Long: the player's handle; set at start-up, kept by closing
Public Const OFS_MIDIOUT_hmo As Long = 0
' Long: MMMODE_... of the device; set at start-up, kept by closing
Public Const OFS_MIDIOUT_mode As Long = 4
' Long: MMOPT_... bits of the song; mm_Open, mm_SetOptions
Public Const OFS_MIDIOUT_options As Long = 8
Public Const OFS_MIDIOUT_format As Long = 12 ' Integer: Standard MIDI File format, 0 or 1
' Integer: tracks that the file header declares, 1 to 127
Public Const OFS_MIDIOUT_trackCount As Long = 14
Public Const OFS_MIDIOUT_division As Long = 16 ' Integer: ticks per quarter note, 1 to 960
Public Const OFS_MIDIOUT_info As Long = 18 ' MMINFO: what scanning found out
Public Const OFS_MIDIOUT_fileSize As Long = 96 ' Long: bytes
Public Const OFS_MIDIOUT_fileData As Long = 100 ' Long: the file while it is loaded
Public Const OFS_MIDIOUT_fileMem As Long = 104 ' Long: its memory handle
Public Const OFS_MIDIOUT_reserved1 As Long = 108 ' Byte(6): 0
Public Const OFS_MIDIOUT_eventCapacity As Long = 114 ' Long: events that the event buffer can hold
Public Const OFS_MIDIOUT_reserved2 As Long = 118 ' Byte(4): 0
Public Const OFS_MIDIOUT_eventIndex As Long = 122 ' Long: index of the next event to play
Public Const OFS_MIDIOUT_eventCount As Long = 126 ' Long: events in the list
Public Const OFS_MIDIOUT_eventMem As Long = 130 ' Long: memory handle of the event buffer
Public Const OFS_MIDIOUT_events As Long = 134 ' Long: the event list in time order
Public Const OFS_MIDIOUT_eventEnd As Long = 138 ' Long: next free record while loading
Public Const OFS_MIDIOUT_eventPlay As Long = 142 ' Long: next event to play
' MMPATCH(16): mm_SetPatch; without an override the song's own bank selects
Public Const OFS_MIDIOUT_patch As Long = 146
Public Const OFS_MIDIOUT_volume As Long = 274 ' Integer(16): mm_SetVolume: offset to controller 7
Public Const OFS_MIDIOUT_reverb As Long = 306 ' Integer(16): mm_SetReverb: offset to controller 91
Public Const OFS_MIDIOUT_chorus As Long = 338 ' Integer(16): mm_SetChorus: offset to controller 93
Public Const OFS_MIDIOUT_balance As Long = 370 ' Integer(16): mm_SetBalance: offset to controller 10
Public Const OFS_MIDIOUT_keyShift As Long = 402 ' Integer(16): mm_SetKeyShift: semitones
Public Const OFS_MIDIOUT_velocity As Long = 434 ' Integer(16): mm_SetVelocity: percent
Public Const OFS_MIDIOUT_mute As Long = 466 ' Integer(16): mm_SetMute: not 0 = notes are not sent
' Integer(16): mm_SetNoTranspose: not 0 = not transposed; by output channel
Public Const OFS_MIDIOUT_noTranspose As Long = 498
' Single: mm_SetTempo: percent, positive = faster
Public Const OFS_MIDIOUT_tempoPercent As Long = 530
Public Const OFS_MIDIOUT_transpose As Long = 534 ' Integer: mm_SetTranspose: semitones
' MMPATCH(16): the song's own bank selects while the host's bank is in force
Public Const OFS_MIDIOUT_songPatch As Long = 536
Public Const OFS_MIDIOUT_fadeIn As Long = 664 ' MMFADE: mm_SetFadeIn
Public Const OFS_MIDIOUT_fadeOut As Long = 770 ' MMFADE: mm_SetFadeOut
Public Const OFS_MIDIOUT_eventPos As Long = 876 ' Long: loader: file offset of the current event
Public Const OFS_MIDIOUT_readPos As Long = 880 ' Long: loader: file offset of the next byte to read
Public Const OFS_MIDIOUT_trackTime As Long = 884 ' Long: loader: tick of the current event
Public Const OFS_MIDIOUT_runningStatus As Long = 888 ' Integer: loader: status in force, -1 = none
' Integer: loader: bytes of the last variable-length number
Public Const OFS_MIDIOUT_vlqLength As Long = 890
Public Const OFS_MIDIOUT_reserved3 As Long = 892 ' Byte(2): 0
Public Const OFS_MIDIOUT_tracks As Long = 894 ' Long: track table, one entry a track chunk
Public Const OFS_MIDIOUT_trackMem As Long = 898 ' Long: its memory handle
Public Const OFS_MIDIOUT_lyricMem As Long = 902 ' Long: memory handle of the lyric table
' Long: lyric table of MM_MAX_LYRICS records; record 0 is a line break
Public Const OFS_MIDIOUT_lyrics As Long = 906
Public Const OFS_MIDIOUT_lyricCount As Long = 910 ' Integer: lyrics, the start record included
Public Const OFS_MIDIOUT_lyricIndex As Long = 912 ' Integer: index of the next lyric to announce
Public Const OFS_MIDIOUT_lyricPlay As Long = 914 ' Long: next lyric to announce
Public Const OFS_MIDIOUT_chordMem As Long = 918 ' Long: memory handle of the chord table
' Long: chord table of MM_MAX_CHORDS records; record 0 is a start record
Public Const OFS_MIDIOUT_chords As Long = 922
Public Const OFS_MIDIOUT_chordCount As Long = 926 ' Integer: chords, the start record included
Public Const OFS_MIDIOUT_chordIndex As Long = 928 ' Integer: index of the next chord to announce
Public Const OFS_MIDIOUT_chordPlay As Long = 930 ' Long: next chord to announce
Public Const OFS_MIDIOUT_sysexMem As Long = 934 ' Long: memory handle of the system-exclusive store
' Long: store of MM_MAX_SYSEX messages; 0 without MMINIT_SYSEXSTORE
Public Const OFS_MIDIOUT_sysex As Long = 938
Public Const OFS_MIDIOUT_sysexCount As Long = 942 ' Integer: messages in the store
' Integer: reset messages in the store, counted down by mm_PlayFirstNote
Public Const OFS_MIDIOUT_resetCount As Long = 944
Public Const OFS_MIDIOUT_ticks As Long = 946 ' Long: song position
' Long: microseconds per quarter note * 256, after tempoPercent
Public Const OFS_MIDIOUT_tempo As Long = 950
' Long: division * timer period * 256000, its low 32 bits
Public Const OFS_MIDIOUT_tickStep As Long = 954
' Long: what the clock carries to the next timer period, below tempo
Public Const OFS_MIDIOUT_tickRemainder As Long = 958
Public Const OFS_MIDIOUT_playing As Long = 962 ' Integer: not 0 while the player plays
' MMLOOP(10): play ranges; mm_SetLoop, mm_SetNextLocator
Public Const OFS_MIDIOUT_loops As Long = 964
Public Const OFS_MIDIOUT_map As Long = 1144 ' MMMAP: channel map; mm_GetMap
Public Const OFS_MIDIOUT_loopIndex As Long = 2596 ' Integer: index of the current play range
Public Const OFS_MIDIOUT_curLoop As Long = 2598 ' Long: the current play range
Public Const OFS_MIDIOUT_reserved4 As Long = 2602 ' Byte(4): 0
Public Const OFS_MIDIOUT_loopsSet As Long = 2606 ' Integer: 1 once play ranges were set
Public Const OFS_MIDIOUT_numLoops As Long = 2608 ' Integer: play ranges in use
Public Const OFS_MIDIOUT_endOnBeat As Long = 2610 ' Integer: argument of mm_Open
Public Const OFS_MIDIOUT_markers As Long = 2612 ' Long: marker table of MM_MAX_MARKERS records
Public Const OFS_MIDIOUT_markerMem As Long = 2616 ' Long: its memory handle
Public Const OFS_MIDIOUT_markerCount As Long = 2620 ' Integer: markers
' Long(16): by song channel: the output that its messages go to
Public Const OFS_MIDIOUT_channelDevice As Long = 2622
' Byte(16): by song channel: the MIDI channel that its messages carry
Public Const OFS_MIDIOUT_channelOut As Long = 2686
Public Const OFS_MIDIOUT_click As Long = 2702 ' MMCLICK: metronome
' Integer: beats in a bar of the last time signature played; 4 at first
Public Const OFS_MIDIOUT_beatsPerBar As Long = 2724
' Integer: note value of a beat as a number; 4 at first
Public Const OFS_MIDIOUT_beatUnit As Long = 2726
' Long(4): loader: karaoke text lines of MM_TEXTLINE_SIZE bytes
Public Const OFS_MIDIOUT_textLine As Long = 2728
Public Const OFS_MIDIOUT_textLineIndex As Long = 2744 ' Integer: loader: current text line
' Long: memory handle of the long-message buffer; kept by closing
Public Const OFS_MIDIOUT_longBufferMem As Long = 2746
Public Const OFS_MIDIOUT_longBuffer As Long = 2750 ' Long: the long-message buffer; kept by closing
' Long: memory handle of the long-message header; kept by closing
Public Const OFS_MIDIOUT_longHeaderMem As Long = 2754
Public Const OFS_MIDIOUT_longHeader As Long = 2758 ' Long: the long-message header; kept by closing
Public Const OFS_MIDIOUT_replaceNotes As Long = 2762 ' MMNOTEPAIR(10): mm_SetReplaceNotes
Public Const SIZE_MIDIOUT As Long = 2782

' ---- engine ----

' Opens every MIDI output, binds the players, starts the timer. 1 = done.
Public Declare Function mm_InitEngine Lib "corvmo32.dll" ( _
    settings As Any, player1 As Long, player2 As Long) As Integer

' Stops both players, closes every output, stops the timer.
Public Declare Sub mm_EndEngine Lib "corvmo32.dll" ()

' Code of the last failure (ENGINE_ERR_...), 0 = nothing failed yet.
Public Declare Function mm_GetLastError Lib "corvmo32.dll" () As Long

' The timer's callback, handed to the system. Not for hosts.
Public Declare Sub SyncTimer Lib "corvmo32.dll" ( _
    ByVal timerId As Long, ByVal reserved As Long, ByVal user As Long, ByVal reserved1 As Long, _
    ByVal reserved2 As Long)

' ---- raw output, records and routing ----

' Sends status + data 1 * 256 + data 2 * 65536 to an output. 0 = sent.
Public Declare Function mm_ShortMessage Lib "corvmo32.dll" ( _
    ByVal device As Long, ByVal message As Long) As Long

' Sends a system-exclusive message of 1 to 4096 bytes.
Public Declare Sub mm_LongMessage Lib "corvmo32.dll" ( _
    ByVal player As Long, message As Any, ByVal length As Integer)

' Releases pedals, resets controllers, sends the player's reset message.
Public Declare Sub mm_Reset Lib "corvmo32.dll" (ByVal player As Long)

' Address of player 1's record.
Public Declare Function mm_GetMM1 Lib "corvmo32.dll" () As Long

' Address of player 2's record.
Public Declare Function mm_GetMM2 Lib "corvmo32.dll" () As Long

' Address of the record that the handle selects.
Public Declare Function mm_GetMM Lib "corvmo32.dll" (ByVal player As Long) As Long

' Sends a song channel's messages to another output (0 to 31).
Public Declare Sub mm_SetChannelDevice Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal deviceIndex As Integer, _
    ByVal silence As Integer)

' Sends a song channel's messages on another MIDI channel.
Public Declare Sub mm_SetChannelOut Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal outputChannel As Integer, _
    ByVal silence As Integer)

' Address of the 16 output channels (bytes), by song channel.
Public Declare Function mm_GetChannelOut Lib "corvmo32.dll" (ByVal player As Long) As Long

' Address of the 16 output handles, by song channel.
Public Declare Function mm_GetChannelDevice Lib "corvmo32.dll" (ByVal player As Long) As Long

' ---- song information ----

' Number of events in the player's list.
Public Declare Function mm_GetNumEvents Lib "corvmo32.dll" (ByVal player As Long) As Long

' Address of an event; 0 without a song. The index is not checked.
Public Declare Function mm_GetPointerEvents Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal index As Long) As Long

' Number of lyrics, the start record included.
Public Declare Function mm_GetNumLyrics Lib "corvmo32.dll" (ByVal player As Long) As Integer

' Only lyrics below this count are announced.
Public Declare Sub mm_SetNumLyrics Lib "corvmo32.dll" (ByVal player As Long, ByVal count As Integer)

' Address of a lyric; 0 without a song. The index is not checked.
Public Declare Function mm_GetPointerLyrics Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal index As Integer) As Long

' Number of chords, the start record included.
Public Declare Function mm_GetNumChords Lib "corvmo32.dll" (ByVal player As Long) As Integer

' Only chords below this count are announced.
Public Declare Sub mm_SetNumChords Lib "corvmo32.dll" (ByVal player As Long, ByVal count As Integer)

' Address of a chord; 0 without a song. The index is not checked.
Public Declare Function mm_GetPointerChords Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal index As Integer) As Long

' Number of markers, 0 to 9.
Public Declare Function mm_GetNumMarkers Lib "corvmo32.dll" (ByVal player As Long) As Integer

' Address of a marker; 0 without a song. The index is not checked.
Public Declare Function mm_GetPointerMarkers Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal index As Integer) As Long

' Tempo in force, microseconds per quarter note; 0 without a song.
Public Declare Function mm_GetTempo Lib "corvmo32.dll" (ByVal player As Long) As Long

' Ticks per quarter note; 0 without a song.
Public Declare Function mm_GetUnits Lib "corvmo32.dll" (ByVal player As Long) As Integer

' Song position in ticks.
Public Declare Function mm_GetTicks Lib "corvmo32.dll" (ByVal player As Long) As Long

' Address of the player's song information.
Public Declare Function mm_GetInfo Lib "corvmo32.dll" (ByVal player As Long) As Long

' Replaces the player's options word (MMOPT_... bits).
Public Declare Sub mm_SetOptions Lib "corvmo32.dll" (ByVal player As Long, ByVal options As Long)

' Names the window that receives the notifications; may be 0.
Public Declare Sub mm_SetWindow Lib "corvmo32.dll" (ByVal window As Long)

' The window that receives the notifications.
Public Declare Function mm_GetWindow Lib "corvmo32.dll" () As Long

' ---- channel settings ----

' Overrides a channel's instrument from its next program change on.
Public Declare Sub mm_SetPatch Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, patch As MMPATCH)

' Replaces the ten note replacements of the drum channel. Pass pairs(0).
Public Declare Sub mm_SetReplaceNotes Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, pairs As MMNOTEPAIR, ByVal silence As Integer)

' Added to the channel's controller 7.
Public Declare Sub mm_SetVolume Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer)

' Added to the channel's controller 10.
Public Declare Sub mm_SetBalance Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer)

' Added to the channel's controller 91.
Public Declare Sub mm_SetReverb Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer)

' Added to the channel's controller 93.
Public Declare Sub mm_SetChorus Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer)

' Percent by which the channel's note velocities change.
Public Declare Sub mm_SetVelocity Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer)

' Not 0 = notes on this output channel are never transposed.
Public Declare Sub mm_SetNoTranspose Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal outputChannel As Integer, ByVal value As Integer)

' Not 0 = the channel's notes are not sent.
Public Declare Sub mm_SetMute Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer, _
    ByVal silence As Integer)

' Semitones added to the channel's notes, drum notes included.
Public Declare Sub mm_SetKeyShift Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer, _
    ByVal silence As Integer)

' Semitones added to every note that is not sent on output channel 9.
Public Declare Sub mm_SetTranspose Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal value As Integer, ByVal silence As Integer)

' Transposes both players, after their own transposition.
Public Declare Sub mm_SetMasterTranspose Lib "corvmo32.dll" (ByVal value As Integer)

' Sends words(0) to words(2) now: bank MSB, bank LSB, program. 0 = sent.
Public Declare Function mm_SetMIDIPatch Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, words As Integer) As Long

' Sends controller 7 on the channel's route now. 0 = sent.
Public Declare Function mm_SetMIDIVolume Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer) As Long

' Sends controller 10 on the channel's route now. 0 = sent.
Public Declare Function mm_SetMIDIBalance Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer) As Long

' Sends controller 91 on the channel's route now. 0 = sent.
Public Declare Function mm_SetMIDIReverb Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer) As Long

' Sends controller 93 on the channel's route now. 0 = sent.
Public Declare Function mm_SetMIDIChorus Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal channel As Integer, ByVal value As Integer) As Long

' ---- songs ----

' Loads a song into a player. 1 = loaded, 0 = see mm_GetLastError.
Public Declare Function mm_Open Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal fileName As String, ByVal options As Integer, _
    ByVal noReset As Integer, ByVal endOnBeat As Integer, click As Any) As Integer

' Loads a file for its information and tables only. 1 = loaded.
Public Declare Function mm_Scan Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal fileName As String) As Integer

' Halts the player, frees its song, clears its settings and ranges.
Public Declare Sub mm_Close Lib "corvmo32.dll" (ByVal player As Long)

' ---- channel map ----

' Gathers the channels' state from what the song sets before a tick.
Public Declare Sub mm_CreateMap Lib "corvmo32.dll" (ByVal player As Long, ByVal tick As Long)

' Address of the player's channel map.
Public Declare Function mm_GetMap Lib "corvmo32.dll" (ByVal player As Long) As Long

' Sends the map and moves the player to a tick.
Public Declare Sub mm_SendMap Lib "corvmo32.dll" (ByVal player As Long, ByVal tick As Long)

' ---- transport ----

' Starts or continues playing at the song position.
Public Declare Sub mm_StartSync Lib "corvmo32.dll" (ByVal player As Long)

' The same as mm_StartSync.
Public Declare Sub mm_ReStartSync Lib "corvmo32.dll" (ByVal player As Long)

' Halts the player where it stands and silences its routes.
Public Declare Sub mm_StopSync Lib "corvmo32.dll" (ByVal player As Long)

' Halts the player where it stands and silences its routes.
Public Declare Sub mm_PauseSync Lib "corvmo32.dll" (ByVal player As Long)

' Sends the set-up and stands on the first note. 1 = there is one.
Public Declare Function mm_PlayFirstNote Lib "corvmo32.dll" (ByVal player As Long) As Integer

' Tempo to apply now, and from now on percent faster.
Public Declare Sub mm_SetTempo Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal songTempo As Long, ByVal percent As Single)

' Installs the ten play ranges; 0 = the whole song.
Public Declare Sub mm_SetLoop Lib "corvmo32.dll" (ByVal player As Long, table As Any)

' Moves the end of the range now playing, and says where to go on.
Public Declare Sub mm_SetNextLocator Lib "corvmo32.dll" ( _
    ByVal player As Long, ByVal newEnd As Long, ByVal nextStart As Long)

' Halts the player and puts its position to 0.
Public Declare Sub mm_RewindSync Lib "corvmo32.dll" (ByVal player As Long)

' Starts a fade-in.
Public Declare Sub mm_SetFadeIn Lib "corvmo32.dll" (ByVal player As Long, fade As Any)

' Starts a fade-out.
Public Declare Sub mm_SetFadeOut Lib "corvmo32.dll" (ByVal player As Long, fade As Any)

' ---- the lock that MMINIT.lock names: SIZE_LOCK bytes ----

Public Const SIZE_LOCK As Long = 24
Public Declare Sub InitializeCriticalSection Lib "kernel32" (section As Any)
Public Declare Sub DeleteCriticalSection Lib "kernel32" (section As Any)
Public Declare Sub EnterCriticalSection Lib "kernel32" (section As Any)
Public Declare Sub LeaveCriticalSection Lib "kernel32" (section As Any)

' ---- reading records in place ----

Private Declare Sub CopyMemory Lib "kernel32" Alias "RtlMoveMemory" ( _
    destination As Any, source As Any, ByVal length As Long)

Public Function PeekByte(ByVal address As Long) As Byte
    Dim value As Byte
    CopyMemory value, ByVal address, 1
    PeekByte = value
End Function

Public Function PeekInteger(ByVal address As Long) As Integer
    Dim value As Integer
    CopyMemory value, ByVal address, 2
    PeekInteger = value
End Function

' A 16-bit field as 0 to 65535.
Public Function PeekWord(ByVal address As Long) As Long
    Dim value As Long
    CopyMemory value, ByVal address, 2
    PeekWord = value
End Function

Public Function PeekLong(ByVal address As Long) As Long
    Dim value As Long
    CopyMemory value, ByVal address, 4
    PeekLong = value
End Function

Public Function PeekSingle(ByVal address As Long) As Single
    Dim value As Single
    CopyMemory value, ByVal address, 4
    PeekSingle = value
End Function

' The text in a field of that many bytes, in the system's code page.
Public Function PeekText(ByVal address As Long, ByVal size As Long) As String
    Dim bytes() As Byte
    Dim text As String
    Dim ending As Long
    ReDim bytes(0 To size - 1)
    CopyMemory bytes(0), ByVal address, size
    text = StrConv(bytes, vbUnicode)
    ending = InStr(text, vbNullChar)
    If ending > 0 Then text = Left$(text, ending - 1)
    PeekText = text
End Function

Public Function ReadEvent(ByVal player As Long, ByVal index As Long) As MMEVENT
    Dim value As MMEVENT
    CopyMemory value, ByVal mm_GetPointerEvents(player, index), LenB(value)
    ReadEvent = value
End Function

Public Function LyricTime(ByVal player As Long, ByVal index As Integer) As Long
    LyricTime = PeekLong(mm_GetPointerLyrics(player, index))
End Function

' A line break reads as vbCr.
Public Function LyricText(ByVal player As Long, ByVal index As Integer) As String
    LyricText = PeekText(mm_GetPointerLyrics(player, index) + 4, 80)
End Function

Public Function ChordTime(ByVal player As Long, ByVal index As Integer) As Long
    ChordTime = PeekLong(mm_GetPointerChords(player, index))
End Function

Public Function ChordText(ByVal player As Long, ByVal index As Integer) As String
    ChordText = PeekText(mm_GetPointerChords(player, index) + 4, 16)
End Function

Public Function MarkerTime(ByVal player As Long, ByVal index As Integer) As Long
    MarkerTime = PeekLong(mm_GetPointerMarkers(player, index))
End Function

Public Function MarkerText(ByVal player As Long, ByVal index As Integer) As String
    MarkerText = PeekText(mm_GetPointerMarkers(player, index) + 4, 80)
End Function

Public Function SongTitle(ByVal player As Long) As String
    SongTitle = PeekText(mm_GetInfo(player) + OFS_MMINFO_title, 33)
End Function

Public Sub ReadMap(ByVal player As Long, map As MMMAP)
    CopyMemory map, ByVal mm_GetMap(player), LenB(map)
End Sub

' ---- building what the engine takes ----

Public Sub PutInteger(bytes() As Byte, ByVal offset As Long, ByVal value As Integer)
    CopyMemory bytes(offset), value, 2
End Sub

Public Sub PutLong(bytes() As Byte, ByVal offset As Long, ByVal value As Long)
    CopyMemory bytes(offset), value, 4
End Sub

' The settings of mm_InitEngine. sectionAddress: VarPtr of the initialised lock's first byte.
' textAddress: VarPtr of the first of 1024 bytes, 0 = no init text.
Public Function MakeInit(ByVal window As Long, ByVal sectionAddress As Long, _
    ByVal timerPeriod As Integer, ByVal flags As Integer, _
    Optional ByVal deviceIndex1 As Long = 0, Optional ByVal deviceIndex2 As Long = 0, _
    Optional ByVal mode1 As Integer = 0, Optional ByVal mode2 As Integer = 0, _
    Optional ByVal resetGap As Integer = 0, Optional ByVal noChase As Integer = 0, _
    Optional ByVal sendInitText As Integer = 0, Optional ByVal textAddress As Long = 0, _
    Optional ByVal firstNoteDelay As Long = 0, Optional ByVal eventGap As Long = 0) As Byte()
    Dim bytes() As Byte
    ReDim bytes(0 To SIZE_MMINIT - 1)
    PutLong bytes, OFS_MMINIT_hwnd, window
    PutInteger bytes, OFS_MMINIT_timerPeriod, timerPeriod
    PutLong bytes, OFS_MMINIT_deviceIndex1, deviceIndex1
    PutLong bytes, OFS_MMINIT_deviceIndex2, deviceIndex2
    PutInteger bytes, OFS_MMINIT_mode1, mode1
    PutInteger bytes, OFS_MMINIT_mode2, mode2
    PutInteger bytes, OFS_MMINIT_flags, flags
    PutInteger bytes, OFS_MMINIT_resetGap, resetGap
    PutInteger bytes, OFS_MMINIT_noChase, noChase
    PutLong bytes, OFS_MMINIT_lock, sectionAddress
    PutInteger bytes, OFS_MMINIT_sendInitText, sendInitText
    PutLong bytes, OFS_MMINIT_initSysExText, textAddress
    PutLong bytes, OFS_MMINIT_firstNoteDelay, firstNoteDelay
    PutLong bytes, OFS_MMINIT_eventGap, eventGap
    MakeInit = bytes
End Function

' The metronome of mm_Open, switched on.
Public Function MakeClick(ByVal device As Integer, ByVal channel As Integer, _
    ByVal accentNote As Integer, ByVal accentVelocity As Integer, _
    ByVal note As Integer, ByVal velocity As Integer) As Byte()
    Dim bytes() As Byte
    ReDim bytes(0 To SIZE_MMCLICK - 1)
    PutInteger bytes, OFS_MMCLICK_clickOn, 1
    PutInteger bytes, OFS_MMCLICK_clickDevice, device
    PutInteger bytes, OFS_MMCLICK_clickChannel, channel
    PutInteger bytes, OFS_MMCLICK_clickAccentNote, accentNote
    PutInteger bytes, OFS_MMCLICK_clickAccentVelocity, accentVelocity
    PutInteger bytes, OFS_MMCLICK_clickNote, note
    PutInteger bytes, OFS_MMCLICK_clickVelocity, velocity
    MakeClick = bytes
End Function

' A table for mm_SetLoop, no range in use yet; PutLoop fills its ranges from index 0 on.
Public Function MakeLoops() As Byte()
    Dim bytes() As Byte
    Dim index As Long
    ReDim bytes(0 To MM_MAX_LOOPS * SIZE_MMLOOP - 1)
    For index = 0 To MM_MAX_LOOPS - 1
        PutLong bytes, index * SIZE_MMLOOP + OFS_MMLOOP_start, MMLOOP_UNUSED
    Next index
    MakeLoops = bytes
End Function

Public Sub PutLoop(loops() As Byte, ByVal index As Long, ByVal firstTick As Long, _
    ByVal lastTick As Long, ByVal repeats As Integer, Optional ByVal endLocked As Integer = 0)
    Dim place As Long
    place = index * SIZE_MMLOOP
    PutInteger loops, place + OFS_MMLOOP_endLocked, endLocked
    PutLong loops, place + OFS_MMLOOP_start, firstTick
    PutLong loops, place + OFS_MMLOOP_end, lastTick
    PutInteger loops, place + OFS_MMLOOP_repeats, repeats
End Sub

' A straight fade from one loudness to another, in percent, for mm_SetFadeIn and mm_SetFadeOut.
' Levels are whole 1/1024 percents, so the slope is rounded towards 0.
Public Function MakeFade(ByVal milliseconds As Long, ByVal fromPercent As Long, _
    ByVal toPercent As Long) As Byte()
    Dim bytes() As Byte
    Dim segment As Long
    Dim slope As Long
    slope = (toPercent - fromPercent) * 1024 \ milliseconds
    ReDim bytes(0 To SIZE_MMFADE - 1)
    For segment = 0 To 4
        PutLong bytes, OFS_MMFADE_segmentEnd + 4 * segment, milliseconds
        PutLong bytes, OFS_MMFADE_slope + 4 * segment, slope
        PutLong bytes, OFS_MMFADE_base + 4 * segment, fromPercent * 1024
    Next segment
    MakeFade = bytes
End Function
