"""Drives the karaoke program as its users do and judges what it prints, logs and leaves behind.

Usage: karaoke_test.py PROGRAM [TESTCASE...]
"""

import os
import pty
import re
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import unittest
import fcntl

from midi_song import DIVISION, Track, chunk, header, song
from terminal_screen import Screen

PROGRAM = ""
TIMEOUT = 60
QUARTER = DIVISION  # ticks
DRUMS = 9


def basic_song():
    """A bar of set-up and four of notes at 120 beats a minute. Channel 1 has a program and a volume,
    channel 2 neither."""
    conductor = Track().title(b"Basic").tempo(0, 500000).time_signature(0, 4, 2)
    band = Track().program(0, 0, 4).controller(0, 0, 7, 90)
    for beat in range(16):
        tick = (beat + 4) * QUARTER
        band.note(tick, 0, 60).note(tick, 1, 48)
        band.note(tick, DRUMS, 36 if beat % 2 == 0 else 38)
    return song(conductor, band)


def sung_song(*texts, chords=(), title=b"Sung", apart=QUARTER):
    """One note and one lyric every so many ticks."""
    words = Track().title(title)
    for number, text in enumerate(texts):
        words.note(number * apart, 0, 60)
        words.lyric(number * apart, text)
    names = Track()
    for tick, name in chords:
        names.text(tick, name)
    return song(words, names)


class Message:
    def __init__(self, line):
        match = re.fullmatch(r"(\d+)\.(\d{3})((?: [0-9A-F]{2})+)(?: ; (\d+))?", line)
        assert match, f"not a line of the log: {line!r}"
        self.microseconds = int(match[1]) * 1000 + int(match[2])
        self.seconds = self.microseconds / 1e6
        self.output = match[4]
        self.data = bytes.fromhex(match[3])
        self.kind = self.data[0] & 0xF0
        self.channel = self.data[0] & 0x0F

    def starts_note(self):
        return self.kind == 0x90 and self.data[2] > 0


class Result:
    def __init__(self, code, out, err):
        self.code = code
        self.out = out
        self.err = err
        self.lines = out.splitlines()


class KaraokeTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="karaoke-test-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.environment = dict(os.environ, LC_ALL="C.UTF-8")

    def path(self, name):
        return os.path.join(self.folder, name)

    def file(self, data, name="song.mid"):
        with open(self.path(name), "wb") as out:
            out.write(data)
        return self.path(name)

    def run_program(self, *arguments, **options):
        done = subprocess.run([PROGRAM, *arguments], capture_output=True, timeout=TIMEOUT,
                              env=self.environment, stdin=subprocess.DEVNULL, check=False, **options)
        return Result(done.returncode, done.stdout.decode(), done.stderr.decode())

    def start_program(self, *arguments):
        process = subprocess.Popen([PROGRAM, *arguments], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, stdin=subprocess.DEVNULL,
                                   env=self.environment)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def log(self, name="log.txt"):
        with open(self.path(name), encoding="ascii") as text:
            return [Message(line) for line in text.read().splitlines()]

    def play(self, data, *options):
        """Plays a song on the manual clock and answers what the output received."""
        result = self.run_program("play", "--fast", "--silent", "--midi-log", self.path("log.txt"),
                                  *options, self.file(data))
        self.assertEqual((result.code, result.err), (0, ""))
        self.result = result
        return self.log()

    def notes(self, messages, channel):
        return [message for message in messages
                if message.starts_note() and message.channel == channel]

    def assert_silent_at_end(self, messages):
        sounding = set()
        for message in messages:
            key = (message.channel, message.data[1]) if len(message.data) == 3 else None
            if message.starts_note():
                sounding.add(key)
            elif message.kind in (0x80, 0x90):
                sounding.discard(key)
            elif message.kind == 0xB0 and message.data[1] == 120:
                sounding = {note for note in sounding if note[0] != message.channel}
        self.assertEqual(sounding, set())
        last_note = max((i for i, message in enumerate(messages) if message.starts_note()), default=0)
        closing = {message.channel for message in messages[last_note:]
                   if message.kind == 0xB0 and message.data[1] == 120}
        self.assertEqual(closing, set(range(16)), "no channel is left without All Sound Off")


