// The fixture of the Windows player's tests: its main window on the tests' machine, driven by messages.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/main_window.h"
#include "desktop/resource.h"
#include "tests/support/machine_windows.h"
#include "tests/support/song_builder.h"

class DesktopTest : public ::testing::Test {
protected:
    DesktopTest();
    ~DesktopTest() override;

    /// Starts the program with songs on its command line.
    void start(const std::vector<std::wstring>& songs);
    /// Closes it as its listener would.
    void close();

    /// Lets the program run until something is so. False when a watchdog's time passes before.
    bool until(const std::function<bool()>& condition);
    /// Lets it run until a message was sent that begins with this text, "0: 90 3C" for output 0. Answers the
    /// index of the first one from an index on; fails the test when there is none.
    std::size_t untilSent(const std::string& beginning, std::size_t from = 0);
    void command(int id);
    /// A key pressed while a control has the keyboard.
    void press(HWND control, WPARAM key);
    void press(int id, WPARAM key) {
        press(control(id), key);
    }
    void click(HWND control, POINT point);
    void drag(HWND control, POINT from, POINT to);

    HWND main() const {
        return m_window->window();
    }
    HWND control(int id) const {
        return GetDlgItem(main(), id);
    }
    std::wstring textOf(HWND window) const;
    /// The message above everything; empty = there is none.
    std::wstring message() const;
    /// All that was sent so far, "0: 90 3C 64".
    const std::vector<std::string>& sent();

    /// Writes a song to a file of a name of its own in the tests' folder.
    std::wstring song(const std::wstring& name, const SongBuilder& builder) const;
    const std::filesystem::path& folder() const {
        return m_folder;
    }

private:
    void pump();

    std::filesystem::path m_folder;
    std::unique_ptr<desktop::MainWindow> m_window;
    std::vector<std::string> m_sent;
    std::vector<Sent> m_log;
};

/// Notes one after the other, an eighth each, on a channel with a word each; the keys rise from 36 on.
SongBuilder risingNotes(int count, int channel = 0, std::uint32_t tempo = 250000);

/// The keys of the notes begun on an output and channel, from an index of the log on.
std::vector<int> keysOf(const std::vector<std::string>& sent, int output, int channel,
                        std::size_t from = 0);
