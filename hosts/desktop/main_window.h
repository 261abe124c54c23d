// The main window: the words, the transport, and the play list and mixer when they are wanted.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/full_screen.h"
#include "desktop/gdi.h"
#include "desktop/main_layout.h"
#include "desktop/mixer_pane.h"
#include "desktop/play_list.h"
#include "desktop/position_bar.h"
#include "desktop/program_settings.h"
#include "desktop/session.h"
#include "desktop/transport_strip.h"
#include "desktop/window.h"
#include "desktop/words_pane.h"
#include "desktop/words_window.h"

namespace desktop {

class MainWindow final : public Window {
public:
    /// Shows the window and has the engine started.
    /// @param songs         put into the play list; the first one is played
    /// @param settingsFile  of the program; empty = nothing is remembered
    MainWindow(const std::vector<std::wstring>& songs, std::filesystem::path settingsFile);
    ~MainWindow() override;

    /// Takes messages that are keys of the program. Others are to be dispatched.
    bool takeKey(MSG& message);

private:
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;

    // What the window is made of.
    void makeControls();
    void makeList();
    void useFonts(int dpi);
    void place();
    int messageHeight() const;
    Shown shown() const;
    void fillEncodingMenu() const;
    void limitSize(MINMAXINFO& limits) const;
    void useDpi(int dpi, const RECT& suggested);
    LRESULT paintControl(HDC dc) const;

    // What it shows.
    void refresh();
    WordsMoment moment() const;
    std::wstring notice() const;
    std::wstring messageText() const;
    void showMessage();
    void showList();
    void showTitle() const;
    void checkMenu() const;
    void takeSessionEvent(SessionEvent event);

    // What it does.
    static const std::vector<std::pair<int, void (MainWindow::*)()>>& commands();
    void ask(std::function<void(SongDesk&)> request);
    bool command(int id, int notification);
    void openSongs(const std::vector<std::wstring>& paths, bool playFirst);
    void playSong(std::size_t index);
    std::optional<std::size_t> chosen() const;

    void open();
    void add();
    void removeChosen();
    void clearList();
    void moveChosenUp();
    void moveChosenDown();
    void moveChosen(int direction);
    void playChosen();
    void playChosenSecond();
    void stopSecond();
    void chooseOutputs();
    void close();
    void playOrPause();
    void stop();
    void rewind();
    void previousSong();
    void nextSong();
    void back();
    void forward();
    void beginLoop();
    void endLoop();
    void clearLoop();
    void slower();
    void faster();
    void keyDown();
    void keyUp();
    void asWritten();
    void fadeOut();
    void toggleMetronome();
    void panic();
    void togglePlayList();
    void toggleMixer();
    void toggleFullScreen();
    void toggleWordsWindow();
    void accept();
    void dismiss();
    void explainKeys();
    void about();

    std::filesystem::path m_settingsFile;
    ProgramSettings m_settings;
    PlayList m_playList;
    SessionState m_state;
    std::wstring m_trouble; ///< what could not be done, until it is dismissed or a song is opened
    std::wstring m_message; ///< what is shown above everything
    DWORD m_openedAt = 0;   ///< system time at which the song was opened
    Scale m_scale{Scale::kUsualDpi};
    Font m_font;
    HBRUSH m_brush = nullptr;
    HACCEL m_keys = nullptr;
    HWND m_list = nullptr;
    HWND m_messageStrip = nullptr;
    FullScreen m_fullScreen;
    std::unique_ptr<WordsPane> m_words;
    std::unique_ptr<PositionBar> m_position;
    std::unique_ptr<MixerPane> m_mixer;
    std::unique_ptr<TransportStrip> m_strip;
    std::unique_ptr<WordsWindow> m_wordsWindow;
    std::unique_ptr<Session> m_session;
};

} // namespace desktop
