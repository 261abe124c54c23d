"""Drives `karaoke play` as a listener does: its keys, its ranges and lists, and its full screen.

Usage: player_test.py PROGRAM [TESTCASE...]
"""

import fcntl
import json
import os
import pty
import re
import select
import signal
import struct
import subprocess
import sys
import termios
import time
import tty
import unittest

import karaoke_test
from karaoke_test import DRUMS, QUARTER, TIMEOUT, KaraokeTest, basic_song, sung_song
from midi_song import Track, song

BAR = 4 * QUARTER
UP, DOWN, RIGHT, LEFT = "\x1b[A", "\x1b[B", "\x1b[C", "\x1b[D"
BEAT = "z" * 20  # keys that mean nothing, one a frame of 25 ms: half a second


def bars_song(bars=8, title=b"Bars", markers=()):
    """Each bar plays its own note, 60 and up, on channels 1 and 2, on every beat."""
    track = Track().title(title).program(0, 0, 4).controller(0, 0, 7, 90)
    for beat in range(bars * 4):
        for channel in (0, 1):
            track.note(beat * QUARTER, channel, 60 + beat // 4)
    conductor = Track()
    for bar, name in markers:
        conductor.meta((bar - 1) * BAR, 0x06, name)
    return song(conductor, track)


class PlayerTest(KaraokeTest):
    def setUp(self):
        super().setUp()
        self.environment.update(XDG_CONFIG_HOME=self.path("config"), TERM="xterm-256color")

    def arguments(self, data, *options):
        files = [self.file(each, f"song{i}.mid") for i, each in enumerate(data)]
        return ["play", "--silent", "--midi-log", self.path("log.txt"), *options, *files]

    def press(self, keys, *data, options=(), columns=80, rows=24):
        """Plays songs on the manual clock in a terminal in which the keys were typed beforehand. The first of
        them is pressed a quarter of a second into the song, between two beats."""
        arguments = [karaoke_test.PROGRAM, *self.arguments(data, "--fast", *options)]
        child, terminal = pty.fork()
        if child == 0:
            os.read(0, 1)  # until the keys wait
            os.environ.update(self.environment)
            os.execv(arguments[0], arguments)
        tty.setraw(terminal)
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))
        os.write(terminal, b"!" + b"z" * 10 + keys.encode())
        output = b""
        while select.select([terminal], [], [], TIMEOUT)[0]:
            try:
                output += os.read(terminal, 65536)
            except OSError:
                break
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0, output[-300:])
        self.raw = output.decode()
        self.output = re.sub(r"\x1b(\[[0-9;?]*[A-Za-z]|\(B|[=>])", "", self.raw)
        messages = self.log()
        self.assert_silent_at_end(messages)
        return messages

    def bars(self, messages, channel=0):
        """Bars in the order in which they were played, each with the number of its notes."""
        played = []
        for note in self.notes(messages, channel):
            bar = note.data[1] - 59
            if played and played[-1][0] == bar:
                played[-1][1] += 1
            else:
                played.append([bar, 1])
        return [tuple(each) for each in played]

    def controllers(self, messages, channel, number):
        return [m.data[2] for m in messages
                if m.kind == 0xB0 and m.channel == channel and m.data[1] == number]


