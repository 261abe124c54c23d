"""Builds Standard MIDI Files for the tests of the karaoke player, event by event, at absolute ticks."""

import struct

DIVISION = 480


def variable_length(value):
    groups = [value & 0x7F]
    while value > 0x7F:
        value >>= 7
        groups.append(value & 0x7F | 0x80)
    return bytes(reversed(groups))


class Track:
    """One track chunk; events may be added in any order of ticks."""

    def __init__(self):
        self._events = []

    def event(self, tick, data):
        self._events.append((tick, len(self._events), bytes(data)))
        return self

    def note(self, tick, channel, key, length=240, velocity=100):
        self.event(tick, [0x90 | channel, key, velocity])
        return self.event(tick + length, [0x80 | channel, key, 64])

    def program(self, tick, channel, number):
        return self.event(tick, [0xC0 | channel, number])

    def controller(self, tick, channel, number, value):
        return self.event(tick, [0xB0 | channel, number, value])

    def meta(self, tick, kind, data):
        return self.event(tick, bytes([0xFF, kind]) + variable_length(len(data)) + data)

    def text(self, tick, data):
        return self.meta(tick, 0x01, data)

    def title(self, data):
        return self.meta(0, 0x03, data)

    def lyric(self, tick, data):
        return self.meta(tick, 0x05, data)

    def tempo(self, tick, microseconds):
        return self.meta(tick, 0x51, microseconds.to_bytes(3, "big"))

    def time_signature(self, tick, beats, power):
        return self.meta(tick, 0x58, bytes([beats, power, 24, 8]))

    def data(self):
        result = b""
        before = 0
        for tick, _, data in sorted(self._events):
            result += variable_length(tick - before) + data
            before = tick
        return result + b"\x00\xff\x2f\x00"


def header(tracks, division=DIVISION, form=1):
    return b"MThd" + struct.pack(">IHHH", 6, form, tracks, division)


def chunk(data, tag=b"MTrk", length=None):
    return tag + struct.pack(">I", len(data) if length is None else length) + data


def song(*tracks, division=DIVISION, form=1):
    return header(len(tracks), division, form) + b"".join(chunk(t.data()) for t in tracks)