class PlayOptions(KaraokeTest):
    """What every option of `play` does to the messages that reach the output."""

    def test_without_options_the_song_plays_as_it_is(self):
        messages = self.play(basic_song())
        for channel in (0, 1, DRUMS):
            notes = self.notes(messages, channel)
            self.assertEqual(len(notes), 16)
            self.assertTrue(all(note.data[2] == 100 and note.output is None for note in notes))
        first = self.notes(messages, 0)[0].microseconds
        for beat, note in enumerate(self.notes(messages, 0)):
            self.assertAlmostEqual(note.microseconds - first, beat * 500000, delta=5000)
        self.assertEqual([m.data for m in messages if m.kind == 0xB0 and m.data[1] == 7],
                         [bytes([0xB0, 7, 90])])
        times = [message.microseconds for message in messages]
        self.assertEqual(times, sorted(times))
        self.assert_silent_at_end(messages)

    def test_the_last_note_rings_before_the_player_closes(self):
        messages = self.play(basic_song())
        last = max(m.microseconds for m in messages if m.kind == 0x80)
        closed = min(m.microseconds for m in messages if m.kind == 0xB0 and m.data[1] == 64)
        self.assertGreater(closed - last, 1000000)
        self.assertLess(closed - last, 3000000)

    def test_transpose_moves_all_notes_but_drums(self):
        messages = self.play(basic_song(), "--transpose", "-5")
        self.assertEqual({n.data[1] for n in self.notes(messages, 0)}, {55})
        self.assertEqual({n.data[1] for n in self.notes(messages, 1)}, {43})
        self.assertEqual({n.data[1] for n in self.notes(messages, DRUMS)}, {36, 38})

    def test_mute_and_solo_leave_out_notes_of_channels(self):
        cases = [(["--mute", "1,10"], {1}), (["--solo", "1,10"], {0, DRUMS}),
                 (["--solo", "1,2", "--mute", "2"], {0})]
        for options, heard in cases:
            with self.subTest(options=options):
                messages = self.play(basic_song(), *options)
                self.assertEqual({m.channel for m in messages if m.starts_note()}, heard)

    def test_volume_changes_a_channel_with_or_without_a_volume_of_its_own(self):
        messages = self.play(basic_song(), "--volume", "1:-20", "--volume", "2:+15")
        volumes = [m.data for m in messages if m.kind == 0xB0 and m.data[1] == 7]
        self.assertEqual(sorted(volumes), [bytes([0xB0, 7, 70]), bytes([0xB1, 7, 115])])
        first = self.notes(messages, 1)[0]
        self.assertLess(messages.index(next(m for m in messages if m.data[:2] == b"\xb1\x07")),
                        messages.index(first))

    def test_patch_replaces_the_programs_of_a_channel_with_or_without_one(self):
        messages = self.play(basic_song(), "--patch", "1:25:1:2", "--patch", "2:128")
        for channel, msb, lsb, program in ((0, 1, 2, 24), (1, 0, 0, 127)):
            with self.subTest(channel=channel + 1):
                first = messages.index(self.notes(messages, channel)[0])
                state = {}
                for message in messages[:first]:
                    if message.channel == channel and message.kind == 0xC0:
                        self.assertEqual((state.get(0), state.get(32)), (msb, lsb))
                        state["program"] = message.data[1]
                    elif message.channel == channel and message.kind == 0xB0:
                        state[message.data[1]] = message.data[2]
                self.assertEqual(state.get("program"), program)

    def test_fade_in_raises_the_notes_in_a_straight_line(self):
        messages = self.play(basic_song(), "--fade-in", "4")
        # A note-on that is faded to nothing is a note-off.
        notes = [m for m in messages if m.kind == 0x90 and m.channel == 0]
        self.assertEqual(len(notes), 16)
        for beat, note in enumerate(notes):
            self.assertAlmostEqual(note.data[2], min(beat * 0.5 / 4, 1) * 100, delta=3)

    def test_fade_out_lowers_the_last_notes_in_a_straight_line(self):
        messages = self.play(basic_song(), "--fade-out", "4")
        end = 7.75  # seconds from the first note-on to the last note-off
        notes = [m for m in messages if m.kind == 0x90 and m.channel == 0]
        self.assertEqual(len(notes), 16)
        for beat, note in enumerate(notes):
            left = min((end - beat * 0.5) / 4, 1)
            self.assertAlmostEqual(note.data[2], left * 100, delta=3)

    def test_a_fade_out_longer_than_the_song_takes_all_of_it(self):
        messages = self.play(basic_song(), "--fade-out", "60")
        loudness = [m.data[2] for m in messages if m.kind == 0x90 and m.channel == 0]
        self.assertEqual(loudness, sorted(loudness, reverse=True))
        self.assertGreater(loudness[0], 95)
        self.assertLess(loudness[-1], 10)

    def test_metronome_clicks_on_every_beat_and_accents_the_first(self):
        plain = self.notes(self.play(basic_song()), DRUMS)
        clicking = self.notes(self.play(basic_song(), "--metronome"), DRUMS)
        clicks = [m.data[1] for m in clicking if m.data[1] in (76, 77)]
        self.assertEqual(clicks[:8], [76, 77, 77, 77] * 2)
        self.assertEqual(len(clicking) - len(clicks), len(plain))

    def test_reset_sends_the_message_that_was_asked_for(self):
        cases = {"gm": "F0 7E 7F 09 01 F7", "gs": "F0 41 10 42 12 40 00 7F 00 41 F7",
                 "xg": "F0 43 10 4C 00 00 7E 00 F7", "none": None}
        for name, wanted in cases.items():
            with self.subTest(reset=name):
                exclusive = [m.data for m in self.play(basic_song(), "--reset", name)
                             if m.data[0] == 0xF0]
                self.assertEqual(exclusive, [bytes.fromhex(wanted)] if wanted else [])

    def test_drums_replaces_drum_notes_only(self):
        messages = self.play(basic_song(), "--drums", "36:41", "--drums", "60:1")
        self.assertEqual({n.data[1] for n in self.notes(messages, DRUMS)}, {41, 38})
        self.assertEqual({n.data[1] for n in self.notes(messages, 0)}, {60})

    def test_tempo_changes_the_speed_and_the_times_shown(self):
        data = sung_song(b"one ", b"two\n", b"three ", b"four")
        for percent, seconds, shown in (("50", 0.25, "0:00.5"), ("-100", 1.0, "0:02.0"),
                                        ("0", 0.5, "0:01.0")):
            with self.subTest(percent=percent):
                notes = self.notes(self.play(data, "--tempo", percent), 0)
                self.assertAlmostEqual(notes[3].seconds - notes[0].seconds, 3 * seconds, delta=0.011)
                self.assertIn(f"[{shown}] three four", self.result.lines)

    def test_period_sets_the_grid_on_which_messages_are_sent(self):
        for period in (1, 20):
            with self.subTest(period=period):
                notes = self.notes(self.play(basic_song(), "--period", str(period)), 1)
                self.assertEqual({n.microseconds % (period * 1000) for n in notes}, {0})
                spread = max(abs(n.microseconds - notes[0].microseconds - i * 500000)
                             for i, n in enumerate(notes))
                self.assertLess(spread, period * 1000 + 1)

    def test_event_gap_spreads_the_set_up_messages(self):
        messages = self.play(basic_song(), "--event-gap", "100")
        set_up = [m.microseconds for m in messages
                  if m.data[0] in (0xC0, 0xB0) and m.data[1] in (4, 7) and m.seconds < 2]
        self.assertEqual(len(set_up), 2)
        self.assertGreaterEqual(set_up[1] - set_up[0], 100000)

    def test_device_is_chosen_by_number_or_name(self):
        for device in ("0", "Software synthesizer", "synth"):
            with self.subTest(device=device):
                messages = self.play(basic_song(), "--device", device)
                self.assertEqual(len(self.notes(messages, 0)), 16)

    def test_songs_follow_each_other(self):
        second = self.file(sung_song(b"la ", b"la", title=b"Second"), "second.mid")
        messages = self.play(basic_song(), second)
        self.assertEqual([line for line in self.result.lines if not line.startswith("[")],
                         ["Second", "Basic"])
        self.assertEqual(len(self.notes(messages, 0)), 16 + 2)
        self.assert_silent_at_end(messages)