class Keys(PlayerTest):
    """What each key does to the messages that reach the output."""

    def test_space_pauses_in_silence_and_goes_on(self):
        notes = self.notes(self.press(BEAT * 3 + " " + BEAT * 4 + " ", bars_song(2)), 0)
        self.assertEqual(len(notes), 8)
        gaps = [b.seconds - a.seconds for a, b in zip(notes, notes[1:])]
        self.assertAlmostEqual(max(gaps), 0.5 + 2, delta=0.06)
        self.assertLess(sorted(gaps)[-2], 0.51)

    def test_q_n_and_p_leave_the_song(self):
        second = bars_song(1, title=b"Second")
        for keys, played in ((BEAT + "q", [2]), (BEAT + "n" + BEAT + "q", [2, 2]),
                             (BEAT + "n" + BEAT + "p" + BEAT + "q", [2, 2, 2])):
            messages = self.press(keys, bars_song(8), second)
            resets = [i for i, m in enumerate(messages) if m.data[0] == 0xF0] + [len(messages)]
            counts = [len(self.notes(messages[a:b], 0)) for a, b in zip(resets, resets[1:])]
            self.assertEqual(len(counts), len(played), keys)
            for count in counts:
                self.assertIn(count, (2, 3))

    def test_arrows_brackets_and_home_move_the_position(self):
        data = bars_song(8, markers=((1, b"Intro"), (5, b"Chorus"), (7, b"End")))
        two = BEAT * 2
        self.assertEqual(self.bars(self.press(two + RIGHT + RIGHT, data))[:3], [(1, 3), (2, 1), (3, 4)])
        cases = {two + LEFT: [1, 2, 3, 4, 5, 6, 7, 8],
                 two + "]": [1, 5, 6, 7, 8], two + "]]": [1, 5, 7, 8],
                 two + "]zzz[": [1, 5, 1, 2, 3, 4, 5, 6, 7, 8],
                 two * 2 + BEAT + "0": [1, 2, 1, 2, 3, 4, 5, 6, 7, 8]}
        for keys, bars in cases.items():
            with self.subTest(keys=keys.replace(BEAT, "_")):
                self.assertEqual([bar for bar, _ in self.bars(self.press(keys, data))], bars)

    def test_a_b_and_c_repeat_bars_without_a_gap_until_told(self):
        keys = BEAT * 5 + "a" + BEAT * 2 + "b" + BEAT * 9 + "c"
        messages = self.press(keys, bars_song(4))
        self.assertEqual(self.bars(messages), [(1, 4), (2, 16), (3, 4), (4, 4)])
        times = [note.seconds for note in self.notes(messages, 0)]
        self.assertLess(max(b - a for a, b in zip(times, times[1:])), 0.53)

    def test_tempo_and_key_change_while_it_plays(self):
        notes = self.notes(self.press(BEAT * 4 + UP * 20 + "z" * 20 + "+++-", bars_song(4)), 0)
        self.assertAlmostEqual(notes[1].seconds - notes[0].seconds, 0.5, delta=0.02)
        self.assertAlmostEqual(notes[-1].seconds - notes[-2].seconds, 0.4, delta=0.02)
        self.assertEqual((notes[0].data[1], notes[-1].data[1]), (60, 63 + 2))
        slow = self.notes(self.press(DOWN * 10, bars_song(2)), 0)
        self.assertAlmostEqual(slow[-1].seconds - slow[-2].seconds, 0.55, delta=0.02)

    def test_keys_of_the_chosen_channel_act_at_once(self):
        messages = self.press("." + "vvV" + "l" + "e" + "hH" + "i", bars_song(2))
        self.assertEqual(self.controllers(messages, 1, 7), [104, 108, 104])
        self.assertEqual(self.controllers(messages, 1, 10), [68])
        self.assertEqual(self.controllers(messages, 1, 91), [44])
        self.assertEqual(self.controllers(messages, 1, 93), [4, 0])
        programs = [m.data[1] for m in messages if m.data[0] == 0xC1]
        self.assertEqual(programs, [1])
        messages = self.press("vLE" + "I" + BEAT + "u", bars_song(2))
        self.assertEqual(self.controllers(messages, 0, 7), [90, 94, 90])
        self.assertEqual(self.controllers(messages, 0, 10), [60, 64])
        self.assertEqual(self.controllers(messages, 0, 91), [36, 40])
        self.assertEqual([m.data[1] for m in messages if m.data[0] == 0xC0], [4, 3, 4])

    def test_mute_and_solo_silence_channels(self):
        half = BEAT * 3
        for keys, counts in ((half + "m", (4, 8)), (half + "s", (8, 4)), (half + "\tm", (8, 4)),
                             (half + ",m", (8, 4)), (half + "mm", (8, 8))):
            with self.subTest(keys=keys.replace(BEAT, "_")):
                messages = self.press(keys, bars_song(2))
                self.assertEqual(tuple(len(self.notes(messages, c)) for c in (0, 1)), counts)

    def test_f_fades_out_and_ends_the_song(self):
        notes = self.notes(self.press(BEAT * 4 + "f", bars_song(60)), 0)
        loudness = [note.data[2] for note in notes]
        self.assertEqual(loudness, sorted(loudness, reverse=True))
        self.assertLess(len(notes), 5 + 11)
        self.assertLess(loudness[-1], 20)

    def test_k_clicks_on_the_beat(self):
        clicks = [m for m in self.press(BEAT * 4 + "k" + BEAT * 8 + "k", bars_song(8))
                  if m.starts_note() and m.channel == DRUMS]
        self.assertEqual([m.data[1] for m in clicks].count(76), 2)
        self.assertEqual(len(clicks), 8)

    def test_x_silences_everything_and_plays_on(self):
        messages = self.press(BEAT + "z" * 5 + "x", bars_song(2))
        first = next(i for i, m in enumerate(messages) if m.data[0] & 0xF0 == 0xB0 and m.data[1] == 64)
        panic = {(m.channel, m.data[1], m.data[2]) for m in messages[first:first + 64]}
        self.assertEqual(panic, {(c, n, 0) for c in range(16) for n in (64, 66, 120, 123)})
        self.assertEqual(len(self.notes(messages, 0)), 8)

    def test_settings_are_remembered_offered_used_and_forgotten(self):
        data = bars_song(2)
        self.press("++" + ".m" + UP, data)
        with open(self.path("config/corvmo32/songs.json"), encoding="utf-8") as file:
            (entry,) = json.load(file)["songs"].values()
        self.assertEqual(entry, {"file": "song0.mid", "transpose": 2, "tempo": 1.0,
                                 "channels": {"2": {"mute": True}}})
        played = self.press("", data)
        self.assertEqual(self.bars(played), [(1, 4), (2, 4)], "offered, not used")
        self.assertIn("last time: tempo +1, key +2, channel 2 muted", self.output)
        for keys, options in (("r", ()), ("", ("--remember",))):
            played = self.press(keys, data, options=options)
            self.assertEqual(self.notes(played, 0)[-1].data[1], 61 + 2)
            self.assertLess(len(self.notes(played, 1)), 2)
        self.press("+" + "R", data, options=["--remember"])
        self.assertNotIn("last time", self.press_and_read("", data))
        self.press("-", data)
        self.assertIn("last time: key -1", self.press_and_read("", data))
        self.press("", data, options=["--forget"])
        self.assertNotIn("last time", self.press_and_read("", data))
        with open(self.path("config/corvmo32/songs.json"), "w", encoding="utf-8") as file:
            file.write('{"songs": {"broken')
        self.press("-", data)
        self.assertIn("last time: key -1", self.press_and_read("", data))
        self.assertTrue(os.path.exists(self.path("config/corvmo32/songs.json.damaged")))

    def press_and_read(self, *arguments):
        self.press(*arguments)
        return self.output

    def test_a_few_rows_obey_keys_too(self):
        for options, size in ((("--plain",), (80, 24)), ((), (59, 16)), ((), (60, 15))):
            with self.subTest(options=options, size=size):
                messages = self.press(BEAT * 2 + RIGHT + "+" + "\x1b[Z" + "m", bars_song(3),
                                      options=options, columns=size[0], rows=size[1])
                self.assertNotIn("\x1b[?1049h", self.raw)
                self.assertEqual([n.data[1] for n in self.notes(messages, 0)][-1], 62 + 1)
                self.assertLess(len(self.notes(messages, 1)), 5)
                self.assertIn("key +1", self.output)


