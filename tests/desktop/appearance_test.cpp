// How the windows look: every text has room, nothing overlaps, every control can be reached by Tab. Pictures are
// left in the build folder for people to look at.
#include <algorithm>
#include <fstream>
#include <set>

#include "desktop/colours.h"
#include "shared/gm_names.h"
#include "tests/desktop/desktop_test.h"
#include "tests/desktop/drawn_texts.h"

namespace {

constexpr UINT kDpiChanged = 0x02E0;

struct Look {
    SIZE size;
    int dpi;
    bool mixer;
};

void savePicture(HWND window, const std::string& name) {
    RECT area{};
    GetWindowRect(window, &area);
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    const HDC source = GetWindowDC(window);
    const HDC memory = CreateCompatibleDC(source);
    BITMAPINFO format{};
    format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(memory, &format, DIB_RGB_COLORS, &pixels, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, source, 0, 0, SRCCOPY);
    GdiFlush();
    const auto bytes = static_cast<DWORD>((width * 3 + 3) / 4 * 4 * height);
    BITMAPFILEHEADER head{};
    head.bfType = 0x4D42;
    head.bfOffBits = sizeof head + sizeof(BITMAPINFOHEADER);
    head.bfSize = head.bfOffBits + bytes;
    std::ofstream file(name + ".bmp", std::ios::binary);
    file.write(reinterpret_cast<const char*>(&head), sizeof head);
    file.write(reinterpret_cast<const char*>(&format.bmiHeader), sizeof format.bmiHeader);
    file.write(static_cast<const char*>(pixels), static_cast<std::streamsize>(bytes));
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, source);
}

std::vector<HWND> visibleChildren(HWND parent) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        if (IsWindowVisible(child) != FALSE) {
            children.push_back(child);
        }
    }
    return children;
}

RECT placeOf(HWND child) {
    RECT area{};
    GetWindowRect(child, &area);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&area), 2);
    return area;
}

std::string utf8(const std::wstring& text) {
    return {text.begin(), text.end()};
}

} // namespace

class DesktopAppearance : public DesktopTest {
protected:
    void startSong(const wchar_t* name) {
        start({std::filesystem::path(CORVMO_SOURCE_DIR) / L"songs" / name,
               std::filesystem::path(CORVMO_SOURCE_DIR) / L"songs" / L"auld-lang-syne.mid"});
        untilSent("0: 9");
    }

    /// To where the words have begun, and are shown.
    void goToWords() {
        const DrawnTexts watching;
        press(ID_POSITION, VK_RIGHT);
        press(ID_POSITION, VK_RIGHT);
        press(ID_POSITION, VK_RIGHT);
        ASSERT_TRUE(until([] {
            const std::vector<DrawnText> texts = DrawnTexts::take();
            return std::any_of(texts.begin(), texts.end(), [](const DrawnText& each) {
                return each.text.find(L"Planted") != std::wstring::npos &&
                       each.colour == desktop::kSung;
            });
        }));
    }

    void resize(const Look& look) {
        RECT area{};
        GetWindowRect(main(), &area);
        area.right = area.left + look.size.cx;
        area.bottom = area.top + look.size.cy;
        SendMessageW(main(), kDpiChanged, static_cast<WPARAM>(MAKELONG(look.dpi, look.dpi)),
                     reinterpret_cast<LPARAM>(&area));
        const bool shown = IsWindowVisible(control(ID_MIXER)) != FALSE;
        if (shown != look.mixer) {
            command(ID_SHOW_MIXER);
        }
    }

    void expectControlsApart() const {
        const std::vector<HWND> children = visibleChildren(main());
        RECT client{};
        GetClientRect(main(), &client);
        for (std::size_t i = 0; i < children.size(); ++i) {
            const RECT place = placeOf(children[i]);
            RECT common{};
            EXPECT_TRUE(UnionRect(&common, &place, &client) && EqualRect(&common, &client))
                << "control " << GetDlgCtrlID(children[i]) << " leaves the window";
            for (std::size_t j = 0; j < i; ++j) {
                const RECT other = placeOf(children[j]);
                EXPECT_FALSE(IntersectRect(&common, &place, &other))
                    << "controls " << GetDlgCtrlID(children[i]) << " and "
                    << GetDlgCtrlID(children[j]);
            }
        }
    }

    /// Of the system's controls, which draw their texts themselves.
    void expectControlsWideEnough() const {
        for (const HWND child : visibleChildren(main())) {
            wchar_t kind[32] = L"";
            GetClassNameW(child, kind, 32);
            std::wstring text = textOf(child);
            if (wcscmp(kind, L"ListBox") == 0 || GetDlgCtrlID(child) == ID_MESSAGE) {
                continue;
            }
            std::erase(text, L'&');
            const HDC dc = GetDC(child);
            const auto font = reinterpret_cast<HFONT>(SendMessageW(child, WM_GETFONT, 0, 0));
            const HGDIOBJ before = SelectObject(dc, font);
            SIZE size{};
            GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
            SelectObject(dc, before);
            ReleaseDC(child, dc);
            RECT client{};
            GetClientRect(child, &client);
            EXPECT_LE(size.cx, client.right) << utf8(text);
            EXPECT_LE(size.cy, client.bottom) << utf8(text);
        }
    }