class Words(KaraokeTest):
    """Words and chords as pipes get them and as `lyrics` prints them."""

    def shown(self, data, *options):
        path = self.file(data)
        printed = self.run_program("lyrics", *options, path)
        self.assertEqual((printed.code, printed.err), (0, ""))
        played = self.run_program("play", "--fast", "--silent", *options, path)
        self.assertEqual((played.code, played.err), (0, ""))
        self.assertEqual(played.lines[1:], printed.lines, "playing shows what `lyrics` prints")
        return printed.lines

    def test_lines_come_with_their_times_and_chords_in_place(self):
        data = sung_song(b"Row, ", b"row,\n", b"row ", b"your ", b"boat", b"\r", b"gent", b"ly",
                         chords=[(0, b"C"), (3 * QUARTER, b"G7"), (7 * QUARTER, b"F#m7/B"),
                                 (7 * QUARTER, b"no chord here")])
        self.assertEqual(self.shown(data), ["[0:00.0] [C]Row, row,",
                                            "[0:01.0] row [G7]your boat",
                                            "[0:03.0] gent[F#m7/B]ly"])

    def test_words_after_the_last_note_are_shown_at_the_end(self):
        track = Track().title(b"Late").note(0, 0, 60)
        for number, text in enumerate((b"too ", b"late ", b"to ", b"sing")):
            track.lyric(QUARTER * (number + 4), text)
        self.assertEqual(self.shown(song(track)), ["[0:02.0] too late to sing"])

    def test_texts_are_shown_in_the_encoding_that_they_are_in(self):
        cases = [("utf-8", "Frère Jacques, dormez-vous ! 春が来た ", None),
                 ("cp1252", "Schöne Grüße über «Ärger», Fräulein Müßig ", None),
                 ("cp1252", "déjà ", None),
                 ("cp1251", "Пусть бегут неуклюже пешеходы по лужам, а вода по асфальту рекой ", None),
                 ("cp932", "春が来た、春が来た、どこに来た。山に来た、里に来た、野にも来た。", None),
                 ("euc_kr", "나의 살던 고향은 꽃피는 산골 복숭아꽃 살구꽃 아기 진달래 ", None),
                 ("cp1250", "Příliš žluťoučký kůň ", "CP1250"),
                 ("cp437", "Ça va très bien ", "IBM437")]
        for encoding, text, named in cases:
            with self.subTest(encoding=encoding):
                options = ["--encoding", named] if named else []
                # Bytes one by one: a character may be spread over several texts.
                data = sung_song(*[bytes([b]) for b in text.encode(encoding)], apart=48)
                lines = self.shown(data, *options)
                words = " ".join(line.split(" ", 1)[1] for line in lines)
                self.assertEqual(words.replace(" ", ""), text.replace(" ", ""))

    def test_control_characters_never_reach_the_output(self):
        lines = self.shown(sung_song(b"a\x1b[2Jb\x07 ", b"\xc2\x9bc ", "d\u202ee".encode()))
        self.assertEqual(lines, ["[0:00.0] a[2Jb c de"])

    def test_a_song_without_words_shows_its_bars(self):
        result = self.run_program("play", "--fast", "--silent", self.file(basic_song()))
        self.assertEqual(result.lines, ["Basic", "[0:02.0] bar 2"])
        lyrics = self.run_program("lyrics", self.file(basic_song()))
        self.assertEqual((lyrics.code, lyrics.out), (0, ""))
        self.assertIn("neither words nor chords", lyrics.err)


