// What the main window does when it is asked by menu, key, button or mouse.
#include <algorithm>

#include "desktop/dialogs.h"
#include "desktop/encodings.h"
#include "desktop/main_window.h"
#include "desktop/resource.h"
#include "desktop/song_desk.h"
#include "desktop/speed.h"

namespace desktop {

namespace {

constexpr int kTempoStep = 5;
constexpr double kJumpSeconds = 5;

constexpr const wchar_t* kKeys = L"Everywhere\n"
                                 L"Ctrl+O\topen songs\n"
                                 L"F5 / F6\tplay or pause / stop\n"
                                 L"Ctrl+Home\tback to the beginning\n"
                                 L"Ctrl+Left / Right\t5 seconds back / forward\n"
                                 L"F7 / F8 / Shift+F8\tloop from here / to here / no loop\n"
                                 L"Ctrl+Plus / Minus\tfaster / slower\n"
                                 L"Ctrl+Up / Down\tkey up / down\n"
                                 L"Ctrl+0\ttempo and key as written\n"
                                 L"Ctrl+F\tfade out\n"
                                 L"F9\tmetronome\n"
                                 L"Ctrl+.\tpanic: silence everything\n"
                                 L"F2\twords in a window of their own\n"
                                 L"F3 / F4\tplay list / mixer\n"
                                 L"F11\tfull screen; Esc leaves it\n"
                                 L"Tab\tnext control; Alt and the underlined letter: that one\n"
                                 L"\n"
                                 L"While the words have the keyboard\n"
                                 L"Space\tplay or pause\n"
                                 L"Left / Right\t5 seconds back / forward\n"
                                 L"Up / Down\tkey up / down\n"
                                 L"+ / -\tfaster / slower\n"
                                 L"Page Up / Down\tprevious / next song\n"
                                 L"\n"
                                 L"In the mixer\n"
                                 L"arrows\tfrom cell to cell\n"
                                 L"+ / -\tmore / less\n"
                                 L"Space\tmute or solo on and off\n"
                                 L"Delete\tas the song has it";

} // namespace

const std::vector<std::pair<int, void (MainWindow::*)()>>& MainWindow::commands() {
    static const std::vector<std::pair<int, void (MainWindow::*)()>> kCommands = {
        {ID_OPEN, &MainWindow::open},
        {ID_ADD, &MainWindow::add},
        {ID_REMOVE, &MainWindow::removeChosen},
        {ID_CLEAR, &MainWindow::clearList},
        {ID_MOVE_UP, &MainWindow::moveChosenUp},
        {ID_MOVE_DOWN, &MainWindow::moveChosenDown},
        {ID_PLAY_CHOSEN, &MainWindow::playChosen},
        {ID_PLAY_SECOND, &MainWindow::playChosenSecond},
        {ID_STOP_SECOND, &MainWindow::stopSecond},
        {ID_OUTPUTS, &MainWindow::chooseOutputs},
        {ID_EXIT, &MainWindow::close},
        {ID_PLAY, &MainWindow::playOrPause},
        {ID_STOP, &MainWindow::stop},
        {ID_REWIND, &MainWindow::rewind},
        {ID_PREVIOUS, &MainWindow::previousSong},
        {ID_NEXT, &MainWindow::nextSong},
        {ID_BACK, &MainWindow::back},
        {ID_FORWARD, &MainWindow::forward},
        {ID_LOOP_BEGIN, &MainWindow::beginLoop},
        {ID_LOOP_END, &MainWindow::endLoop},
        {ID_LOOP_CLEAR, &MainWindow::clearLoop},
        {ID_SLOWER, &MainWindow::slower},
        {ID_FASTER, &MainWindow::faster},
        {ID_KEY_DOWN, &MainWindow::keyDown},
        {ID_KEY_UP, &MainWindow::keyUp},
        {ID_AS_WRITTEN, &MainWindow::asWritten},
        {ID_FADE, &MainWindow::fadeOut},
        {ID_METRONOME, &MainWindow::toggleMetronome},
        {ID_PANIC, &MainWindow::panic},
        {ID_SHOW_PLAYLIST, &MainWindow::togglePlayList},
        {ID_SHOW_MIXER, &MainWindow::toggleMixer},
        {ID_FULL_SCREEN, &MainWindow::toggleFullScreen},
        {ID_WORDS_WINDOW, &MainWindow::toggleWordsWindow},
        {ID_MENU_KEYS, &MainWindow::explainKeys},
        {ID_ABOUT, &MainWindow::about},
        {IDOK, &MainWindow::accept},
        {IDCANCEL, &MainWindow::dismiss},
    };
    return kCommands;
}

bool MainWindow::command(int id, int notification) {
    if (id == ID_TEMPO || id == ID_KEY) {
        if (notification != EN_CHANGE || !m_strip) {
            return false;
        }
        if (const auto speed = id == ID_TEMPO ? m_strip->enteredSpeed() : std::nullopt) {
            ask([speed](SongDesk& desk) { desk.setTempoPercent(percentOf(*speed)); });
        }
        if (const auto key = id == ID_KEY ? m_strip->enteredKey() : std::nullopt) {
            ask([key](SongDesk& desk) { desk.setTranspose(*key); });
        }
        return true;
    }
    if (id == ID_PLAYLIST) {
        if (notification == LBN_DBLCLK) {
            playChosen();
        }
        return true;
    }
    if (id >= ID_ENCODING_FIRST && id <= ID_ENCODING_LAST) {
        const std::string name = kEncodings[static_cast<std::size_t>(id - ID_ENCODING_FIRST)].name;
        ask([name](SongDesk& desk) { desk.setEncoding(name); });
        return true;
    }
    const auto found = std::find_if(commands().begin(), commands().end(),
                                    [id](const auto& known) { return known.first == id; });
    if (found == commands().end()) {
        return false;
    }
    (this->*found->second)();
    return true;
}

void MainWindow::ask(std::function<void(SongDesk&)> request) {
    if (m_session) {
        m_session->ask(std::move(request));
    }
}

void MainWindow::openSongs(const std::vector<std::wstring>& paths, bool playFirst) {
    if (paths.empty()) {
        return;
    }
    const std::size_t first = m_playList.paths().size();
    m_playList.add(paths);
    showList();
    if (playFirst) {
        playSong(first);
    }
}

void MainWindow::playSong(std::size_t index) {
    m_playList.select(index);
    m_trouble.clear();
    showList();
    SendMessageW(m_list, LB_SETCURSEL, index, 0);
    const std::wstring path = m_playList.paths()[index];
    ask([path](SongDesk& desk) {
        desk.open(path);
        desk.playOrPause();
    });
}

std::optional<std::size_t> MainWindow::chosen() const {
    const LRESULT index = SendMessageW(m_list, LB_GETCURSEL, 0, 0);
    return index < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(index));
}