    /// Whatever instruments a song uses.
    void expectInstrumentNamesFit(int dpi) const {
        const HWND mixer = control(ID_MIXER);
        const desktop::Scale scale(dpi);
        const auto boxes = desktop::layoutMixer(desktop::clientSize(mixer), scale);
        const desktop::Box& cell =
            boxes.channels[15][static_cast<std::size_t>(desktop::MixerCell::Name)];
        const desktop::Font font = desktop::interfaceFont(scale, cell.height());
        const desktop::MeasuringContext context;
        const desktop::Selected selected(context.handle(), font.handle());
        for (int program = 0; program < 128; ++program) {
            const std::string name = "16  " + std::string(host::instrumentName(program));
            EXPECT_LE(
                desktop::textSize(context.handle(), std::wstring(name.begin(), name.end())).width,
                cell.width())
                << name;
        }
    }

    static void expectTextsFit(const std::vector<DrawnText>& texts) {
        for (const DrawnText& each : texts) {
            EXPECT_LE(each.size.cx, each.place.right - each.place.left) << utf8(each.text);
            EXPECT_LE(each.size.cy, each.place.bottom - each.place.top) << utf8(each.text);
        }
    }
};

TEST_F(DesktopAppearance, Every_text_has_room_and_nothing_overlaps_at_any_size_and_scale) {
    startSong(L"daisy-bell.kar");
    goToWords();
    const DrawnTexts watching;
    for (const SIZE size : {SIZE{800, 600}, SIZE{1920, 1080}}) {
        for (const int dpi : {96, 144}) {
            for (const bool mixer : {false, true}) {
                const std::string name = "desktop-" + std::to_string(size.cx) + "x" +
                                         std::to_string(size.cy) + "-" + std::to_string(dpi) +
                                         (mixer ? "-mixer" : "");
                SCOPED_TRACE(name);
                resize({size, dpi, mixer});
                DrawnTexts::take();
                RedrawWindow(main(), nullptr, nullptr,
                             RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
                const std::vector<DrawnText> texts = DrawnTexts::take();
                EXPECT_GT(texts.size(), 2u);
                expectTextsFit(texts);
                expectControlsApart();
                expectControlsWideEnough();
                if (mixer) {
                    expectInstrumentNamesFit(dpi);
                }
                savePicture(main(), name);
            }
        }
    }
}

TEST_F(DesktopAppearance, Full_screen_and_the_second_window_show_the_words_alone) {
    startSong(L"daisy-bell.kar");
    press(ID_WORDS, VK_F2);
    HWND second = nullptr;
    ASSERT_TRUE(until([&] {
        second = FindWindowW(L"KaraokeWordsWindow", nullptr);
        return second != nullptr;
    }));
    goToWords();
    savePicture(second, "desktop-words");
    ASSERT_EQ(visibleChildren(second).size(), 1u);
    const HWND words = visibleChildren(second).front();
    RECT before{};
    GetWindowRect(second, &before);
    SetActiveWindow(second);
    press(words, VK_F11);
    EXPECT_EQ(desktop::clientSize(words).width, GetSystemMetrics(SM_CXSCREEN));
    press(words, VK_ESCAPE);
    RECT after{};
    GetWindowRect(second, &after);
    EXPECT_TRUE(EqualRect(&before, &after));
    SetActiveWindow(main());
    SetFocus(control(ID_WORDS));
    press(ID_WORDS, VK_F2);
    EXPECT_EQ(FindWindowW(L"KaraokeWordsWindow", nullptr), nullptr);

    GetWindowRect(main(), &before);
    press(ID_WORDS, VK_F11);
    RECT client{};
    GetClientRect(main(), &client);
    EXPECT_EQ(client.right, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(client.bottom, GetSystemMetrics(SM_CYSCREEN));
    EXPECT_EQ(visibleChildren(main()), std::vector<HWND>{control(ID_WORDS)});
    savePicture(main(), "desktop-full-screen");
    press(ID_WORDS, VK_ESCAPE);
    GetWindowRect(main(), &after);
    EXPECT_TRUE(EqualRect(&before, &after));
    EXPECT_NE(GetMenu(main()), nullptr);
}

TEST_F(DesktopAppearance, Tab_goes_round_every_control) {
    startSong(L"daisy-bell.kar");
    press(ID_WORDS, VK_F4);
    ASSERT_TRUE(until([&] { return IsWindowEnabled(control(ID_PLAY)) != FALSE; }));
    SetFocus(control(ID_WORDS));
    std::set<int> reached;
    for (int i = 0; i < 40; ++i) {
        reached.insert(GetDlgCtrlID(GetFocus()));
        press(GetFocus(), VK_TAB);
    }
    for (const int id : {ID_WORDS, ID_PLAYLIST, ID_MIXER, ID_POSITION, ID_PLAY, ID_STOP, ID_REWIND,
                         ID_PREVIOUS, ID_NEXT, ID_LOOP_BEGIN, ID_LOOP_END, ID_LOOP_CLEAR, ID_TEMPO,
                         ID_KEY, ID_FADE, ID_METRONOME, ID_PANIC}) {
        EXPECT_TRUE(reached.contains(id)) << "control " << id;
    }
}

TEST_F(DesktopAppearance, Places_and_panes_are_remembered) {
    start({});
    MoveWindow(main(), 40, 30, 700, 520, TRUE);
    press(ID_WORDS, VK_F3);
    press(ID_WORDS, VK_F4);
    close();
    start({});
    RECT place{};
    GetWindowRect(main(), &place);
    EXPECT_EQ(place.left, 40);
    EXPECT_EQ(place.right - place.left, 700);
    EXPECT_FALSE(IsWindowVisible(control(ID_PLAYLIST)));
    EXPECT_TRUE(IsWindowVisible(control(ID_MIXER)));
}