class Info(KaraokeTest):
    def test_info_tells_facts_about_a_song(self):
        conductor = Track().title(b"Facts").tempo(0, 400000).time_signature(0, 3, 2)
        conductor.meta(0, 0x59, bytes([0xFE, 1])).meta(960, 0x06, b"Verse").tempo(1440, 800000)
        band = Track().program(0, 4, 40).program(960, 4, 41)
        for beat in range(6):
            band.note(beat * QUARTER, 4, 60, length=QUARTER).lyric(beat * QUARTER, b"la ")
            band.note(beat * QUARTER, DRUMS, 36, length=QUARTER)
        band.controller(0, 5, 7, 100)
        result = self.run_program("info", self.file(song(conductor, band)))
        self.assertEqual((result.code, result.err), (0, ""))
        text = re.sub(r" +", " ", result.out)
        for fact in ("Title: Facts", "Duration: 0:03.6", "Tempo: 150.00 beats a minute (400000 us per quarter note)", "Bars: 3",
                     "Key: G minor", "Time signature: 3/4", "Lyrics: 6", "Chords: 0", "Markers: 1",
                     "Marker [0:00.8] Verse", "Channel 5: 41 Violin, 42 Viola, 6 notes",
                     "Channel 10 (drums): no program, 6 notes"):
            self.assertIn(fact + "\n", text)
        self.assertNotIn("Channel 6", text)


