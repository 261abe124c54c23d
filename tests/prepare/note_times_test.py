#!/usr/bin/env python3
"""Note times of mended songs in seconds, read by midicsv: those of the song before it was broken.
note_times_test.py PREPARE_FILE SONG_FOLDER"""

import bisect
import collections
import csv
import functools
import os
import pathlib
import random
import struct
import subprocess
import sys
import tempfile
import unittest

FRAME_RATES = {24: 24, 25: 25, 29: 30000 / 1001, 30: 30}
DEFAULT_TEMPO = 500000


def run_on_bytes(command, data):
    """The output file's bytes, or the output's lines where the command has no second file."""
    with tempfile.TemporaryDirectory() as folder:
        source, target = pathlib.Path(folder, "in"), pathlib.Path(folder, "out")
        source.write_bytes(data)
        done = subprocess.run([*command, source, target], capture_output=True, check=False)
        if done.returncode != 0:
            raise AssertionError(f"{command[0]}: {done.stderr.decode(errors='replace')}")
        return target.read_bytes(), done.stdout.decode().splitlines()


def prepare(data):
    return run_on_bytes([TOOL], data)


@functools.lru_cache(maxsize=64)
def tracks_of(data):
    """For each track (tick, type, fields) of its notes, tempos and end."""
    text = run_on_bytes(["midicsv"], data)[0].decode("latin-1")
    tracks = {}
    for row in csv.reader(text.splitlines(), skipinitialspace=True):
        if row[2] in ("Note_on_c", "Note_off_c", "Tempo", "End_track"):
            tracks.setdefault(int(row[0]), []).append((int(row[1]), row[2], [int(f) for f in row[3:]]))
    return [tracks[number] for number in sorted(tracks)]


def is_on(event):
    return event[1] == "Note_on_c" and event[2][2] > 0


def clock(tempos, division):
    """A function from ticks to seconds."""
    if division & 0x8000:
        rate = FRAME_RATES[256 - (division >> 8)] * (division & 0xFF)
        return lambda tick: tick / rate

    ticks, starts, lengths = [0], [0.0], [DEFAULT_TEMPO / 1e6 / division]
    for tick, tempo in sorted(tempos, key=lambda tempo: tempo[0]):
        starts.append(starts[-1] + (tick - ticks[-1]) * lengths[-1])
        ticks.append(tick)
        lengths.append(tempo / 1e6 / division)

    def seconds(tick):
        at = bisect.bisect_right(ticks, tick) - 1
        return starts[at] + (tick - ticks[at]) * lengths[at]

    return seconds


def timed_notes(tracks, division, start=0.0):
    seconds = clock([(e[0], e[2][0]) for t in tracks for e in t if e[1] == "Tempo"], division)
    notes = [[(start + seconds(e[0]), e[2][0], e[2][1], is_on(e)) for e in t if "Note" in e[1]] for t in tracks]
    return notes, start + max(seconds(t[-1][0]) for t in tracks)


def notes_by_track(data):
    return timed_notes(tracks_of(data), division_of(data))[0]


def notes_of(data):
    return [note for track in notes_by_track(data) for note in track]


def by_kind(notes):
    """The times of each channel, key and on or off."""
    times = collections.defaultdict(list)
    for time, *kind in notes:
        times[tuple(kind)].append(time)
    return {kind: sorted(values) for kind, values in times.items()}


def division_of(data):
    return struct.unpack(">H", data[12:14])[0]


def one_tick(data):
    """Seconds, at the song's slowest: half of it for an event, half for the tempos before it."""
    tempos = [e[2][0] for t in tracks_of(data) for e in t if e[1] == "Tempo"]
    return max(tempos, default=DEFAULT_TEMPO) / 1e6 / division_of(data)


def rewritten(data, change_row):
    """The song with each line of its text form changed."""
    text = run_on_bytes(["midicsv"], data)[0].decode("latin-1")
    rows = [change_row(line.split(", ")) for line in text.splitlines()]
    return run_on_bytes(["csvmidi"], "\n".join(", ".join(r) for r in rows).encode("latin-1"))[0]


def chunks(data):
    """(position, length) of each track's data."""
    found, position = [], 14
    while position < len(data):
        length = struct.unpack(">I", data[position + 4:position + 8])[0]
        found.append((position + 8, length))
        position += 8 + length
    return found


def in_parts(body):
    """A track's bytes, its system-exclusive messages of one length byte cut into two parts."""
    result, position = b"", 0
    while (at := body.find(b"\x00\xf0", position)) >= 0:
        length = body[at + 2]
        whole = 4 < length < 0x80 and body[at + 2 + length] == 0xF7
        end = at + 3 + length if whole else at + 2
        result += body[position:at]
        result += (b"\x00\xf0\x03" + body[at + 3:at + 6] + b"\x00\xf7" + bytes([length - 3]) +
                   body[at + 6:end]) if whole else body[at:end]
        position = end
    return result + body[position:]


def songs_in(folder):
    return sorted(p for p in pathlib.Path(folder).iterdir() if p.suffix in (".mid", ".kar"))


def with_each_song(test, songs=lambda: SONGS):
    def run(self):
        for path in songs():
            with self.subTest(song=path.name):
                test(self, path.read_bytes())
    return run


def with_each_own_song(test):
    return with_each_song(test, lambda: OWN_SONGS)


