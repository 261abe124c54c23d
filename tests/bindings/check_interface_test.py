#!/usr/bin/env python3
"""Breaks a copy of each file that states the interface, and expects scripts/check_interface to say so."""

import contextlib
import functools
import importlib
import io
import pathlib
import shutil
import sys
import tempfile
import unittest

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
SCRIPT = TOP / "scripts" / "check_interface"
STATED = ("CMakeLists.txt", "include", "bindings", "engine/corvmo32.def", "platform/linux/include")

CS = "bindings/csharp/Corvmo32.cs"
PASCAL = "bindings/pascal/corvmo32.pas"
VB = "bindings/vb6/Corvmo32.bas"
PYTHON = "bindings/python/corvmo32.py"
DEFINITION = "engine/corvmo32.def"
HEADER = "include/corvmo32.h"
RECORDS = "include/corvmo32_records.h"
LINUX = "platform/linux/include/corvmo32_linux.h"

# File, text in it, what it becomes, and what the check then says.
FAULTS = (
    (
        CS,
        "public uint firstNoteDelay;",
        "public ushort firstNoteDelay;",
        "MMINIT.firstNoteDelay takes 2",
    ),
    (CS, "public int keySignature;", "public uint keySignature;", "MMINFO.keySignature is u4"),
    (CS, "SizeConst = 33", "SizeConst = 32", "MMINFO.title takes 32 bytes"),
    (CS, "Sequential, Pack = 1", "Sequential", "MMMAPCHANNEL is not sequential and packed"),
    (CS, "CallingConvention.StdCall", "CallingConvention.Cdecl", "not imported as StdCall"),
    (CS, "uint songTempo, float", "uint songTempo, double", "cannot be read"),
    (
        CS,
        "FadeOut(IntPtr player, ref MMFADE",
        "FadeOut(IntPtr player, ref MMLOOP",
        "mm_SetFadeOut, argument 2 is *MMLOOP4",
    ),
    (CS, "const int MMN_END = 0x408", "const int MMN_END = 0x407", "constant MMN_END is 1031"),
    (PASCAL, "MMINIT = packed record", "MMINIT = record", "MMINIT is not packed"),
    (PASCAL, "    reserved1: Word; // not read\n", "", "MMINIT.reserved1 is missing"),
    (PASCAL, "    bankMsb: SmallInt;", "    bankMsb: Word;", "MMPATCH.bankMsb is u2"),
    (PASCAL, " songTempo: LongWord;", "", "mm_SetTempo has 2 arguments"),
    (
        PASCAL,
        "mm_Close(player: HMIDIOUT); stdcall",
        "mm_Close(player: HMIDIOUT); cdecl",
        "mm_Close is not stdcall",
    ),
    (PASCAL, "MM_MAX_LYRICS = 1536", "MM_MAX_LYRICS = 1535", "constant MM_MAX_LYRICS is 1535"),
    (VB, "ByVal songTempo As Long", "songTempo As Long", "mm_SetTempo, argument 2 is p4"),
    (
        VB,
        "OFS_MMINIT_lock As Long = 26",
        "OFS_MMINIT_lock As Long = 28",
        "MMINIT.lock takes 4 bytes at 28",
    ),
    (
        VB,
        "MMINIT_flags As Long = 20 ' Integer",
        "MMINIT_flags As Long = 20 ' Long",
        "MMINIT.flags takes 4 bytes",
    ),
    (VB, "    byte3 As Byte", "    byte3 As Integer", "MMEVENT.byte3 takes 2 bytes at 4"),
    (VB, "MMMAP_NONE16 As Long = &HFFFF&", "MMMAP_NONE16 As Long = &HFFFF", "MMMAP_NONE16 is -1"),
    (VB, "SIZE_MMFADE As Long = 106", "SIZE_MMFADE As Long = 108", "MMFADE takes 108 bytes"),
    (VB, "Declare Sub mm_Reset", "Declare Sub mm_Rest", "function mm_Reset is missing"),
    (VB, "\r\n", "\n", "lines that end with CR and LF"),
    (PYTHON, "    _pack_ = 1\n", "    _pack_ = 2\n", "is not packed"),
    (
        PYTHON,
        '("tempoPercent", c_float)',
        '("tempoPercent", c_int32)',
        "MIDIOUT.tempoPercent is s4",
    ),
    (PYTHON, '"mm_GetUnits": (c_int16', '"mm_GetUnits": (c_uint16', "mm_GetUnits answers u2"),
    (
        PYTHON,
        "MMSYSERR_INVALPARAM = 11",
        "MMSYSERR_INVALPARAM = 10",
        "constant MMSYSERR_INVALPARAM is 10",
    ),
    (
        PYTHON,
        '("lParam", c_ssize_t)',
        '("lParam", c_int)',
        "on this machine: corvmo_message.lParam takes 4",
    ),
    (
        PYTHON,
        'UseManualClock": (None, [c_uint32])',
        'UseManualClock": (None, [])',
        "corvmo_UseManualClock has 0 arguments",
    ),
    (DEFINITION, "mm_Scan@8", "mm_Scan@4", "mm_Scan@4: its arguments take 8 bytes"),
    (DEFINITION, "    mm_GetMM2@0\n", "", "mm_GetMM2 is declared in corvmo32.h or listed here"),
    (
        HEADER,
        "const MMLOOP* table)",
        "const MMLOOP* table, int16_t count)",
        "mm_SetLoop has 2 arguments, in the header 3",
    ),
    (
        RECORDS,
        "int16_t playing;",
        "int32_t playing;",
        "MIDIOUT.playing takes 2 bytes at 962, in the header 4",
    ),
    (
        LINUX,
        "AdvanceClock(uint32_t",
        "AdvanceClock(uint64_t",
        "corvmo_AdvanceClock, argument 1 is u4",
    ),
)


def load_script():
    sys.path.insert(0, str(SCRIPT.parent))
    sys.dont_write_bytecode = True
    module = importlib.import_module("interface.ctypes_module").load(SCRIPT)
    compile_headers = module.header.run_compiler

    @functools.cache
    def compiled_once(compiler, source, _contents, folders):
        return compile_headers(compiler, source, folders)

    def run_compiler(compiler, source, folders):
        contents = tuple(path.read_bytes() for folder in folders for path in sorted(folder.glob("*.h")))
        return compiled_once(compiler, source, contents, tuple(folders))

    module.header.run_compiler = run_compiler
    return module


script = load_script()


class CheckInterface(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.copy = pathlib.Path(folder.name)
        for name in STATED:
            source, target = TOP / name, self.copy / name
            target.parent.mkdir(parents=True, exist_ok=True)
            (shutil.copytree if source.is_dir() else shutil.copy)(source, target)

    def check(self):
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = script.main(["--top", str(self.copy)])
        return status, output.getvalue()

    def test_passes_what_agrees(self):
        self.assertEqual(self.check()[0], 0)

    def test_finds_a_fault_in_any_file(self):
        for name, text, broken, complaint in FAULTS:
            with self.subTest(file=name, fault=broken):
                path = self.copy / name
                whole = path.read_bytes()
                self.assertIn(text.encode(), whole)
                path.write_bytes(whole.replace(text.encode(), broken.encode(), 1))
                status, output = self.check()
                path.write_bytes(whole)
                self.assertEqual(status, 1, output)
                self.assertIn(complaint, output)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
