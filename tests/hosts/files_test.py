"""Drives the commands of the karaoke program that make files and lists: render, lyrics, events, info --json.

Usage: files_test.py PROGRAM [TESTCASE...]
"""

import array
import json
import os
import pty
import re
import signal
import struct
import subprocess
import sys
import unittest
import wave

import karaoke_test
from karaoke_test import DRUMS, QUARTER, KaraokeTest, basic_song, sung_song
from midi_song import Track, song

RATE = 8000  # frames a second: enough to tell sound from silence, and quick
FULL_SCALE = 32767


class FileTest(KaraokeTest):
    def succeed(self, *arguments):
        result = self.run_program(*arguments)
        self.assertEqual((result.code, result.err), (0, ""), arguments)
        return result

    def bytes_of(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def refuse(self, code, wanted, *arguments):
        before = sorted(os.listdir(self.folder))
        result = self.run_program(*arguments)
        self.assertEqual((result.code, result.out), (code, ""), arguments)
        self.assertRegex(result.err, r"\Akaraoke: [^\n]+\n\Z")
        self.assertIn(wanted, result.err)
        self.assertEqual(sorted(os.listdir(self.folder)), before, "nothing is left behind")


class Sound:
    """A WAV file of 16 bits and two channels."""

    def __init__(self, path):
        with wave.open(path) as file:
            assert (file.getnchannels(), file.getsampwidth()) == (2, 2)
            self.rate = file.getframerate()
            self.frames = file.getnframes()
            self.samples = array.array("h", file.readframes(self.frames))
        self.seconds = self.frames / self.rate

    def peak(self, start=0.0, end=None):
        first = round(start * self.rate) * 2
        last = len(self.samples) if end is None else round(end * self.rate) * 2
        return max(map(abs, self.samples[first:last]))


class Render(FileTest):
    """Four bars of notes from 2.0 to 9.75 seconds, unless a test says otherwise."""

    def render(self, data, *options, rate=RATE):
        self.succeed("render", self.file(data), "-o", self.path("out.wav"), "--rate", str(rate), *options)
        return Sound(self.path("out.wav"))

    def test_a_song_becomes_sound_that_keeps_its_times_and_dies_away(self):
        sound = self.render(basic_song())
        self.assertEqual(sound.rate, RATE)
        self.assertLess(sound.peak(0, 1.99), 4, "the words' times count from the song's beginning")
        self.assertGreater(sound.peak(2, 2.2), 1000)
        self.assertGreater(sound.peak(9.5, 9.75), 500)
        self.assertLess(sound.peak(), FULL_SCALE)
        self.assertTrue(9.75 < sound.seconds < 9.75 + 10, sound.seconds)
        self.assertLess(sound.peak(sound.seconds - 0.1), 8)

    def test_formats_hold_the_same_sound_and_the_same_bytes_every_time(self):
        frames = self.render(basic_song()).frames
        path = self.file(basic_song())
        for name, options in (("a.wav", []), ("a.flac", []), ("a.OGG", []), ("odd", ["--format", "flac"])):
            with self.subTest(name=name):
                made = []
                for _ in range(2):
                    self.succeed("render", path, "--output", self.path(name), "--rate", str(RATE), *options)
                    made.append(self.bytes_of(name))
                self.assertEqual(*made)
                if made[0][:4] == b"fLaC":
                    counted = int.from_bytes(made[0][18:26], "big") & 0xFFFFFFFFF
                elif made[0][:4] == b"OggS":
                    last = made[0].rindex(b"OggS")
                    counted = struct.unpack("<q", made[0][last + 6:last + 14])[0]
                else:
                    counted = Sound(self.path(name)).frames
                self.assertEqual(counted, frames)
                self.assertIn(b"Basic", made[0], "the title")
                self.assertEqual(os.stat(self.path(name)).st_mode & 0o400, 0o400)

    def test_tempo_gain_and_rate_do_what_they_say(self):
        plain = self.render(basic_song(), "--tail", "0")
        self.assertAlmostEqual(plain.seconds, 9.75, delta=0.01)
        fast = self.render(basic_song(), "--tail", "0", "--tempo", "50")
        self.assertAlmostEqual(fast.seconds, 9.75 / 2, delta=0.01)
        soft = self.render(basic_song(), "--gain", "-20")
        self.assertAlmostEqual(soft.peak() / plain.peak(), 0.1, delta=0.01)
        self.assertEqual(self.render(basic_song(), "--tail", "0", rate=22050).rate, 22050)

    def test_channels_and_fades_are_heard(self):
        every = ",".join(map(str, range(1, 17)))
        self.assertLess(self.render(basic_song(), "--mute", every).peak(), 4)
        clicks = self.render(basic_song(), "--mute", every, "--metronome")
        for beat in range(16):
            self.assertGreater(clicks.peak(2 + beat / 2, 2.1 + beat / 2), 300)
        self.assertLess(self.render(basic_song(), "--solo", "16").peak(), 4)
        faded = self.render(basic_song(), "--fade-in", "4", "--fade-out", "4")
        middle = faded.peak(5.5, 6.5)
        self.assertLess(faded.peak(2, 2.4), middle / 3)
        self.assertLess(faded.peak(9.3, 9.7), middle / 3)
        plain = self.render(basic_song()).samples
        for change in (["--transpose", "3"], ["--volume", "1:-60"], ["--patch", "1:20"], ["--drums", "36:42"]):
            self.assertNotEqual(self.render(basic_song(), *change).samples, plain, change)

    def test_ranges_are_played_as_often_as_asked(self):
        whole = self.render(basic_song(), "--tail", "0")
        late = self.render(basic_song(), "--tail", "0", "--from", "bar4")  # from 6.0 to 9.75 seconds
        self.assertAlmostEqual(late.seconds, 3.75, delta=0.01)
        self.assertGreater(late.peak(0, 0.1), 1000)
        looped = self.render(basic_song(), "--tail", "0", "--loop", "bar2:bar3x3")  # two seconds, three times
        self.assertAlmostEqual(looped.seconds, 6, delta=0.02)
        self.assertGreater(whole.seconds, looped.seconds)
        self.refuse(1, "behind the song's end", "render", self.path("song.mid"), "-o", self.path("x.wav"), "--from", "bar9")

    def test_a_note_without_an_end_is_faded_when_the_tail_is_over(self):
        endless = Track().title(b"Endless").program(0, 0, 19).controller(0, 0, 64, 127)
        sound = self.render(song(endless.note(0, 0, 60)), "--tail", "3")
        self.assertAlmostEqual(sound.seconds, 0.25 + 3, delta=0.01)
        self.assertGreater(sound.peak(1, 1.2), 500)
        self.assertLess(sound.peak(3.2), sound.peak(1, 1.2) / 10)

    def test_distortion_is_told_with_the_gain_that_avoids_it(self):
        path = self.file(basic_song())
        make = ["render", path, "-o", self.path("loud.wav"), "--rate", str(RATE), "--gain"]
        result = self.run_program(*make, "40")
        self.assertEqual(result.code, 0)
        clean = re.search(r"--gain (-?\d+\.\d) keeps them clean", result.err)
        self.assertEqual(Sound(self.path("loud.wav")).peak(), FULL_SCALE + 1)
        self.succeed(*make, clean[1])
        self.assertGreater(Sound(self.path("loud.wav")).peak(), FULL_SCALE * 0.9)

    def test_a_signal_leaves_what_was_there(self):
        path = self.file(sung_song(*[b"la "] * 1000, apart=4 * QUARTER), "long.mid")
        self.file(b"old", "out.wav")
        process = self.start_program("render", path, "-o", self.path("out.wav"))
        while len(os.listdir(self.folder)) < 3:  # until the temporary file is there
            self.assertIsNone(process.poll())
        process.send_signal(signal.SIGINT)
        out, err = process.communicate(timeout=60)
        self.assertEqual((process.returncode, out, err), (130, b"", b""))
        self.assertEqual(sorted(os.listdir(self.folder)), ["long.mid", "out.wav"])
        self.assertEqual(self.bytes_of("out.wav"), b"old")

    def test_progress_is_shown_on_a_terminal_only(self):
        path = self.file(basic_song())
        child, terminal = pty.fork()
        if child == 0:
            os.execv(karaoke_test.PROGRAM, [karaoke_test.PROGRAM, "render", path, "-o", self.path("out.ogg")])
        output = b""
        try:
            while part := os.read(terminal, 65536):
                output += part
        except OSError:
            pass
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)
        self.assertRegex(output.decode(), r"out\.ogg \[#*\.+\] +\d+ % ")
        self.assertRegex(output.decode(), r"out\.ogg: 0:\d\d\.\d, loudest place -\d+\.\d dB\r\n\Z")

    def test_what_cannot_be_made_is_refused_in_one_line(self):
        path = self.file(basic_song())
        broken = self.file(b"no song at all", "broken.mid")
        out = self.path("out.wav")
        font = self.file(b"RIFFxxxxWAVE", "wave.sf2")
        for code, wanted, *arguments in [
                (2, "--output", path), (2, "not one of wav, flac, ogg", path, "-o", "out"),
                (2, "'mp3' is not one of", path, "-o", "out.mp3"), (2, "'aiff'", path, "-o", out, "--format", "aiff"),
                (2, "'7999' is not a whole number from 8000", path, "-o", out, "--rate", "7999"),
                (2, "'loud'", path, "-o", out, "--gain", "loud"), (2, "'-1'", path, "-o", out, "--tail", "-1"),
                (2, "the song itself", path, "-o", path, "--format", "wav"),
                (2, "not a sound font", path, "-o", out, "--soundfont", font),
                (1, "No such file or directory", path, "-o", self.path("no/such/out.wav")),
                (1, "not a regular file", path, "-o", "/dev/null", "--format", "wav"),
                (1, "not a regular file", path, "-o", self.folder, "--format", "wav"),
                (1, "not a MIDI file", broken, "-o", out), (1, "no such file", self.path("none.mid"), "-o", out)]:
            with self.subTest(arguments=arguments):
                self.refuse(code, wanted, "render", *arguments)