def hopeless_files():
    """Name, bytes, and what the message must say."""
    good = basic_song()
    return [
        ("empty", b"", "the file is empty"),
        ("text", b"just a text, no song", "not a MIDI file"),
        ("short", good[:10], "cut off: the file ends inside its header"),
        ("tracks0", header(0), "the file has no track"),
        ("status", header(1) + chunk(b"\x00\x40\x40\x00\xff\x2f\x00"), "no event"),
        ("meta", header(1) + chunk(b"\x00\xff\x01\x7fabc"), "no event"),
    ]


def mended_files():
    """Name, bytes, and what the note must say; each holds a note on channel 1."""
    good = basic_song()
    track = chunk(Track().note(0, 0, 60).data())
    return [
        ("riff", b"RIFF\x20\0\0\0RMIDdata" + struct.pack("<I", len(good)) + good, "RIFF"),
        ("format2", header(1, form=2) + track, "format 2"),
        ("smpte", header(1, division=0xE728) + track, "video frames"),
        ("division1024", header(1, division=1024) + track, "1024 ticks"),
        ("tracks128", header(128) + track * 128, "128 tracks"),
        ("cut", good[:-100], "cut off"),
    ]


class BadFiles(KaraokeTest):
    def check(self, path, wanted):
        for command in (["info"], ["lyrics"], ["play", "--fast", "--silent"]):
            with self.subTest(file=os.path.basename(path), command=command[0]):
                result = self.run_program(*command, path)
                self.assertEqual((result.code, result.out), (1, ""))
                self.assertRegex(result.err, r"\Akaraoke: [^\n]+\n\Z")
                self.assertTrue(result.err.startswith(f"karaoke: {path}: "), result.err)
                self.assertIn(wanted, result.err)

    def test_what_cannot_be_mended_is_named(self):
        for name, data, wanted in hopeless_files():
            self.check(self.file(data, name + ".mid"), wanted)

    def test_what_can_be_mended_plays_and_is_told_in_one_line(self):
        self.environment["TMPDIR"] = self.path("tmp")
        os.mkdir(self.path("tmp"))
        for name, data, wanted in mended_files():
            with self.subTest(name):
                path = self.file(data, name + ".mid")
                result = self.run_program("play", "--fast", "--silent", "--midi-log",
                                          self.path("log.txt"), path)
                self.assertEqual(result.code, 0)
                self.assertRegex(result.err, r"\Akaraoke: [^\n]+: mended: [^\n]+\n\Z")
                self.assertIn(wanted, result.err)
                self.assertTrue(self.notes(self.log(), 0))
                self.assertEqual(os.listdir(self.path("tmp")), [])

    def test_what_is_no_file_is_named(self):
        self.check(self.path("nothing.mid"), "no such file")
        for command, wanted in (("info", "is a folder"), ("play", "no song in this folder")):
            result = self.run_program(command, self.folder)
            self.assertEqual((result.code, result.out), (1, ""))
            self.assertIn(wanted, result.err)
        os.mkfifo(self.path("pipe.mid"))
        self.check(self.path("pipe.mid"), "not a regular file")

    def test_bad_files_are_told_apart_and_the_good_one_plays(self):
        names = [self.file(data, name + ".mid") for name, data, _ in hopeless_files()]
        good = self.file(sung_song(b"still ", b"here"), "good.mid")
        result = self.run_program("play", "--fast", "--silent", *names, good, *reversed(names))
        self.assertEqual((result.code, result.lines), (1, ["Sung", "[0:00.0] still here"]))
        messages = result.err.splitlines()
        self.assertEqual(len(messages), 2 * len(names))
        wanted = [case[2] for case in hopeless_files()]
        for message, text in zip(messages, wanted + wanted[::-1]):
            self.assertIn(text, message)


