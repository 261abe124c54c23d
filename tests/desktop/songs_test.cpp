// Ways in which songs come into the program, and songs that cannot be played.
#include <windows.h>

#include <commdlg.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <cwchar>

#include "tests/desktop/desktop_test.h"
#include "tests/support/import_table.h"

namespace {

/// What the next open dialog answers: a folder, names, each ended by a zero.
std::wstring openAnswer;

BOOL WINAPI answerOpenDialog(OPENFILENAMEW* question) {
    openAnswer.copy(question->lpstrFile, question->nMaxFile);
    return openAnswer.empty() ? FALSE : TRUE;
}

/// Chooses the second output as the first one in the dialog that is open, and closes it.
void CALLBACK answerOutputs(HWND, UINT, UINT_PTR timer, DWORD) {
    if (const HWND dialog = FindWindowW(nullptr, L"MIDI outputs")) {
        KillTimer(nullptr, timer);
        EXPECT_EQ(SendDlgItemMessageW(dialog, ID_FIRST_OUTPUT, CB_GETCOUNT, 0, 0), 3);
        SendDlgItemMessageW(dialog, ID_FIRST_OUTPUT, CB_SETCURSEL, 2, 0);
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    }
}

} // namespace

class DesktopSongs : public DesktopTest {
protected:
    /// Drops files on the window as a file manager does.
    void drop(const std::vector<std::wstring>& paths) {
        std::wstring names;
        for (const std::wstring& path : paths) {
            names += path + L'\0';
        }
        names += L'\0';
        const HGLOBAL memory =
            GlobalAlloc(GHND, sizeof(DROPFILES) + names.size() * sizeof(wchar_t));
        auto* const files = static_cast<DROPFILES*>(GlobalLock(memory));
        files->pFiles = sizeof(DROPFILES);
        files->fWide = TRUE;
        std::memcpy(files + 1, names.data(), names.size() * sizeof(wchar_t));
        GlobalUnlock(memory);
        PostMessageW(main(), WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
    }

    std::vector<std::wstring> listed() const {
        std::vector<std::wstring> names;
        const HWND list = control(ID_PLAYLIST);
        for (LRESULT i = 0; i < SendMessageW(list, LB_GETCOUNT, 0, 0); ++i) {
            wchar_t name[128] = L"";
            SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(name));
            names.emplace_back(name + wcsspn(name, L" \x25BA"));
        }
        return names;
    }
};

TEST_F(DesktopSongs, Files_of_any_name_play_when_they_are_dropped_alone_or_in_a_folder) {
    start({});
    drop({song(L"\x4E09\x6708 \x0437\x0438\x043C\x0430 caf\x00E9 \x2665.kar", risingNotes(6))});
    untilSent("0: 90 29");
    EXPECT_EQ(message(), L"");
    std::filesystem::create_directories(folder() / L"more");
    song(L"more\\b.mid", risingNotes(3));
    song(L"more\\a.KAR", risingNotes(3));
    song(L"more\\notes.txt", risingNotes(3));
    drop({(folder() / L"more").native()});
    ASSERT_TRUE(until([&] { return listed().size() == 3; }));
    EXPECT_THAT(listed(),
                testing::ElementsAre(L"\x4E09\x6708 \x0437\x0438\x043C\x0430 caf\x00E9 \x2665",
                                     L"a", L"b"));
}

TEST_F(DesktopSongs, What_cannot_be_played_is_said_in_words_and_Esc_closes_them) {
    start({(folder() / L"not there.mid").native()});
    ASSERT_TRUE(until([&] { return message().find(L"no such file") != std::wstring::npos; }));
    EXPECT_NE(message().find(L"not there.mid"), std::wstring::npos);
    press(ID_WORDS, VK_ESCAPE);
    EXPECT_TRUE(until([&] { return message().empty(); }));

    const std::wstring broken = (folder() / L"broken.mid").native();
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    CopyFileW(program, broken.c_str(), FALSE);
    drop({broken});
    ASSERT_TRUE(until([&] { return message().find(L"broken.mid") != std::wstring::npos; }));
    // The next song plays, and the message goes.
    drop({song(L"good.mid", risingNotes(6))});
    untilSent("0: 90 29");
    EXPECT_TRUE(until([&] { return message().empty(); }));
}

