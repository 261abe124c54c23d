// A song from its opening to its end, and everything that is done to it on the way: what the outputs receive.
#include <windows.h>

#include <windowsx.h>

#include <algorithm>

#include "desktop/colours.h"
#include "tests/desktop/desktop_test.h"
#include "tests/desktop/drawn_texts.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

constexpr int kFirstKey = 36;

/// Rising keys without a gap.
bool rises(const std::vector<int>& keys) {
    return std::adjacent_find(keys.begin(), keys.end(), [](int a, int b) { return b != a + 1; }) ==
           keys.end();
}

POINT middleOf(const desktop::Box& box) {
    return {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
}

} // namespace

class DesktopPlaying : public DesktopTest {
protected:
    /// Starts with a long song and waits for its third note.
    void startLongSong(std::uint32_t tempo = 250000) {
        start({song(L"rising.kar", risingNotes(80, 0, tempo))});
        untilSent(noteOn(kFirstKey + 2));
    }

    static std::string noteOn(int key, int channel = 0, int output = 0) {
        char text[32];
        std::snprintf(text, sizeof text, "%d: 9%X %02X", output, static_cast<unsigned>(channel),
                      static_cast<unsigned>(key));
        return text;
    }

    std::vector<int> keys(std::size_t from = 0) {
        return keysOf(sent(), 0, 0, from);
    }

    bool untilText(int id, const std::wstring& text) {
        return until([&] { return textOf(control(id)) == text; });
    }

    desktop::MixerBoxes mixerBoxes() const {
        return desktop::layoutMixer(desktop::clientSize(control(ID_MIXER)), desktop::Scale(96));
    }

    POINT mixerCell(std::size_t channel, desktop::MixerCell cell) const {
        return middleOf(mixerBoxes().channels[channel][static_cast<std::size_t>(cell)]);
    }
};

TEST_F(DesktopPlaying, A_song_of_the_command_line_plays_to_its_end_and_the_next_one_follows) {
    start({song(L"one.mid", risingNotes(6)), song(L"two.mid", risingNotes(5, 3))});
    untilSent(noteOn(kFirstKey + 4, 3));
    EXPECT_THAT(keys(), ElementsAre(36, 37, 38, 39, 40, 41));
    EXPECT_THAT(keysOf(sent(), 0, 3), ElementsAre(36, 37, 38, 39, 40));
    // The set-up of the song leaves before its notes.
    EXPECT_THAT(sent(), Contains("0: C0 05"));
    EXPECT_TRUE(untilText(ID_PLAY, L"&Play")) << "the last song ends";
    EXPECT_EQ(message(), L"");
}

TEST_F(DesktopPlaying, Pause_holds_the_song_and_stop_takes_it_back_to_its_beginning) {
    startLongSong();
    press(ID_WORDS, VK_SPACE);
    ASSERT_TRUE(untilText(ID_PLAY, L"&Play"));
    EXPECT_THAT(sent(), Contains("0: B0 78 00")) << "what sounds is silenced";
    const std::size_t held = sent().size();
    press(ID_WORDS, VK_SPACE);
    untilSent("0: 90", held);
    untilSent(noteOn(kFirstKey + 6));
    EXPECT_TRUE(rises(keys()));

    press(ID_WORDS, VK_F6);
    ASSERT_TRUE(untilText(ID_PLAY, L"&Play"));
    const std::size_t stopped = sent().size();
    press(ID_WORDS, VK_F5);
    untilSent(noteOn(kFirstKey), stopped);
    EXPECT_EQ(keys(stopped).front(), kFirstKey);
}

TEST_F(DesktopPlaying, Dragging_the_position_bar_goes_on_there_with_the_channels_state) {
    startLongSong();
    const std::size_t before = sent().size();
    RECT bar{};
    GetClientRect(control(ID_POSITION), &bar);
    // The track ends before the time's text; half of what is dragged on is about the middle of the song.
    drag(control(ID_POSITION), {20, bar.bottom / 2}, {bar.right / 3, bar.bottom / 2});
    untilSent("0: B0 07 5A", before);
    const std::size_t map = untilSent("0: C0 05", before);
    untilSent("0: 90", map);
    const std::vector<int> after = keys(map);
    EXPECT_GT(after.front(), kFirstKey + 15);
    EXPECT_TRUE(rises(after));

    const std::size_t later = sent().size();
    press(ID_POSITION, VK_HOME);
    untilSent(noteOn(kFirstKey), later);
}

