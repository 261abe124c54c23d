// The main window's parts, their places and what they show.
#include "desktop/main_window.h"

#include <commctrl.h>
#include <shellapi.h>

#include <utility>

#include "desktop/colours.h"
#include "desktop/dialogs.h"
#include "desktop/encodings.h"
#include "desktop/resource.h"
#include "desktop/song_desk.h"
#include "desktop/system_features.h"
#include "shared/wide_text.h"

namespace desktop {

namespace {

constexpr const wchar_t* kProgramName = L"Karaoke";
constexpr Size kFirstClient = {960, 600};
constexpr UINT_PTR kFrameTimer = 1;
constexpr UINT kFrame = 30; ///< milliseconds between two looks at the session
constexpr UINT kDpiChanged = 0x02E0;
constexpr int kMessageMargin = 6;
constexpr DWORD kMendedShown = 10000; ///< milliseconds in which it is told that a song was mended
constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

RECT toScreenRect(const Box& box) {
    return toRect(box);
}

bool onSomeScreen(const Box& box) {
    const RECT area = toScreenRect(box);
    return !box.empty() && MonitorFromRect(&area, MONITOR_DEFAULTTONULL) != nullptr;
}

} // namespace

MainWindow::MainWindow(const std::vector<std::wstring>& songs, std::filesystem::path settingsFile)
    : m_settingsFile(std::move(settingsFile)), m_settings(readProgramSettings(m_settingsFile)),
      m_brush(CreateSolidBrush(kPanel)),
      m_keys(LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_KEYS))) {
    create({.className = L"KaraokeMain",
            .title = kProgramName,
            .style = kStyle,
            .menu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_MENU))});
    fillEncodingMenu();
    makeControls();
    useFonts(dpiOf(window()));
    if (onSomeScreen(m_settings.place)) {
        const RECT area = toScreenRect(m_settings.place);
        MoveWindow(window(), area.left, area.top, area.right - area.left, area.bottom - area.top,
                   FALSE);
    } else {
        const SIZE outer = outerSize({m_scale(kFirstClient.width), m_scale(kFirstClient.height)},
                                     kStyle, true, m_scale.dpi());
        SetWindowPos(window(), nullptr, 0, 0, outer.cx, outer.cy, SWP_NOMOVE | SWP_NOZORDER);
    }
    place();
    ShowWindow(window(), SW_SHOWNORMAL);
    SetFocus(m_words->window());
    DragAcceptFiles(window(), TRUE);
    SetTimer(window(), kFrameTimer, kFrame, nullptr);
    m_session = std::make_unique<Session>(window(), m_settings.outputs);
    openSongs(withoutFolders(songs), true);
    refresh();
}

MainWindow::~MainWindow() {
    DeleteObject(m_brush);
}

void MainWindow::makeControls() {
    m_messageStrip =
        CreateWindowExW(0, L"STATIC", L"", WS_CHILD | SS_NOPREFIX, 0, 0, 0, 0, window(),
                        reinterpret_cast<HMENU>(INT_PTR{ID_MESSAGE}), nullptr, nullptr);
    m_words = std::make_unique<WordsPane>(window(), ID_WORDS, window());
    makeList();
    m_mixer = std::make_unique<MixerPane>(
        window(), ID_MIXER, [this](int channel, const host::ChannelSettings& settings) {
            ask([channel, settings](SongDesk& desk) { desk.setChannel(channel, settings); });
        });
    m_position = std::make_unique<PositionBar>(
        window(), ID_POSITION,
        PositionBar::Actions{
            [this](std::uint32_t tick) { ask([tick](SongDesk& desk) { desk.seek(tick); }); },
            [this](double by) { ask([by](SongDesk& desk) { desk.seekSeconds(by); }); },
            [this](std::uint32_t from, std::uint32_t to) {
                ask([from, to](SongDesk& desk) { desk.setLoop(from, to); });
            }});
    m_strip = std::make_unique<TransportStrip>(window());
}

void MainWindow::makeList() {
    constexpr DWORD kListStyle = WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_NOTIFY |
                                 LBS_NOINTEGRALHEIGHT | LBS_WANTKEYBOARDINPUT;
    m_list = CreateWindowExW(0, L"LISTBOX", L"Play list", kListStyle, 0, 0, 0, 0, window(),
                             reinterpret_cast<HMENU>(INT_PTR{ID_PLAYLIST}), nullptr, nullptr);
}

void MainWindow::fillEncodingMenu() const {
    constexpr int kViewMenu = 2;
    constexpr int kEncodingMenu = 4;
    const HMENU menu = GetSubMenu(GetSubMenu(GetMenu(window()), kViewMenu), kEncodingMenu);
    for (std::size_t i = 1; i < kEncodings.size(); ++i) {
        AppendMenuW(menu, MF_STRING, ID_ENCODING_FIRST + i, kEncodings[i].label);
    }
}