def drifting_song():
    """Syllables of odd lengths at a tempo of no round number; the last one of each line is followed by a pause."""
    track = Track().title("Drift [é]".encode()).tempo(0, 333337)
    tick = 0
    for number in range(60):
        tick += (7 if number % 6 else 4000) + 113 * (number % 5)
        track.lyric(tick, f"{'' if number % 6 else chr(13)}s{number} ".encode())
        track.note(tick, 0, 60, length=5)
    return song(track.text(tick + 1, b"G7").meta(480, 0x06, b"Verse"))


class LyricFiles(FileTest):
    def setUp(self):
        super().setUp()
        self.song = self.file(drifting_song())
        listed = self.succeed("events", self.song).lines[1:]
        rows = [re.fullmatch(r" *(\d+) +([\d.]+) .* lyric +\"(s\d+) \"", line) for line in listed]
        self.times = {row[3]: float(row[2]) for row in rows if row}
        self.assertEqual(len(self.times), 60)

    def lyrics(self, *options):
        return self.succeed("lyrics", self.song, *options).out

    def test_lrc_has_the_time_of_every_syllable(self):
        lines = self.lyrics("--lrc").splitlines()
        self.assertEqual(lines[0], "[ti:Drift (é)]")
        found = {}
        for line in lines[2:]:
            minutes, seconds, words = re.fullmatch(r"\[(\d\d):(\d\d\.\d\d)\](.*)<[\d:.]+>", line).groups()
            parts = re.findall(r"<(\d\d):(\d\d\.\d\d)>([^<]*) ?", words)
            self.assertEqual(parts[0][:2], (minutes, seconds))
            found.update({word.strip(): int(m) * 60 + float(s) for m, s, word in parts})
        self.assert_close(found, self.times)

    def assert_close(self, found, times):
        self.assertEqual(list(found), list(times))
        for name, time in times.items():
            self.assertAlmostEqual(found[name], time, delta=0.0056, msg=name)

    def test_ass_effects_add_up_to_the_times(self):
        found = {}
        for line in self.lyrics("--ass").splitlines():
            if line.startswith("Dialogue: "):
                begin, end, text = re.match(r"Dialogue: 0,([\d:.]+),([\d:.]+),Karaoke,,0,0,0,,(.*)", line).groups()
                at, end = (sum(float(part) * 60 ** i for i, part in enumerate(reversed(time.split(":"))))
                           for time in (begin, end))
                for length, word in re.findall(r"\{\\k(\d+)\}([^{]*)", text):
                    found[word.strip()] = at
                    at += int(length) / 100
                self.assertAlmostEqual(at, end, places=6)
        found.pop("")  # the lead in front of a line
        self.assert_close(found, self.times)

    def test_srt_shows_each_line_while_it_is_sung(self):
        cues = self.lyrics("--srt").strip().split("\n\n")
        self.assertEqual(len(cues), 10)
        last = 0
        for number, cue in enumerate(cues, 1):
            count, times, words = cue.split("\n")
            begin, end = (sum(float(part) * 60 ** i for i, part in enumerate(reversed(time.replace(",", ".").split(":"))))
                          for time in times.split(" --> "))
            self.assertEqual(int(count), number)
            self.assertAlmostEqual(begin, self.times[words.split()[0]], delta=0.001)
            self.assertTrue(last <= begin < end)
            self.assertGreater(end, self.times[words.split()[-1]])
            last = end

    def test_tempo_offset_and_output(self):
        self.succeed("lyrics", self.song, "--lrc", "--tempo", "50", "--offset", "2000", "-o", self.path("out.lrc"))
        begins = re.findall(r"^\[(\d\d):(\d\d\.\d\d)\]", self.bytes_of("out.lrc").decode(), re.MULTILINE)
        shown = [int(m) * 60 + float(s) for m, s in begins]
        wanted = [time / 2 + 2 for time in list(self.times.values())[::6]]
        for one, other in zip(shown, wanted, strict=True):
            self.assertAlmostEqual(one, other, delta=0.0056)
        self.assertEqual(self.lyrics("--srt", "--offset", "-600000").count("00:00:00,000 -->"), 10)

    def test_texts_cannot_be_taken_for_markup(self):
        words = "{\\an8}<b>[00:09.00] a-->b <00:09.00>x\\Ny"
        data = sung_song(words.encode(), title=b"[Ti]tle")
        path = self.file(data, "nasty.mid")
        joiner = "\u2060"
        for form, taken in (("--lrc", r"\[00:09|<00:09"), ("--ass", r"\{\\an8|\\N"), ("--srt", r"<b>|\{\\an8|b?-->b")):
            with self.subTest(form=form):
                text = self.succeed("lyrics", path, form).out
                body = text.splitlines()[-1 if form != "--srt" else 2]
                self.assertNotRegex(body.replace("\\{", "").replace("{\\k", ""), taken)
                shown = re.sub(r"^\[[\d:.]+\]<[\d:.]+>|<[\d:.]+>$|^Dialogue.*?,,0,0,0,,\{\\k\d+\}", "", body)
                self.assertEqual(shown.replace(joiner, "").replace("\\{", "{"), words)

    def test_what_cannot_be_written_is_refused_in_one_line(self):
        silent = self.file(basic_song(), "silent.mid")
        for code, wanted, *arguments in [
                (2, "--srt", self.song, "--lrc", "--srt"), (2, "'1.5'", self.song, "--offset", "1.5"),
                (2, "--output", self.song, "-o", ""), (1, "has no words", silent, "--ass"),
                (1, "No such file", self.song, "-o", self.path("no/such.lrc"))]:
            with self.subTest(arguments=arguments):
                self.refuse(code, wanted, "lyrics", *arguments)


