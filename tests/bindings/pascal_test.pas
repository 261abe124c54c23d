// The Pascal unit in use. With the argument "sizes" it prints what every record takes; with a song it
// plays that on the manual clock and answers 0 when the engine told of every word and of the end.
program pascal_test;

{$MODE DELPHI}

uses
  corvmo32;

type
  TMessage = record
    message: LongWord;
    wParam: PtrUInt;
    lParam: PtrInt;
    time: QWord;
  end;

function corvmo_CreateWindow: HWND; cdecl; external CorvmoLib;
function corvmo_WaitMessage(window: HWND; out message: TMessage; timeout: LongWord): LongInt; cdecl;
  external CorvmoLib;
procedure corvmo_UseManualClock(start: LongWord); cdecl; external CorvmoLib;
procedure corvmo_AdvanceClock(milliseconds: LongWord); cdecl; external CorvmoLib;
procedure corvmo_SetAudioDriver(name: PAnsiChar); cdecl; external CorvmoLib;
procedure InitializeCriticalSection(section: Pointer); cdecl; external CorvmoLib;

procedure PrintSizes;
begin
  WriteLn('MMMAPCHANNEL ', SizeOf(MMMAPCHANNEL));
  WriteLn('MMMAP ', SizeOf(MMMAP));
  WriteLn('MMINIT ', SizeOf(MMINIT));
  WriteLn('MMEVENT ', SizeOf(MMEVENT));
  WriteLn('MMLYRIC ', SizeOf(MMLYRIC));
  WriteLn('MMMARKER ', SizeOf(MMMARKER));
  WriteLn('MMCHORD ', SizeOf(MMCHORD));
  WriteLn('MMSYSEX ', SizeOf(MMSYSEX));
  WriteLn('MMSYSEXBLOCK ', SizeOf(MMSYSEXBLOCK));
  WriteLn('MMTRACK ', SizeOf(MMTRACK));
  WriteLn('MMCLICK ', SizeOf(MMCLICK));
  WriteLn('MMLOOP ', SizeOf(MMLOOP));
  WriteLn('MMFADE ', SizeOf(MMFADE));
  WriteLn('MMPATCH ', SizeOf(MMPATCH));
  WriteLn('MMNOTEPAIR ', SizeOf(MMNOTEPAIR));
  WriteLn('MMINFO ', SizeOf(MMINFO));
  WriteLn('MIDIOUT ', SizeOf(MIDIOUT));
end;

procedure Expect(condition: Boolean; const what: AnsiString);
begin
  if condition then
    Exit;
  WriteLn('not so: ', what);
  Halt(1);
end;

procedure PlaySong(const fileName: AnsiString);
var
  settings: MMINIT;
  section: array[0..63] of Byte;
  player, second: HMIDIOUT;
  window: HWND;
  posted: TMessage;
  last: PtrUInt;
  ended: Boolean;
begin
  corvmo_UseManualClock(0);
  corvmo_SetAudioDriver('none');
  InitializeCriticalSection(@section);
  window := corvmo_CreateWindow;
  FillChar(settings, SizeOf(settings), 0);
  settings.hwnd := window;
  settings.timerPeriod := 5;
  settings.lock := @section;
  Expect(mm_InitEngine(@settings, @player, @second) = 1, 'the engine starts');
  Expect(mm_Open(player, PAnsiChar(fileName), MMOPT_LYRICS, 0, 0, nil) = 1, 'the song opens');
  mm_SetLoop(player, nil);
  mm_PlayFirstNote(player);
  mm_StartSync(player);
  last := 0;
  ended := False;
  while mm_GetMM(player)^.playing <> 0 do
  begin
    corvmo_AdvanceClock(1000);
    while corvmo_WaitMessage(window, posted, 0) = 1 do
      if posted.message = MMN_LYRIC then
        last := posted.wParam
      else if posted.message = MMN_END then
        ended := posted.wParam = player;
  end;
  Expect(ended, 'the end is told');
  Expect(last = mm_GetNumLyrics(player) - 1, 'the last word is told');
  Expect(mm_GetPointerLyrics(player, 0)^.text[0] = #13, 'the first record is a line break');
  Expect(mm_GetMM(player)^.ticks = mm_GetTicks(player), 'the record holds the position');
  mm_Close(player);
  mm_EndEngine;
end;

begin
  if ParamStr(1) = 'sizes' then
    PrintSizes
  else
    PlaySong(ParamStr(1));
end.