class CommandLine(KaraokeTest):
    def test_bad_options_are_refused_with_one_clear_line(self):
        path = self.file(basic_song())
        font = self.file(b"RIFFxxxxWAVE", "wave.sf2")
        cases = [
            ([], "no command"), (["dance"], "dance"), (["play"], "no song"), (["info"], "FILE"),
            (["play", "--nonsense", path], "--nonsense"),
            (["play", path, "--transpose"], "--transpose"),
            (["play", "--transpose", "25", path], "'25' is not a whole number from -24 to 24"),
            (["play", "--transpose", "1.5", path], "'1.5'"),
            (["play", "--transpose", "", path], "''"),
            (["play", "--mute", "0", path], "'0' is not a channel from 1 to 16"),
            (["play", "--solo", "1,,2", path], "'' is not a channel"),
            (["play", "--volume", "3", path], "CHANNEL:OFFSET"),
            (["play", "--volume", "3:200", path], "'200'"),
            (["play", "--volume", "17:2", path], "'17'"),
            (["play", "--patch", "1:0", path], "'0' is not a whole number from 1 to 128"),
            (["play", "--patch", "1:2:3:4:5", path], "CHANNEL:PROGRAM"),
            (["play", "--patch", "1:2:128", path], "'128'"),
            (["play", "--drums", "35", path], "FROM:TO"),
            (["play", "--drums", "35:128", path], "'128'"),
            (["play", *["--drums", "35:36"] * 11, path], "at most 10"),
            (["play", "--fade-in", "0", path], "'0' is not a number from 0.1 to 100"),
            (["play", "--fade-out", "soon", path], "'soon'"),
            (["play", "--tempo", "100", path], "'100' is not a number from -300 to 90"),
            (["play", "--tempo", "nan", path], "'nan'"),
            (["play", "--reset", "mt32", path], "gm, gs, xg"),
            (["play", "--period", "0", path], "'0'"),
            (["play", "--event-gap", "-1", path], "'-1'"),
            (["play", "--audio", "cassette", path], "'cassette'"),
            (["play", "--audio", "alsa", "--silent", path], "--silent"),
            (["play", "--soundfont", font, path], "is not a sound font"),
            (["play", "--soundfont", self.path("none.sf2"), path], "cannot be read"),
            (["play", "--encoding", "klingon", path], "'klingon'"),
            (["lyrics", "--encoding", "klingon", path], "'klingon'"),
            (["play", "--device", "99", path], "there is no output 99"),
            (["play", "--device", "Wurlitzer", path], "'Wurlitzer'"),
        ]
        for arguments, wanted in cases:
            with self.subTest(arguments=arguments):
                result = self.run_program(*arguments)
                self.assertEqual((result.code, result.out), (2, ""))
                self.assertRegex(result.err, r"\Akaraoke: [^\n]+\n\Z")
                self.assertIn(wanted, result.err)

    def test_help_tells_every_option_in_lines_that_fit(self):
        result = self.run_program("play", "--help")
        self.assertEqual((result.code, result.err), (0, ""))
        for option in ("device", "list-devices", "transpose", "mute", "solo", "volume", "patch",
                       "fade-in", "fade-out", "metronome", "reset", "drums", "tempo", "midi-log", "audio",
                       "silent", "soundfont", "period", "event-gap", "fast", "encoding",
                       "loop", "from", "practice", "shuffle", "repeat", "together", "plain",
                       "offset", "remember", "forget"):
            self.assertRegex(result.out, rf"(?m)^  --{option} ")
        for command in ("", "play", "lyrics", "info", "devices"):
            told = self.run_program(*command.split(), "--help")
            self.assertEqual(told.code, 0)
            self.assertLess(max(map(len, told.lines)), 80)

    def test_version_and_devices_are_printed(self):
        self.assertRegex(self.run_program("--version").out, r"\Akaraoke \d+\.\d+\.\d+\n\Z")
        for arguments in (["devices"], ["--list-devices"], ["play", "--list-devices"]):
            result = self.run_program(*arguments)
            self.assertEqual(result.code, 0)
            self.assertEqual(result.lines[0], " 0  Software synthesizer")