void MainWindow::open() {
    openSongs(askForSongs(window()), true);
}

void MainWindow::add() {
    openSongs(askForSongs(window()), false);
}

void MainWindow::removeChosen() {
    if (const auto index = chosen()) {
        m_playList.remove(*index);
        showList();
        const std::size_t left = m_playList.paths().size();
        SendMessageW(m_list, LB_SETCURSEL, left == 0 ? 0 : std::min(*index, left - 1), 0);
    }
}

void MainWindow::clearList() {
    m_playList.clear();
    showList();
}

void MainWindow::moveChosen(int direction) {
    if (const auto index = chosen()) {
        const std::size_t moved = m_playList.move(*index, direction);
        showList();
        SendMessageW(m_list, LB_SETCURSEL, moved, 0);
    }
}

void MainWindow::moveChosenUp() {
    moveChosen(-1);
}

void MainWindow::moveChosenDown() {
    moveChosen(1);
}

void MainWindow::playChosen() {
    if (const auto index = chosen()) {
        playSong(*index);
    }
}

void MainWindow::playChosenSecond() {
    if (const auto index = chosen()) {
        const std::wstring path = m_playList.paths()[*index];
        ask([path](SongDesk& desk) { desk.openSecond(path); });
    }
}

void MainWindow::stopSecond() {
    ask(&SongDesk::stopSecond);
}

void MainWindow::chooseOutputs() {
    const auto choice = askForOutputs(window(), m_settings.outputs);
    if (choice && *choice != m_settings.outputs) {
        m_settings.outputs = *choice;
        m_trouble.clear();
        m_session->chooseOutputs(*choice);
    }
}