class Lists(FileTest):
    def test_events_tells_every_kind_of_event_in_time_order(self):
        track = Track().title(b"All").tempo(0, 400000).time_signature(0, 3, 2)
        track.event(0, b"\xf0\x05\x7e\x7f\x09\x01\xf7").program(1, 0, 40).controller(2, 0, 7, 90).controller(3, 0, 3, 1)
        track.event(4, [0xE0, 0x00, 0x50]).event(5, [0xA0, 61, 7]).event(6, [0xD0, 9])
        track.note(3 * QUARTER, 0, 61, length=QUARTER).note(3 * QUARTER, DRUMS, 36, length=QUARTER)
        track.lyric(3 * QUARTER, "Dé".encode()).text(4 * QUARTER, b"F#m7").meta(1440, 0x06, b"Verse")
        lines = self.succeed("events", self.file(song(track))).lines
        rows = [re.split(r" {2,}|(?<=\d) +(?=\d+:\d+ )", line.strip()) for line in lines[1:]]
        told = {(int(row[0]), row[-2].split("  ")[-1], row[-1]) for row in rows}
        for row in [(0, "tempo", "150.00 bpm (400000 us)"), (0, "time signature", "3/4"),
                    (0, "exclusive", "F0 7E 7F 09 01 F7"), (1, "program", "41 Violin"),
                    (2, "controller", "7 (volume) = 90"), (3, "controller", "3 = 1"), (4, "pitch bend", "2048"),
                    (5, "key pressure", "C#4 (61) = 7"), (6, "pressure", "9"),
                    (1440, "note on", "C#4 (61) velocity 100"), (1440, "note on", "drum 36 velocity 100"),
                    (1920, "note off", "C#4 (61) velocity 64"), (1440, "lyric", '"Dé"'), (1920, "chord", '"F#m7"'),
                    (1440, "marker", '"Verse"')]:
            self.assertIn(row, told)
        self.assertEqual([int(row[0]) for row in rows], sorted(int(row[0]) for row in rows))
        self.assertRegex("\n".join(lines), r"\n +1440 +1\.200 +2:1 +1 +note on +C#4")
        self.assertRegex("\n".join(lines), r"\n +1920 +1\.600 +2:2 +10 +note off +drum 36")

    def test_info_tells_other_programs_the_same_as_people(self):
        facts = json.loads(self.succeed("info", "--json", self.file(drifting_song())).out)
        self.assertEqual({key: facts[key] for key in ("format", "tracks", "division", "key", "title", "lyrics")},
                         {"format": 1, "tracks": 1, "division": 480, "key": "C major", "title": "Drift [é]",
                          "lyrics": 60})
        self.assertEqual(facts["firstTempo"]["microseconds"], 333337)
        self.assertAlmostEqual(facts["length"]["seconds"], facts["length"]["ticks"] / 480 * 0.333337, places=6)
        self.assertEqual(facts["markers"], [{"ticks": 480, "seconds": 0.333337, "name": "Verse"}])
        self.assertEqual(facts["channels"], [{"channel": 1, "drums": False, "notes": 60, "programs": []}])
        listed = self.succeed("events", self.path("song.mid")).lines[1:]
        self.assertEqual(facts["events"], sum(not re.search(r" (lyric|chord|marker) ", line) for line in listed))

    def test_check_log_finds_stuck_notes_and_what_is_no_log(self):
        self.succeed("play", "--fast", "--midi-log", self.path("log"), self.file(basic_song()))
        self.assertRegex(self.succeed("check-log", self.path("log")).out,
                         r"\A\d+ messages, 0 malformed, 0 notes and pedals left\n\Z")
        for text, wanted in (("0.0 93 3C 64\n1.0 B3 40 7F\n", "still sounding: output 0 channel 3: note 60"),
                             ("0.0 90 3C\n", "line 1: no whole message"),
                             ("0.0 F0 01\n", "line 1: exclusive without its end")):
            with open(self.path("bad"), "w", encoding="ascii") as file:
                file.write(text)
            result = self.run_program("check-log", self.path("bad"))
            self.assertEqual((result.code, result.err), (1, ""))
            self.assertIn(wanted, result.out)
        self.refuse(1, "is none of a MIDI log", "check-log", self.file(basic_song()))