void MainWindow::useFonts(int dpi) {
    m_scale = Scale(dpi);
    m_font = interfaceFont(m_scale);
    for (const HWND control : {m_list, m_messageStrip}) {
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(m_font.handle()), TRUE);
    }
    m_strip->setFont(m_font.handle(), m_scale);
    m_position->setFont(m_font.handle());
    m_mixer->setScale(m_scale);
}

void MainWindow::useDpi(int dpi, const RECT& suggested) {
    useFonts(dpi);
    SetWindowPos(window(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    place();
}

int MainWindow::messageHeight() const {
    if (m_message.empty()) {
        return 0;
    }
    const MeasuringContext context;
    const Selected selected(context.handle(), m_font.handle());
    RECT area = {0, 0, clientSize(window()).width - m_scale(kMessageMargin), 0};
    DrawTextW(context.handle(), m_message.c_str(), static_cast<int>(m_message.size()), &area,
              DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    return area.bottom + m_scale(kMessageMargin);
}

Shown MainWindow::shown() const {
    return {.playList = m_settings.playList,
            .mixer = m_settings.mixer,
            .wordsAlone = m_fullScreen.on(),
            .messageHeight = messageHeight()};
}

void MainWindow::place() {
    if (!m_strip) {
        return;
    }
    const MainBoxes boxes = layoutMain(clientSize(window()), m_scale, shown(), m_strip->items());
    const auto put = [](HWND part, const Box& box) {
        MoveWindow(part, box.left, box.top, box.width(), box.height(), TRUE);
        ShowWindow(part, box.empty() ? SW_HIDE : SW_SHOWNA);
    };
    Box message = boxes.message;
    message.left += message.empty() ? 0 : m_scale(kMessageMargin);
    put(m_messageStrip, message);
    put(m_words->window(), boxes.words);
    put(m_list, boxes.playList);
    put(m_mixer->window(), boxes.mixer);
    put(m_position->window(), boxes.position);
    m_strip->place(boxes.strip);
    if (IsWindowVisible(GetFocus()) == FALSE) {
        SetFocus(boxes.words.empty() ? m_mixer->window() : m_words->window());
    }
}

void MainWindow::limitSize(MINMAXINFO& limits) const {
    const SIZE outer = outerSize({m_scale(kSmallestClient.width), m_scale(kSmallestClient.height)},
                                 kStyle, true, m_scale.dpi());
    limits.ptMinTrackSize = {outer.cx, outer.cy};
}

std::wstring MainWindow::notice() const {
    switch (m_state.engine) {
    case SessionState::Engine::Starting:
        return L"Starting the MIDI outputs\x2026";
    case SessionState::Engine::Failed:
        return L"The engine does not run";
    case SessionState::Engine::Runs:
        break;
    }
    if (!m_state.song) {
        return L"Open a song with Ctrl+O, or drop it here";
    }
    return L"This song has no words";
}

WordsMoment MainWindow::moment() const {
    return {m_state.song, m_state.lyric, m_state.chord, m_state.shownPosition, notice()};
}

std::wstring MainWindow::messageText() const {
    if (!m_trouble.empty()) {
        return m_trouble + L"  (Esc: close this message)";
    }
    if (m_state.engine == SessionState::Engine::Runs && !m_state.hasOutput) {
        return L"There is no MIDI output: songs play in silence.";
    }
    const bool lately = GetTickCount() - m_openedAt < kMendedShown;
    return m_state.mended.empty() || !lately
               ? std::wstring()
               : L"The song's file was not as it should be: " + m_state.mended;
}

void MainWindow::showMessage() {
    std::wstring text = messageText();
    if (text == m_message) {
        return;
    }
    m_message = std::move(text);
    SetWindowTextW(m_messageStrip, m_message.c_str());
    place();
}

void MainWindow::refresh() {
    if (!m_session) {
        return;
    }
    const std::shared_ptr<const host::Song> before = m_state.song;
    m_state = m_session->state();
    if (m_state.song && !before) {
        m_openedAt = GetTickCount();
    }
    m_words->show(moment());
    m_position->show(m_state);
    m_mixer->show(m_state);
    m_strip->show(m_state);
    if (m_wordsWindow) {
        m_wordsWindow->show(moment());
    }
    showMessage();
}

void MainWindow::showTitle() const {
    const std::wstring title = m_state.song
                                   ? host::toWide(m_state.song->title) + L" \x2013 " + kProgramName
                                   : kProgramName;
    SetWindowTextW(window(), title.c_str());
}

void MainWindow::showList() {
    const LRESULT chosen = SendMessageW(m_list, LB_GETCURSEL, 0, 0);
    SendMessageW(m_list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(m_list, LB_RESETCONTENT, 0, 0);
    const MeasuringContext context;
    const Selected selected(context.handle(), m_font.handle());
    int widest = 0;
    for (std::size_t i = 0; i < m_playList.paths().size(); ++i) {
        const bool current = m_playList.current() == i;
        const std::wstring name =
            (current ? L"\x25BA " : L"    ") + songName(m_playList.paths()[i]);
        SendMessageW(m_list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
        widest = std::max(widest, textSize(context.handle(), name).width);
    }
    SendMessageW(m_list, LB_SETHORIZONTALEXTENT,
                 static_cast<WPARAM>(widest + m_scale(kMessageMargin)), 0);
    SendMessageW(m_list, LB_SETCURSEL, static_cast<WPARAM>(chosen), 0);
    SendMessageW(m_list, WM_SETREDRAW, TRUE, 0);
}

void MainWindow::checkMenu() const {
    const HMENU menu = GetMenu(window());
    const auto check = [menu](int id, bool on) {
        CheckMenuItem(menu, static_cast<UINT>(id),
                      static_cast<UINT>(MF_BYCOMMAND | (on ? MF_CHECKED : MF_UNCHECKED)));
    };
    check(ID_SHOW_PLAYLIST, m_settings.playList);
    check(ID_SHOW_MIXER, m_settings.mixer);
    check(ID_WORDS_WINDOW, m_wordsWindow != nullptr);
    check(ID_METRONOME, m_state.metronome);
    for (std::size_t i = 0; i < kEncodings.size(); ++i) {
        check(ID_ENCODING_FIRST + static_cast<int>(i),
              m_state.settings.encoding == kEncodings[i].name);
    }
}

void MainWindow::takeSessionEvent(SessionEvent event) {
    switch (event) {
    case SessionEvent::StateChanged:
        refresh();
        showTitle();
        // A screen that goes dark would hide the words.
        SetThreadExecutionState(ES_CONTINUOUS | (m_state.playing ? ES_DISPLAY_REQUIRED : 0u));
        break;
    case SessionEvent::SongEnded:
        if (const auto next = m_playList.neighbour(1)) {
            playSong(*next);
        }
        break;
    case SessionEvent::Trouble:
        for (std::wstring text = m_session->takeTrouble(); !text.empty();
             text = m_session->takeTrouble()) {
            m_trouble = text;
        }
        showMessage();
        break;
    }
}

LRESULT MainWindow::paintControl(HDC dc) const {
    SetTextColor(dc, kPanelText);
    SetBkColor(dc, kPanel);
    return reinterpret_cast<LRESULT>(m_brush);
}

bool MainWindow::takeKey(MSG& message) {
    const HWND top = GetAncestor(message.hwnd, GA_ROOT);
    const bool own = top == window() || (m_wordsWindow && top == m_wordsWindow->window());
    if (!own) {
        return false;
    }
    return TranslateAcceleratorW(window(), m_keys, &message) != 0 ||
           IsDialogMessageW(top, &message) != FALSE;
}

LRESULT MainWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        place();
        return 0;
    case WM_GETMINMAXINFO:
        limitSize(*reinterpret_cast<MINMAXINFO*>(lParam));
        return 0;
    case kDpiChanged:
        useDpi(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
        return 0;
    case WM_ERASEBKGND: {
        const RECT area = toRect({0, 0, clientSize(window()).width, clientSize(window()).height});
        FillRect(reinterpret_cast<HDC>(wParam), &area, m_brush);
        return 1;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORLISTBOX:
        return paintControl(reinterpret_cast<HDC>(wParam));
    case WM_TIMER:
        refresh();
        return 0;
    case kSessionMessage:
        if (m_session) {
            takeSessionEvent(static_cast<SessionEvent>(wParam));
        }
        return 0;
    case WM_INITMENUPOPUP:
        checkMenu();
        return 0;
    case WM_DROPFILES:
        openSongs(droppedSongs(reinterpret_cast<HDROP>(wParam)), !m_state.playing);
        return 0;
    case WM_VKEYTOITEM:
        if (LOWORD(wParam) == VK_DELETE) {
            removeChosen();
            return -2;
        }
        return -1;
    case WM_COMMAND:
        return command(LOWORD(wParam), HIWORD(wParam)) ? 0 : defaultAnswer(message, wParam, lParam);
    case WM_CLOSE:
        close();
        return 0;
    case WM_ENDSESSION:
        if (wParam != FALSE) {
            m_session.reset();
        }
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return defaultAnswer(message, wParam, lParam);
    }
}

} // namespace desktop