void MainWindow::close() {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (m_fullScreen.on()) {
        m_fullScreen.toggle(window());
    }
    GetWindowPlacement(window(), &placement);
    const RECT& area = placement.rcNormalPosition;
    m_settings.place = {area.left, area.top, area.right, area.bottom};
    writeProgramSettings(m_settingsFile, m_settings);
    ShowWindow(window(), SW_HIDE);
    m_wordsWindow.reset();
    m_session.reset();
    DestroyWindow(window());
}

void MainWindow::playOrPause() {
    if (!m_state.song && !m_playList.paths().empty()) {
        playSong(m_playList.current().value_or(chosen().value_or(0)));
        return;
    }
    ask(&SongDesk::playOrPause);
}

void MainWindow::stop() {
    ask(&SongDesk::stop);
}

void MainWindow::rewind() {
    ask(&SongDesk::rewind);
}

void MainWindow::previousSong() {
    if (const auto index = m_playList.neighbour(-1)) {
        playSong(*index);
    }
}

void MainWindow::nextSong() {
    if (const auto index = m_playList.neighbour(1)) {
        playSong(*index);
    }
}

void MainWindow::back() {
    ask([](SongDesk& desk) { desk.seekSeconds(-kJumpSeconds); });
}

void MainWindow::forward() {
    ask([](SongDesk& desk) { desk.seekSeconds(kJumpSeconds); });
}

void MainWindow::beginLoop() {
    ask(&SongDesk::beginLoop);
}

void MainWindow::endLoop() {
    ask(&SongDesk::endLoop);
}

void MainWindow::clearLoop() {
    ask(&SongDesk::clearLoop);
}

void MainWindow::slower() {
    ask([](SongDesk& desk) { desk.stepSpeed(-kTempoStep); });
}

void MainWindow::faster() {
    ask([](SongDesk& desk) { desk.stepSpeed(kTempoStep); });
}

void MainWindow::keyDown() {
    ask([](SongDesk& desk) { desk.stepTranspose(-1); });
}

void MainWindow::keyUp() {
    ask([](SongDesk& desk) { desk.stepTranspose(1); });
}

void MainWindow::asWritten() {
    ask([](SongDesk& desk) {
        desk.setTempoPercent(0);
        desk.setTranspose(0);
    });
}

void MainWindow::fadeOut() {
    ask(&SongDesk::fadeOut);
}

void MainWindow::toggleMetronome() {
    ask(&SongDesk::toggleMetronome);
}

void MainWindow::panic() {
    ask(&SongDesk::panic);
}

void MainWindow::togglePlayList() {
    m_settings.playList = !m_settings.playList;
    place();
}

void MainWindow::toggleMixer() {
    m_settings.mixer = !m_settings.mixer;
    place();
}

void MainWindow::toggleFullScreen() {
    if (m_wordsWindow && GetActiveWindow() == m_wordsWindow->window()) {
        m_wordsWindow->toggleFullScreen();
        return;
    }
    m_fullScreen.toggle(window());
    place();
}

void MainWindow::toggleWordsWindow() {
    if (m_wordsWindow) {
        m_wordsWindow.reset();
    } else {
        m_wordsWindow = std::make_unique<WordsWindow>(window());
    }
}

/// Enter.
void MainWindow::accept() {
    if (GetFocus() == m_list) {
        playChosen();
    }
}

/// Esc.
void MainWindow::dismiss() {
    if (m_wordsWindow && m_wordsWindow->fullScreen() &&
        GetActiveWindow() == m_wordsWindow->window()) {
        m_wordsWindow->toggleFullScreen();
    } else if (m_fullScreen.on()) {
        toggleFullScreen();
    } else {
        m_trouble.clear();
        showMessage();
    }
}

void MainWindow::explainKeys() {
    MessageBoxW(window(), kKeys, L"Keys", MB_OK);
}

void MainWindow::about() {
    MessageBoxW(window(),
                L"Karaoke " KARAOKE_WIDE_VERSION L"\n\nPlays and shows songs with corvmo32.",
                L"About", MB_OK);
}

} // namespace desktop