class NoteTimes(unittest.TestCase):
    def expect_same_times(self, before, after, tolerance=1e-6):
        before, after = by_kind(before), by_kind(after)
        self.assertEqual({k: len(v) for k, v in before.items()}, {k: len(v) for k, v in after.items()})
        for kind, times in before.items():
            for one, other in zip(times, after[kind]):
                self.assertAlmostEqual(one, other, delta=tolerance, msg=kind)

    def expect_mended(self, broken, intact):
        result, notes = prepare(broken)
        self.assertTrue(notes)
        rounded = 0 < division_of(intact) < 0x8000 and division_of(intact) != division_of(result)
        self.expect_same_times(notes_of(intact), notes_of(result), one_tick(result) if rounded else 1e-6)

    @with_each_song
    def test_wrappings_lengths_and_counts(self, data):
        body = data[14:]
        self.expect_mended(b"RIFF" + struct.pack("<I", len(data) + 12) + b"RMIDdata" +
                           struct.pack("<I", len(data)) + data, data)
        self.expect_mended(bytes(128) + data, data)
        self.expect_mended(data[:4] + struct.pack(">I", 9) + data[8:14] + b"abc" + body, data)
        for at in [14, *(begin + length for begin, length in chunks(data)[:-1])]:
            self.expect_mended(data[:at] + b"XFIH\0\0\0\3abc" + data[at:], data)
        for count in (0, 50, 60000):
            self.expect_mended(data[:10] + struct.pack(">H", count) + data[12:], data)
        for begin, length in chunks(data):
            for wrong in (0, length - 5, length + 7, 0xFFFFFFFF):
                self.expect_mended(data[:begin - 4] + struct.pack(">I", wrong) + data[begin:], data)

    @with_each_song
    def test_missing_ends_and_messages_in_parts(self, data):
        for begin, length in chunks(data):
            end = begin + length
            self.expect_mended(data[:begin - 4] + struct.pack(">I", length - 4) + data[begin:end - 4] + data[end:], data)
        head, body = data[:begin - 4], data[begin:]
        parts = in_parts(body)
        if parts != body:
            self.expect_mended(head + struct.pack(">I", len(parts)) + parts, data)

    @with_each_song
    def test_fine_divisions(self, data):
        old = division_of(data)
        for division in (2 * 960, 1024, 1100, 15360, 32767):
            def finer(row):
                if row[2] == "Header":
                    return row[:5] + [str(division)]
                return [row[0], str(int(row[1]) * division // old)] + row[2:]

            fine = rewritten(data, finer)
            result, _ = prepare(fine)
            self.assertLessEqual(division_of(result), 960)
            self.expect_same_times(notes_of(fine), notes_of(result), one_tick(result))

    @with_each_song
    def test_video_frames(self, data):
        for division in (0xE728, 0xE250, 0xE804, 0xE3FD):
            framed = data[:12] + struct.pack(">H", division) + data[14:]
            self.expect_mended(framed, framed)

    @with_each_song
    def test_sequences(self, data):
        expected, start = [], 0.0
        division = division_of(data)
        for track in tracks_of(data):
            notes, start = timed_notes([track], division, start)
            expected += notes[0]
        result, _ = prepare(data[:8] + b"\0\2" + data[10:])
        self.assertEqual(len(tracks_of(result)), 1)
        rounded = division != division_of(result)
        self.expect_same_times(expected, notes_of(result), one_tick(result) if rounded else 1e-6)

    def test_more_tracks_than_can_be_played(self):
        data = next(p for p in SONGS if p.suffix == ".kar").read_bytes()
        count = len(chunks(data))
        self.expect_mended(data[:10] + struct.pack(">H", 30 * count) + data[12:14] + 30 * data[14:],
                           data[:10] + struct.pack(">H", 30 * count) + data[12:14] + 30 * data[14:])

    @with_each_song
    def test_cut_off_songs_keep_what_is_there(self, data):
        whole = notes_by_track(prepare(data)[0])
        for part in range(1, 13):
            cut = data[:len(data) * part // 13]
            complete = sum(begin + length <= len(cut) for begin, length in chunks(data))
            kept = notes_by_track(prepare(cut)[0])
            ons = [n for n in kept[complete] if n[3]] if len(kept) > complete else []
            for before, after in zip(whole[:complete], kept):
                # A tempo that was cut away moves what comes behind it, in seconds.
                self.assertEqual([n[1:] for n in before], [n[1:] for n in after])
            if ons:
                self.assertEqual([n[1:] for n in ons],
                                 [n[1:] for n in whole[complete] if n[3]][:len(ons)])
                self.assertFalse({n[1:3] for n in kept[complete] if n[3]} -
                                 {n[1:3] for n in kept[complete] if not n[3]})

    @with_each_own_song
    def test_damage_in_a_track_costs_little_of_it(self, data):
        begin, length = max(chunks(data), key=lambda c: c[1])
        index = chunks(data).index((begin, length))
        whole = notes_by_track(prepare(data)[0])
        places = [i for i in range(begin, begin + length) if data[i] & 0xF0 == 0x90]
        for seed in range(10):
            at = random.Random(seed).choice(places)
            kept = notes_by_track(prepare(data[:at] + b"\xf4" + data[at + 1:])[0])
            self.assertEqual(whole[:index] + whole[index + 1:], kept[:index] + kept[index + 1:])
            same = {n for n in kept[index] if n[3]} & {n for n in whole[index] if n[3]}
            self.assertGreater(len(same), 0.95 * sum(n[3] for n in whole[index]), f"seed {seed}")


if __name__ == "__main__":
    TOOL = sys.argv[1]
    OWN_SONGS = songs_in(sys.argv[2])
    SONGS = OWN_SONGS + (songs_in(os.environ["CORVMO_SONG_DIR"]) if os.environ.get("CORVMO_SONG_DIR") else [])
    unittest.main(argv=sys.argv[:1])
