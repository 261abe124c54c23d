#!/usr/bin/env python3
"""Plays a song through bindings/python on the manual clock:  python_test.py LIBRARY SONG"""

import ctypes
import os
import sys
import unittest

import corvmo32
from corvmo32 import HMIDIOUT, MMINIT

LIBRARY, SONG = sys.argv[1:3]
NOTE_OFF, NOTE_ON, CONTROLLER, ALL_NOTES_OFF = 0x80, 0x90, 0xB0, 123


class PythonBinding(unittest.TestCase):
    def setUp(self):
        self.engine = engine = corvmo32.load(LIBRARY)
        engine.corvmo_UseManualClock(0)
        self.received = []
        self.output = corvmo32.corvmo_output(name=b"test")
        self.output.short_message = type(self.output.short_message)(self.receive)
        engine.corvmo_SetOutputs(self.output, 1)
        self.lock = corvmo32.HostLock(engine)
        self.window = engine.corvmo_CreateWindow()
        self.player, second = HMIDIOUT(), HMIDIOUT()
        settings = MMINIT(hwnd=self.window, timerPeriod=5, lock=self.lock.address)
        self.assertEqual(engine.mm_InitEngine(settings, self.player, second), 1)

    def tearDown(self):
        self.engine.mm_EndEngine()
        self.engine.corvmo_DestroyWindow(self.window)
        self.lock.close()

    def receive(self, _user, message):
        self.received.append(message.to_bytes(4, "little")[:3])
        return corvmo32.MMSYSERR_NOERROR

    def posted(self):
        message = corvmo32.corvmo_message()
        while self.engine.corvmo_WaitMessage(self.window, message, 0):
            yield message.message, message.wParam

    def test_plays_a_song_and_hears_of_every_word(self):
        engine, player = self.engine, self.player
        options = corvmo32.MMOPT_LYRICS | corvmo32.MMOPT_NOTES
        self.assertEqual(engine.mm_Open(player, os.fsencode(SONG), options, 0, 0, None), 1)
        engine.mm_SetLoop(player, None)
        self.assertEqual(engine.mm_PlayFirstNote(player), 1)
        engine.mm_StartSync(player)
        notifications = []
        while engine.mm_GetMM(player).contents.playing:
            engine.corvmo_AdvanceClock(1000)
            notifications += self.posted()

        self.assertEqual(notifications[-1], (corvmo32.MMN_END, player.value))
        announced = [index for number, index in notifications if number == corvmo32.MMN_LYRIC]
        self.assertEqual(announced, sorted(set(announced)))
        self.assertEqual(announced[-1], engine.mm_GetNumLyrics(player) - 1)
        lyrics = [engine.mm_GetPointerLyrics(player, index).contents for index in announced]
        song = b"".join(lyric.text for lyric in lyrics)
        self.assertIn(b"Daisy, Daisy!\rPlanted one day by a glancing dart,", song)
        self.assertEqual(engine.mm_GetTicks(player), engine.mm_GetMM(player).contents.ticks)
        self.assertEqual(self.sounding(), set())

    def sounding(self):
        notes, begun = set(), 0
        for status, first, second in self.received:
            kind, channel = status & 0xF0, status & 0x0F
            if kind == NOTE_ON and second:
                notes.add((channel, first))
                begun += 1
            elif kind in (NOTE_ON, NOTE_OFF):
                notes.discard((channel, first))
            elif (kind, first) == (CONTROLLER, ALL_NOTES_OFF):
                notes = {note for note in notes if note[0] != channel}
        self.assertGreater(begun, 100)
        return notes

    def test_names_the_reason_when_a_file_is_no_song(self):
        self.assertEqual(self.engine.mm_Scan(self.player, os.fsencode(__file__)), 0)
        self.assertEqual(self.engine.mm_GetLastError(), corvmo32.ENGINE_ERR_FILE)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