TEST_F(DesktopSongs, A_mended_song_says_what_was_mended) {
    SongBuilder cut = risingNotes(20);
    const std::wstring path = song(L"cut.mid", cut);
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 30);
    start({path});
    untilSent("0: 90 26");
    EXPECT_TRUE(until([&] { return message().find(L"mended") != std::wstring::npos; }));
}

TEST_F(DesktopSongs, The_play_list_is_managed_by_keys) {
    start({song(L"a.mid", risingNotes(40)), song(L"b.mid", risingNotes(40, 1)),
           song(L"c.mid", risingNotes(40, 2))});
    untilSent("0: 90 24");
    const HWND list = control(ID_PLAYLIST);
    SetFocus(list);
    press(list, VK_DOWN);
    press(list, VK_DOWN);
    press(list, VK_RETURN);
    untilSent("0: 92 24");
    command(ID_MOVE_UP);
    EXPECT_THAT(listed(), testing::ElementsAre(L"a", L"c", L"b"));
    press(list, VK_DELETE);
    EXPECT_THAT(listed(), testing::ElementsAre(L"a", L"b"));
    command(ID_PREVIOUS);
    command(ID_CLEAR);
    EXPECT_TRUE(listed().empty());
}

TEST_F(DesktopSongs, Another_encoding_shows_the_words_anew) {
    SongBuilder russian(480);
    TrackBuilder& track = russian.track();
    track.meta(3, "\xCF\xE5\xF1\xED\xFF");
    for (std::uint32_t i = 0; i < 40; ++i) {
        track.at(i * 240).lyric("\xEB\xE0 ").note(0, 60, 120);
    }
    start({song(L"russian.kar", russian)});
    untilSent("0: 90 3C");
    command(ID_ENCODING_FIRST + 4);
    EXPECT_TRUE(
        until([&] { return textOf(main()).starts_with(L"\x041F\x0435\x0441\x043D\x044F"); }));
    command(ID_ENCODING_FIRST + 2);
    EXPECT_TRUE(until([&] { return textOf(main()).starts_with(L"\x00CF"); }));
}

TEST_F(DesktopSongs, The_open_dialog_plays_the_first_song_chosen_and_lists_all) {
    const void* const before = replaceImport(GetModuleHandleW(nullptr), "GetOpenFileNameW",
                                             reinterpret_cast<const void*>(&answerOpenDialog));
    start({});
    song(L"a.mid", risingNotes(9, 3));
    song(L"b.mid", risingNotes(9, 4));
    openAnswer = folder().native() + L'\0' + L"b.mid" + L'\0' + L"a.mid" + L'\0' + L'\0';
    command(ID_OPEN);
    untilSent("0: 94 24");
    EXPECT_THAT(listed(), testing::ElementsAre(L"b", L"a"));
    openAnswer = (folder() / L"a.mid").native() + L'\0' + L'\0';
    command(ID_ADD);
    EXPECT_EQ(listed().size(), 3u);
    openAnswer.clear();
    command(ID_OPEN);
    EXPECT_EQ(listed().size(), 3u);
    replaceImport(GetModuleHandleW(nullptr), "GetOpenFileNameW", before);
}

TEST_F(DesktopSongs, A_song_goes_on_where_it_is_on_another_output_that_is_chosen) {
    start({song(L"long.mid", risingNotes(80))});
    untilSent("0: 90 28");
    constexpr UINT kInterval = 50;
    SetTimer(nullptr, 0, kInterval, answerOutputs);
    command(ID_OUTPUTS);
    untilSent("1: 90");
    EXPECT_GE(keysOf(sent(), 1, 0).front(), 0x28);
    close();
    EXPECT_EQ(desktop::readProgramSettings(desktop::programSettingsFile()).outputs.first,
              L"Test output 2");
}