class Endings(KaraokeTest):
    """The program's end before the song's end."""

    def start_song(self, data, *options):
        process = self.start_program("play", "--silent", "--midi-log", self.path("log.txt"), *options,
                                     self.file(data))
        # The title is out once the song is open, so that there is something to end.
        self.assertTrue(process.stdout.readline())
        return process

    def long_song(self):
        return sung_song(*[b"la "] * 600)

    def test_signals_silence_close_and_end_with_their_code(self):
        for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143), (signal.SIGHUP, 129)):
            with self.subTest(signal=number.name):
                second = self.file(sung_song(b"never"), "second.mid")
                process = self.start_song(self.long_song(), second)
                process.send_signal(number)
                out, err = process.communicate(timeout=TIMEOUT)
                self.assertEqual((process.returncode, err), (code, b""))
                self.assertNotIn(b"never", out)
                self.assert_silent_at_end(self.log())

    def test_a_signal_ends_the_wait_before_the_first_note(self):
        track = Track().title(b"Slow")
        for number in range(600):
            track.controller(0, number % 16, 7, 100)
        track.note(QUARTER, 0, 60)
        process = self.start_song(song(track), "--event-gap", "1000")
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=TIMEOUT)  # the wait itself would take ten minutes
        self.assertEqual(process.returncode, 130)
        silenced = {m.channel for m in self.log() if m.kind == 0xB0 and m.data[1] == 120}
        self.assertEqual(silenced, set(range(16)))

    def test_a_reader_that_goes_away_ends_the_program_in_silence(self):
        # More words than a pipe holds: the program cannot finish before its reader has gone.
        process = self.start_song(sung_song(*[b"la " * 20 + b"\n"] * 1500), "--fast")
        process.stdout.close()
        self.assertEqual(process.wait(timeout=TIMEOUT), 1)
        self.assertEqual(process.stderr.read(), b"")
        self.assert_silent_at_end(self.log())

    def test_files_that_take_no_more_are_reported(self):
        path = self.file(sung_song(b"la ", b"la"))
        with open("/dev/full", "wb") as full:
            for command in (["lyrics"], ["info"], ["play", "--fast", "--silent"]):
                done = subprocess.run([PROGRAM, *command, path], stdout=full, timeout=TIMEOUT,
                                      stderr=subprocess.PIPE, env=self.environment, check=False)
                self.assertEqual(done.returncode, 1)
                self.assertIn(b"standard output cannot be written", done.stderr)
        for log in ("/dev/full", self.path("no/such/folder")):
            result = self.run_program("play", "--fast", "--silent", "--midi-log", log, path)
            self.assertEqual(result.code, 1)
            self.assertIn(f"--midi-log: '{log}' cannot be written", result.err)