TEST_F(DesktopPlaying, A_loop_from_A_to_B_repeats_until_it_is_taken_away) {
    startLongSong();
    press(ID_WORDS, VK_F7);
    const std::size_t marked = sent().size();
    untilSent(noteOn(kFirstKey + 8), marked);
    press(ID_WORDS, VK_F8);
    const std::size_t end = sent().size();
    // From B back to A, twice.
    const std::size_t again = untilSent(noteOn(kFirstKey + 6), end);
    untilSent(noteOn(kFirstKey + 6), again + 1);
    EXPECT_THAT(keys(end), testing::Each(testing::Le(kFirstKey + 10)));
    click(control(ID_LOOP_CLEAR), {5, 5});
    untilSent(noteOn(kFirstKey + 14));
}

TEST_F(DesktopPlaying, Key_and_tempo_change_while_the_song_plays_and_are_remembered) {
    startLongSong();
    press(ID_WORDS, VK_UP);
    press(ID_WORDS, VK_UP);
    ASSERT_TRUE(untilText(ID_KEY, L"2"));
    const std::size_t changed = sent().size();
    const auto next = static_cast<int>(keys().back());
    untilSent("0: 90", changed);
    EXPECT_GE(keys(changed).front(), next + 1);

    SetWindowTextW(control(ID_TEMPO), L"200");
    ASSERT_TRUE(until([] { return mm_GetTempo(mm_GetMM1()->hmo) == 125000; }));
    // Nonsense is left alone.
    SetWindowTextW(control(ID_TEMPO), L"9");
    SetWindowTextW(control(ID_TEMPO), L"fast");
    press(ID_WORDS, VK_OEM_MINUS);
    ASSERT_TRUE(untilText(ID_TEMPO, L"195"));
    close();

    const std::size_t reopened = sent().size();
    start({folder() / L"rising.kar"});
    untilSent(noteOn(kFirstKey + 2), reopened);
    EXPECT_EQ(keysOf(sent(), 0, 0, reopened).front(), kFirstKey + 2);
    EXPECT_TRUE(untilText(ID_TEMPO, L"195"));
    command(ID_AS_WRITTEN);
    EXPECT_TRUE(untilText(ID_TEMPO, L"100"));
    EXPECT_TRUE(untilText(ID_KEY, L"0"));
}

TEST_F(DesktopPlaying, The_mixer_mutes_and_sets_levels_by_mouse_and_keys) {
    SongBuilder two = risingNotes(60);
    TrackBuilder& other = two.track();
    for (int i = 0; i < 60; ++i) {
        other.at(static_cast<std::uint32_t>(i) * 240).note(2, 60, 120);
    }
    start({song(L"two.mid", two)});
    press(ID_WORDS, VK_F4);
    const HWND mixer = control(ID_MIXER);
    untilSent(noteOn(60, 2));

    click(mixer, mixerCell(2, desktop::MixerCell::Mute));
    untilSent("0: B2 78 00");
    const std::size_t muted = sent().size();
    untilSent("0: 90", muted);
    EXPECT_THAT(keysOf(sent(), 0, 2, muted), SizeIs(0));

    const desktop::Box volume = mixerBoxes().channels[0][2];
    drag(mixer, middleOf(volume), {volume.left, volume.top + 3});
    const std::size_t silent = untilSent("0: B0 07 00");
    press(mixer, VK_PRIOR);
    untilSent("0: B0 07 10", silent);
    press(mixer, VK_RIGHT);
    press(mixer, VK_OEM_PLUS);
    untilSent("0: B0 0A 44");
    // From the first channel's pan to the third one's mute, and off again.
    for (const int key : {VK_DOWN, VK_DOWN, VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_SPACE}) {
        press(mixer, static_cast<WPARAM>(key));
    }
    untilSent(noteOn(60, 2), muted);
    const std::size_t solo = sent().size();
    press(mixer, VK_RIGHT);
    press(mixer, VK_SPACE);
    untilSent("0: B0 78 00", solo);
}

