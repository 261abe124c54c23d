#!/usr/bin/env python3
"""Plays a song and prints its words as they come.

    play.py SONG [--library PATH] [--encoding NAME] [--device N]
"""

import argparse
import ctypes
import os
import sys

import corvmo32
from corvmo32 import HMIDIOUT, MMINIT


class LinuxWindow:
    """Receives the notifications."""

    def __init__(self, engine):
        self._engine = engine
        self.handle = engine.corvmo_CreateWindow()

    def messages(self):
        message = corvmo32.corvmo_message()
        while self._engine.corvmo_WaitMessage(self.handle, ctypes.byref(message), 0xFFFFFFFF):
            yield message.message, message.wParam, message.lParam

    def close(self):
        self._engine.corvmo_DestroyWindow(self.handle)


class WindowsWindow:
    """The same on Windows: a window that only receives messages."""

    HWND_MESSAGE = -3

    class MSG(ctypes.Structure):
        _fields_ = [
            ("hwnd", ctypes.c_void_p),
            ("message", ctypes.c_uint),
            ("wParam", ctypes.c_size_t),
            ("lParam", ctypes.c_ssize_t),
            ("time", ctypes.c_uint32),
            ("x", ctypes.c_long),
            ("y", ctypes.c_long),
        ]

    def __init__(self, _engine):
        self._user32 = ctypes.windll.user32
        parent = ctypes.c_void_p(self.HWND_MESSAGE)
        self.handle = self._user32.CreateWindowExA(
            0, b"STATIC", None, 0, 0, 0, 0, 0, parent, None, None, None
        )

    def messages(self):
        message = self.MSG()
        while self._user32.GetMessageA(ctypes.byref(message), None, 0, 0) > 0:
            yield message.message, message.wParam, message.lParam

    def close(self):
        self._user32.DestroyWindow(self.handle)


def song_text(raw, encoding):
    text = raw.decode(encoding, "replace")
    return "\n" if text == "\r" else text


def play(engine, window, player, encoding):
    """Plays the open song to its end."""
    engine.mm_SetLoop(player, None)
    engine.mm_PlayFirstNote(player)
    engine.mm_StartSync(player)
    for message, first, _second in window.messages():
        if message == corvmo32.MMN_LYRIC:
            lyric = engine.mm_GetPointerLyrics(player, first).contents
            print(song_text(lyric.text, encoding), end="", flush=True)
        elif message == corvmo32.MMN_END:
            break
    print()


def main():
    options = argparse.ArgumentParser(description="Plays a song and prints its words.")
    options.add_argument("song")
    options.add_argument("--library", dest="engine", help="path of the library")
    options.add_argument("--encoding", default="cp1252", help="of the words (default: %(default)s)")
    options.add_argument("--device", type=int, default=0, help="MIDI output (default: %(default)s)")
    chosen = options.parse_args()

    engine = corvmo32.load(chosen.engine)
    window = (WindowsWindow if sys.platform == "win32" else LinuxWindow)(engine)
    lock = corvmo32.HostLock(engine)
    player, second = HMIDIOUT(), HMIDIOUT()
    settings = MMINIT(
        hwnd=window.handle,
        timerPeriod=5,
        deviceIndex1=chosen.device,
        flags=corvmo32.MMINIT_SYSEXSTORE,
        lock=lock.address,
    )
    started = engine.mm_InitEngine(settings, player, second)
    opened = started and engine.mm_Open(
        player, os.fsencode(chosen.song), corvmo32.MMOPT_LYRICS, 0, 0, None
    )
    if opened:
        play(engine, window, player, chosen.encoding)
        engine.mm_Close(player)
    error = engine.mm_GetLastError()
    engine.mm_EndEngine()
    lock.close()
    window.close()
    if not opened:
        sys.exit(f"{chosen.song}: the engine answers error {error}")


if __name__ == "__main__":
    main()