class Manual(FileTest):
    """The manual page and the completion tell the options that the program has."""

    SOURCES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../hosts/karaoke")

    def options_told(self, command):
        out = self.succeed(*command.split(), "--help").out
        self.assertLess(max(map(len, out.splitlines())), 80)
        return set(re.findall(r"^  (?:-\w,)?(--[a-z-]+)", out, re.MULTILINE))

    def completed(self, *words):
        script = '. "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _karaoke "$1"; printf "%s\\n" "${COMPREPLY[@]}"'
        done = subprocess.run(["bash", "-c", script, "bash", f"{self.SOURCES}/karaoke.bash", karaoke_test.PROGRAM, *words],
                              capture_output=True, text=True, check=True, cwd=self.folder, env=self.environment)
        self.assertEqual(done.stderr, "")
        return set(done.stdout.splitlines())

    def test_the_manual_page_has_the_options_of_each_command(self):
        with open(f"{self.SOURCES}/karaoke.1", encoding="ascii") as page:
            sections = re.split(r"^\.S[hs] (.*)\n", page.read(), flags=re.MULTILINE)
        described = {}
        for title, text in zip(sections[1::2], sections[2::2]):
            names = {f"--{name}" for name in re.findall(r"^\.It .*Fl (?:\w , )?-([a-z-]+)", text, re.MULTILINE)}
            commands = re.findall(r"\w+", title.removeprefix("Options of ")) if "Options of" in title else [title]
            for command in commands:
                described.setdefault(command, set()).update(names)
        general = described.pop("OPTIONS")
        self.assertEqual(self.options_told(""), general)
        for command in self.completed(""):
            with self.subTest(command=command):
                told = self.options_told(command) - general
                self.assertEqual(told, described.get(command, set()))

    def test_completion_offers_commands_options_words_and_songs(self):
        for name in ("a song.KAR", "b.mid", "c.txt", "d.sf2"):
            self.file(b"", name)
        os.mkdir(self.path("more"))
        self.assertEqual(self.completed("ev"), {"events"})
        for command in self.completed(""):
            self.assertEqual(self.completed(command, "--"), self.options_told(command))
        self.assertEqual(self.completed("play", ""), {"a song.KAR", "b.mid", "more"})
        self.assertEqual(self.completed("play", "--metronome", "b"), {"b.mid"})
        self.assertEqual(self.completed("render", "--soundfont", ""), {"d.sf2", "more"})
        self.assertEqual(self.completed("render", "-o", "c"), {"c.txt"})
        self.assertEqual(self.completed("render", "--format", ""), {"wav", "flac", "ogg"})
        self.assertEqual(self.completed("play", "--transpose", ""), {""})
        self.assertIn("UTF-16LE", self.completed("lyrics", "--encoding", "UTF-1"))


if __name__ == "__main__":
    karaoke_test.PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