TEST_F(DesktopPlaying, Metronome_fade_and_panic_reach_the_output) {
    startLongSong();
    press(ID_WORDS, VK_F9);
    const std::size_t click = untilSent("0: 99 4D");
    press(ID_WORDS, VK_F9);
    const auto silenced = [&](const std::string& prefix) {
        const std::vector<std::string>& lines = sent();
        return std::count_if(lines.begin(), lines.end(),
                             [&](const std::string& line) { return line.starts_with(prefix); });
    };
    const auto before = silenced("0: B5 7B");
    command(ID_PANIC);
    ASSERT_TRUE(until([&] { return silenced("0: B5 7B") > before; }));
    EXPECT_THAT(sent(), Contains("0: BF 7B 00"));
    // Playing goes on.
    const std::size_t after = sent().size();
    untilSent("0: 90", std::max(after, click));
    command(ID_FADE);
    // Six seconds from full to nothing: half as loud on the way.
    ASSERT_TRUE(until([&] {
        const std::vector<std::string>& lines = sent();
        return std::any_of(lines.begin() + static_cast<std::ptrdiff_t>(after), lines.end(),
                           [](const std::string& line) {
                               return line.starts_with("0: 90") && line.substr(9) < "33" &&
                                      line.substr(9) > "00";
                           });
    }));
}

TEST_F(DesktopPlaying, A_second_song_plays_on_the_second_output_once_one_is_chosen) {
    const std::wstring first = song(L"first.mid", risingNotes(80));
    const std::wstring second = song(L"second.mid", risingNotes(8, 5));
    start({first, second});
    untilSent(noteOn(kFirstKey));
    SendMessageW(control(ID_PLAYLIST), LB_SETCURSEL, 1, 0);
    command(ID_PLAY_SECOND);
    ASSERT_TRUE(until([&] { return !message().empty(); }));
    EXPECT_NE(message().find(L"second MIDI output"), std::wstring::npos) << "said in words";
    close();

    const auto settings = desktop::programSettingsFile();
    auto chosen = desktop::readProgramSettings(settings);
    chosen.outputs = {L"Test output 1", L"Test output 2"};
    desktop::writeProgramSettings(settings, chosen);
    const std::size_t before = sent().size();
    start({first, second});
    untilSent(noteOn(kFirstKey), before);
    SendMessageW(control(ID_PLAYLIST), LB_SETCURSEL, 1, 0);
    command(ID_PLAY_SECOND);
    untilSent(noteOn(kFirstKey + 7, 5, 1), before);
    EXPECT_TRUE(rises(keysOf(sent(), 1, 5, before)));
    EXPECT_TRUE(rises(keysOf(sent(), 0, 0, before))) << "the first song plays on";
}

TEST_F(DesktopPlaying, The_window_answers_while_an_instrument_is_slow) {
    startLongSong();
    // Each message now takes the output a while.
    static HANDLE release;
    release = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    machine::output(0).onMessage = [] { WaitForSingleObject(release, 2000); };
    const DWORD before = GetTickCount();
    for (const int id : {ID_PANIC, ID_STOP, ID_KEY_UP, ID_REWIND, ID_SHOW_MIXER}) {
        command(id);
    }
    SendMessageW(main(), WM_NULL, 0, 0);
    EXPECT_LT(GetTickCount() - before, 1500u);
    machine::output(0).onMessage = nullptr;
    SetEvent(release);
    EXPECT_TRUE(untilText(ID_KEY, L"1"));
    CloseHandle(release);
}

TEST_F(DesktopPlaying, Words_take_their_colour_as_they_are_sung_and_lines_move_on) {
    const DrawnTexts watching;
    start({song(L"words.kar", risingNotes(24))});
    std::vector<std::wstring> current;
    LONG widest = 0;
    ASSERT_TRUE(until([&] {
        for (const DrawnText& each : DrawnTexts::take()) {
            const bool words = each.text.find(L"word") != std::wstring::npos;
            if (words && each.colour == desktop::kSung) {
                if (current.empty() || current.back() != each.text) {
                    current.push_back(each.text);
                    widest = 0;
                }
                EXPECT_GE(each.shownUpTo, widest) << "colour never goes back";
                widest = std::max(widest, each.shownUpTo);
            }
        }
        return current.size() > 2;
    }));
    EXPECT_EQ(current[0].substr(0, 6), L"word0 ");
    EXPECT_TRUE(rises(keys()));
}