class TerminalDisplay(KaraokeTest):
    """What stands on an 80 by 24 screen, frame by frame."""

    def frames(self, data, *options, columns=80, rows=24):
        """Plays a song in a terminal; yields the screen after each frame and at the end."""
        path = self.file(data)
        child, terminal = pty.fork()
        if child == 0:
            os.environ.update(self.environment, TERM="xterm")
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))
            os.execv(PROGRAM, [PROGRAM, "play", "--fast", "--silent", "--plain", *options,
                               path])
        output = b""
        while select.select([terminal], [], [], TIMEOUT)[0]:
            try:
                output += os.read(terminal, 65536)
            except OSError:
                break
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)
        screen = Screen(columns, rows)
        for part in re.split(r"(?<=\x1b\[J)", output.decode()):
            screen.feed(part)
            self.assertEqual((screen.unknown, screen.lost), ([], 0))
            yield screen

    def test_the_sung_part_is_highlighted_and_the_next_line_stands_beneath(self):
        data = sung_song(b"Row, ", b"row,\n", b"row ", b"your ", b"boat\n",
                         chords=[(0, b"C"), (QUARTER, b"G7"), (3 * QUARTER, b"Am"),
                                 (4 * QUARTER, b"F")])
        seen = set()
        for screen in self.frames(data):
            seen.add((screen.line(2), screen.line(3), screen.styled(3, "1;33"), screen.line(4)))
            if screen.line(3):
                self.assertFalse(screen.cursor_shown)
        first, second = "Row, row,", "row your boat"
        self.assertLessEqual({
            ("C    G7", first, "", second), ("C    G7", first, "Row, ", second),
            ("C    G7", first, first, second), ("    Am   F", second, "", ""),
            ("    Am   F", second, "row your ", ""), ("    Am   F", second, second, "")}, seen)

    def test_the_terminal_is_left_as_it_was(self):
        for screen in self.frames(sung_song(b"la ", b"la")):
            last = screen
        self.assertEqual((last.cursor_shown, last.wraps, last.style), (True, True, ""))
        self.assertEqual([line for line in last.lines() if line], ["Sung"])

    def test_wide_characters_keep_chords_over_their_syllables(self):
        data = sung_song("春が".encode(), "来た".encode(), chords=[(QUARTER, b"G")])
        rows = {(screen.line(2), screen.line(3)) for screen in self.frames(data)}
        self.assertIn(("    G", "春が来た"), rows)

    def test_a_chord_within_a_held_syllable_stands_before_the_next_one(self):
        data = sung_song(b"auld ", b"lang ", b"syne",
                         chords=[(0, b"Bb"), (QUARTER * 3 // 2, b"C7"), (QUARTER * 2, b"F")])
        rows = {(screen.line(2), screen.line(3)) for screen in self.frames(data)}
        self.assertIn(("Bb     C7 F", "auld lang syne"), rows)

    def test_a_narrow_screen_shows_every_word_without_damage(self):
        words = [f"word{number:02d} " for number in range(24)]
        shown = set()
        for columns, rows in ((30, 8), (12, 5), (9, 2)):
            with self.subTest(columns=columns, rows=rows):
                shown.clear()
                data = sung_song(*[word.encode() for word in words], chords=[(0, b"C")])
                for screen in self.frames(data, columns=columns, rows=rows):
                    shown.update(" ".join(screen.lines()).split())
                if rows > 4:
                    self.assertLessEqual({word.strip() for word in words}, shown)

    def test_a_song_without_words_shows_time_and_bar(self):
        statuses = {screen.line(2) for screen in self.frames(basic_song())}
        self.assertIn("0:02 / 0:09   bar 2:1   120 bpm   4/4   C major", statuses)
        self.assertIn("0:05 / 0:09   bar 3:3   120 bpm   4/4   C major", statuses)


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