class Ranges(PlayerTest):
    """Options that choose what is played in which order."""

    def play_bars(self, *options, bars=8):
        result = self.run_program(*self.arguments([bars_song(bars)], "--fast", *options))
        self.assertEqual((result.code, result.err), (0, ""))
        return self.bars(self.log())

    def test_loops_and_from_choose_bars(self):
        tick = str(2 * BAR)
        cases = {("--loop", f"{tick}:{3 * BAR}x2", "--loop", "bar6:bar7"): [(3, 8), (6, 4)],
                 ("--loop", "bar7:"): [(7, 4), (8, 4)], ("--from", tick): [(b, 4) for b in range(3, 9)],
                 ("--from", "bar8"): [(8, 4)],
                 ("--from", "bar4", "--loop", "bar2:bar5x2"): [(4, 4), (2, 4), (3, 4), (4, 4)]}
        for options, bars in cases.items():
            with self.subTest(options=options):
                self.assertEqual(self.play_bars(*options), bars)

    def test_practice_becomes_faster_up_to_its_limit(self):
        self.press(BEAT * 20 + "q", bars_song(2), options=["--practice", "bar1:bar2:-100:75:50"])
        notes = self.notes(self.log(), 0)
        gaps = [b.seconds - a.seconds for a, b in zip(notes, notes[1:])]
        for start, gap in ((0, 1.0), (4, 0.625), (8, 0.25), (12, 0.25)):
            self.assertAlmostEqual(gaps[start + 1], gap, delta=0.03)

    def test_folders_shuffle_and_repeat_play_lists(self):
        os.makedirs(self.path("songs/more"))
        titles = {f"Song {i}" for i in range(6)}
        for i, title in enumerate(sorted(titles)):
            folder = "songs/more" if i % 2 else "songs"
            self.file(bars_song(1, title=title.encode()), f"{folder}/{i}.{'KAR' if i % 3 else 'mid'}")
        self.file(b"no song", "songs/readme.txt")
        orders = set()
        for options in ((), ("--shuffle",), ("--shuffle",), ("--shuffle",)):
            result = self.run_program("play", "--fast", "--silent", *options, self.path("songs"))
            played = [line for line in result.lines if line.startswith("Song")]
            self.assertEqual((result.code, result.err, len(played), set(played)), (0, "", 6, titles))
            orders.add(tuple(played))
        self.assertGreater(len(orders), 1, "an order by chance")
        endless = self.start_program("play", "--fast", "--silent", "--repeat", self.path("songs"))
        played = [endless.stdout.readline() for _ in range(40)]
        endless.send_signal(signal.SIGINT)
        self.assertGreater(played.count(b"Song 0\n"), 1)
        endless.communicate(timeout=TIMEOUT)

    def test_two_songs_play_together(self):
        other = song(Track().title(b"Other").note(0, 4, 30).note(BAR * 3, 4, 31))
        result = self.run_program(*self.arguments([bars_song(2), other], "--fast", "--together"))
        self.assertEqual((result.code, result.lines[0]), (0, "Bars & Other"))
        messages = self.log()
        self.assertEqual(self.bars(messages), [(1, 4), (2, 4)])
        one, other = self.notes(messages, 0), self.notes(messages, 4)
        self.assertAlmostEqual(one[0].seconds, other[0].seconds, delta=0.1)
        self.assertEqual(len(other), 2)
        messages = self.press(BEAT * 2 + " " + BEAT * 4 + " ", bars_song(2), song(
            Track().note(0, 4, 30).note(BAR, 4, 31)), options=["--together"])
        self.assertGreater(self.notes(messages, 4)[1].seconds - self.notes(messages, 4)[0].seconds, 3.8)

    def test_offset_shows_words_earlier_or_later(self):
        data = sung_song(b"one ", b"two ", b"three ", b"four")
        for offset, unsung in (("1000", "one two"), ("0", "four"), ("-1000", "")):
            # Quits between the third word and the fourth.
            self.press(BEAT * 2 + "q", data, options=["--offset", offset, "--plain"])
            sung = re.findall(r"\x1b\[1;33m([a-z ]*)\x1b\[0m", self.raw)
            words = sung[-1].split() if sung else []
            self.assertEqual(len(words), {"1000": 1, "0": 3, "-1000": 4}[offset], (offset, unsung))

    def test_options_that_do_not_go_together_are_refused(self):
        path = self.file(bars_song(2))
        cases = [(["--loop", "5"], "'5' is not of the form A:B or A:BxN"),
                 (["--loop", "960:480"], "ends before it begins"),
                 (["--loop", "0:480x0"], "'0' is not a whole number from 1 to 32767"),
                 (["--loop", "bar0:bar2"], "'0'"), (["--from", "verse"], "'verse'"),
                 (["--loop", "0:480"] * 11, "at most 10"),
                 (["--practice", "0:480:1:2"], "A:B:START:STEP:LIMIT"),
                 (["--practice", "0:480:10:5:0"], "does not become faster"),
                 (["--practice", "0:480:1:2:3", "--loop", "0:480"], "--practice"),
                 (["--offset", "9000"], "'9000'"), (["--together"], "two songs are needed"),
                 (["--together", "--repeat", path], "--together"),
                 (["--device", "0", "--device", "0"], "only --together"),
                 (["--remember", "--forget"], "--forget"), (["--log", "x"], "--log")]
        for options, wanted in cases:
            with self.subTest(options=options):
                result = self.run_program("play", "--fast", "--silent", path, *options)
                self.assertEqual((result.code, result.out), (2, ""))
                self.assertRegex(result.err, r"\Akaraoke: [^\n]+\n\Z")
                self.assertIn(wanted, result.err)
        for options in (["--from", "bar9"], ["--loop", "99999:"], ["--loop", "bar2:10"]):
            result = self.run_program("play", "--fast", "--silent", path, *options)
            self.assertEqual((result.code, result.out), (1, ""))
            self.assertRegex(result.err, r"\Akaraoke: [^\n]+\n\Z")


