// Runs the program's message loop inside a test.
#include "tests/desktop/desktop_test.h"

#include <commctrl.h>

#include <fstream>
#include <iterator>

#include "tests/support/import_table.h"
#include "tests/support/sounding.h"

namespace {

constexpr DWORD kWatchdog = 20000; ///< milliseconds
constexpr DWORD kFrame = 20;       ///< milliseconds between two looks at a condition
constexpr int kOutputs = 2;

/// The names of the machine's outputs.
MMRESULT WINAPI outputCapabilities(UINT_PTR output, MIDIOUTCAPSW* capabilities, UINT) {
    const std::wstring name = L"Test output " + std::to_wstring(output + 1);
    name.copy(capabilities->szPname, MAXPNAMELEN - 1);
    return output < kOutputs ? MMSYSERR_NOERROR : MMSYSERR_BADDEVICEID;
}

LPARAM pack(POINT point) {
    return MAKELPARAM(point.x, point.y);
}

} // namespace

DesktopTest::DesktopTest()
    : m_folder(
          std::filesystem::absolute(L"desktop_test_" + std::to_wstring(GetCurrentProcessId()))) {
    std::filesystem::remove_all(m_folder);
    std::filesystem::create_directories(m_folder);
    _wputenv_s(L"APPDATA", m_folder.c_str());
    InitCommonControls();
    machine::setUpRealTime(kOutputs);
    machine::takeOver(GetModuleHandleA("corvmo32.dll"));
    replaceImport(GetModuleHandleW(nullptr), "midiOutGetDevCapsW",
                  reinterpret_cast<const void*>(&outputCapabilities));
}

DesktopTest::~DesktopTest() {
    close();
    machine::tearDown();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

void DesktopTest::start(const std::vector<std::wstring>& songs) {
    m_window = std::make_unique<desktop::MainWindow>(songs, desktop::programSettingsFile());
}

void DesktopTest::close() {
    if (!m_window) {
        return;
    }
    SendMessageW(main(), WM_CLOSE, 0, 0);
    m_window.reset();
    for (MSG rest; PeekMessageW(&rest, nullptr, 0, 0, PM_REMOVE) != 0;) {
    }
    sent();
    EXPECT_THAT(stillSounding(m_log), testing::IsEmpty()) << "after closing";
}

void DesktopTest::pump() {
    MSG next;
    while (PeekMessageW(&next, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (!m_window->takeKey(next)) {
            TranslateMessage(&next);
            DispatchMessageW(&next);
        }
    }
}

bool DesktopTest::until(const std::function<bool()>& condition) {
    const DWORD start = GetTickCount();
    pump();
    while (!condition()) {
        if (GetTickCount() - start > kWatchdog) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kFrame, QS_ALLINPUT);
        pump();
    }
    return true;
}

std::size_t DesktopTest::untilSent(const std::string& beginning, std::size_t from) {
    std::size_t found = from;
    const bool came = until([&] {
        while (found < sent().size() && !m_sent[found].starts_with(beginning)) {
            ++found;
        }
        return found < m_sent.size();
    });
    EXPECT_TRUE(came) << beginning << " was not sent";
    return found;
}

void DesktopTest::command(int id) {
    PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(id), 0);
    pump();
}

void DesktopTest::press(HWND control, WPARAM key) {
    PostMessageW(control, WM_KEYDOWN, key, 1);
    PostMessageW(control, WM_KEYUP, key, 1);
    pump();
}

void DesktopTest::click(HWND control, POINT point) {
    PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, pack(point));
    PostMessageW(control, WM_LBUTTONUP, 0, pack(point));
    pump();
}

void DesktopTest::drag(HWND control, POINT from, POINT to) {
    PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, pack(from));
    PostMessageW(control, WM_MOUSEMOVE, MK_LBUTTON, pack({(from.x + to.x) / 2, from.y}));
    PostMessageW(control, WM_MOUSEMOVE, MK_LBUTTON, pack(to));
    PostMessageW(control, WM_LBUTTONUP, 0, pack(to));
    pump();
}

std::wstring DesktopTest::textOf(HWND window) const {
    std::wstring text(512, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), 512)));
    return text;
}

std::wstring DesktopTest::message() const {
    const HWND strip = control(ID_MESSAGE);
    return IsWindowVisible(strip) != FALSE ? textOf(strip) : std::wstring();
}

const std::vector<std::string>& DesktopTest::sent() {
    const std::vector<Sent> fresh = machine::takeSent();
    m_log.insert(m_log.end(), fresh.begin(), fresh.end());
    const std::vector<std::string> lines = toText(fresh);
    m_sent.insert(m_sent.end(), lines.begin(), lines.end());
    return m_sent;
}

std::wstring DesktopTest::song(const std::wstring& name, const SongBuilder& builder) const {
    const Bytes bytes = builder.bytes();
    const std::filesystem::path path = m_folder / name;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return path.native();
}

SongBuilder risingNotes(int count, int channel, std::uint32_t tempo) {
    constexpr std::uint32_t kEighth = 240;
    constexpr int kEndOfTrack = 0x2F;
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.meta(3, "Rising").tempo(tempo).program(channel, 5).controller(channel, 7, 90);
    for (int i = 0; i < count; ++i) {
        track.at(static_cast<std::uint32_t>(i) * kEighth);
        track.lyric((i % 8 == 0 && i > 0 ? "\rword" : "word") + std::to_string(i) + " ");
        track.note(channel, 36 + i, kEighth / 2);
    }
    track.meta(kEndOfTrack, {});
    return song;
}

std::vector<int> keysOf(const std::vector<std::string>& sent, int output, int channel,
                        std::size_t from) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    const std::string beginning = std::to_string(output) + ": 9" + kDigits[channel] + " ";
    std::vector<int> keys;
    for (std::size_t i = from; i < sent.size(); ++i) {
        if (sent[i].starts_with(beginning) && !sent[i].ends_with(" 00")) {
            keys.push_back(std::stoi(sent[i].substr(beginning.size(), 2), nullptr, 16));
        }
    }
    return keys;
}