class FullScreen(PlayerTest):
    """What stands on the screen of a real terminal emulator."""

    def setUp(self):
        super().setUp()
        self.environment.pop("TMUX", None)
        self.environment["TMUX_TMPDIR"] = self.folder
        self.servers = 0
        self.addCleanup(self.tmux, "kill-server", check=False)

    def tmux(self, *arguments, check=True):
        return subprocess.run(["tmux", "-L", str(self.servers), "-f", "/dev/null", "-u", *arguments], env=self.environment,
                              check=check, capture_output=True, text=True, timeout=TIMEOUT).stdout

    def show(self, columns, rows, data, *options):
        arguments = self.arguments([data], *options)
        # The shell stays, so that what is left of the terminal can be seen.
        script = 'trap : INT; echo before; stty -g >modes0; "$@"; echo "left with $?"; stty -g >modes1; sleep 60'
        self.tmux("kill-server", check=False)
        self.servers += 1
        self.tmux("new-session", "-d", "-x", str(columns), "-y", str(rows), "-c", self.folder,
                  "sh", "-c", script, "sh", karaoke_test.PROGRAM, *arguments)

    def screen(self, until):
        """The lines of the screen once it shows something."""
        end = time.monotonic() + 20
        text = ""
        while until not in text:
            self.assertLess(time.monotonic(), end, f"{until!r} is not shown:\n{text}")
            text = self.tmux("capture-pane", "-p")
        return text.split("\n")

    def keys(self, *names):
        self.tmux("send-keys", *names)

    def words_song(self):
        words = Track().title(b"A Song For Tests").title(b"by nobody").program(0, 0, 40).note(0, 0, 60)
        lines = ("Row, row, row your boat", "gently down the stream", "merrily, merrily", "life is a dream")
        tick = 2 * BAR
        for line in lines:
            parts = line.split(" ")
            for i, word in enumerate(parts):
                words.note(tick, 0, 60).note(tick, DRUMS, 36)
                words.lyric(tick, (word + ("\r" if i + 1 == len(parts) else " ")).encode())
                tick += QUARTER
            tick += QUARTER
        words.note(tick + 20 * BAR, 0, 60)
        chords = Track().text(2 * BAR, b"C").text(2 * BAR + 3 * QUARTER, b"G7").meta(2 * BAR, 0x06, b"Verse")
        return song(words, chords)

    def test_every_size_shows_words_chords_position_and_channels(self):
        for columns, rows in ((80, 24), (60, 16), (160, 50)):
            with self.subTest(columns=columns, rows=rows):
                self.show(columns, rows, self.words_song(), "--from", "bar3")
                self.screen("down the stream")
                self.keys("Space")
                lines = self.screen("paused")
                self.assertEqual(len(lines) - 1, rows)
                self.assertLess(max(map(len, lines)), columns)
                text = "\n".join(lines)
                self.assertIn("A Song For Tests", lines[0])
                words = next(i for i, line in enumerate(lines) if "Row, row, row your boat" in line)
                if "C" in lines[words - 1]:
                    start = lines[words].index("Row,")
                    self.assertEqual(lines[words - 1][start], "C")
                    self.assertEqual(lines[words - 1].index("G7"), lines[words].index("your"))
                self.assertRegex(text, r"━●|A.*━.*●|◆.*●")
                self.assertRegex(text, r"0:0\d / \d:\d\d   bar \d:\d   120 bpm   4/4   C major|paused   0:0\d")
                self.assertRegex(text, r"▸ 1 +(Violin|String)")
                self.assertRegex(text, r"10 +Drums")
                self.assertIn("? all keys", text)

    def test_sung_words_are_coloured_and_resizing_draws_anew(self):
        self.show(80, 24, self.words_song(), "--from", "bar3")
        self.screen("gently")
        self.keys("Space")
        self.screen("paused")
        coloured = self.tmux("capture-pane", "-p", "-e")
        self.assertRegex(coloured, r"\x1b\[1m\x1b\[33m\w|\x1b\[1;33m\w|\x1b\[33m\x1b\[1m\w|\x1b\[0;1;33m\w")
        for columns, rows in ((60, 16), (40, 8), (100, 30)):
            self.tmux("resize-window", "-x", str(columns), "-y", str(rows))
            end = time.monotonic() + TIMEOUT
            while len(self.tmux("capture-pane", "-p").rstrip("\n").split("\n")[-1]) >= columns:
                self.assertLess(time.monotonic(), end)
        self.assertIn("A Song For Tests", self.screen("space pause")[0])

    def test_a_singer_is_counted_in_and_told_how_long_a_pause_is(self):
        self.show(80, 24, self.words_song())
        self.screen("● ● ● ●")
        self.screen("Row, row")
        late = Track().title(b"Late").note(0, 0, 60).note(12 * BAR, 0, 60).lyric(12 * BAR, b"late ")
        self.show(80, 24, song(late))
        self.screen("♪ 0:2")

    def test_keys_show_help_notices_and_encodings(self):
        self.show(80, 24, sung_song("été ".encode("cp1252"), b"la ", b"la ", b"la ", *[b"la "] * 40))
        self.screen("été")
        self.keys("?")
        page = "\n".join(self.screen("any key goes back"))
        for key in ("space", "[ ]", "a b c", "m s", "o O", "r R", "n p", "q"):
            self.assertIn(key, page)
        self.keys("z")
        for key, notice in ((".", "▸"), ("a", "loop from bar"), ("o", "words +50 ms"), ("O", "words 0 ms"),
                            ("t", "texts read as UTF-8"), ("k", "metronome on"), ("x", "all notes silenced"),
                            ("b", "c ends it"), ("v", "volume +4"), ("]", "no later marker")):
            self.keys(key)
            self.screen(notice)
        self.assertIn("loop 1-", "\n".join(self.screen("pass")))

    def test_the_terminal_is_given_back_on_every_way_out(self):
        def pid():
            shell = self.tmux("display-message", "-p", "#{pane_pid}").strip()
            with open(f"/proc/{shell}/task/{shell}/children", encoding="ascii") as children:
                return int(children.read().split()[0])
        ways = [(lambda: self.keys("q"), "left with 0"), (lambda: self.keys("C-c"), "left with 130"),
                (lambda: os.kill(pid(), signal.SIGTERM), "left with 143"),
                (lambda: os.kill(pid(), signal.SIGSEGV), "left with 139")]
        for leave, told in ways:
            with self.subTest(told):
                self.show(80, 24, self.words_song())
                self.screen("space pause")
                leave()
                lines = self.screen(told)
                self.assertEqual(lines[0], "before", "the old screen is back")
                state = self.tmux("display-message", "-p", "#{cursor_flag}#{alternate_on}")
                self.assertEqual(state.strip(), "10")
                end = time.monotonic() + TIMEOUT
                while not (os.path.exists(self.path("modes1")) and os.path.getsize(self.path("modes1"))):
                    self.assertLess(time.monotonic(), end)
                with open(self.path("modes0"), encoding="ascii") as before, \
                        open(self.path("modes1"), encoding="ascii") as after:
                    self.assertEqual(before.read(), after.read())
                os.remove(self.path("modes1"))
                if told != "left with 139":
                    self.assert_silent_at_end(self.log())


if __name__ == "__main__":
    karaoke_test.PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
