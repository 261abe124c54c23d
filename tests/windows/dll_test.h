// The fixture of the DLL's tests: the loaded library on the tests' machine, with the system's own timer.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/machine_windows.h"
#include "tests/support/song_builder.h"
#include "tests/support/sounding.h"
#include "tests/windows/dll.h"
#include "tests/windows/notify_window.h"

constexpr std::uint16_t kAllOptions = 0x7F;
constexpr std::int16_t kPeriod = 5; ///< milliseconds

class DllTest : public ::testing::Test {
protected:
    DllTest();
    ~DllTest() override;

    /// Sets up the machine with so many outputs and loads the library anew.
    void load(int outputs = 2);
    /// Ends everything and unloads the library at once.
    void unload();
    /// Starts the engine and answers its result.
    std::int16_t start();
    /// Opens a song, gives it its whole range and starts it.
    void play(HMIDIOUT player, const SongBuilder& song, std::uint16_t options = 0);

    Dll dll;
    NotifyWindow window;
    CRITICAL_SECTION lock{};
    MMINIT settings{};
    HMIDIOUT mm1 = nullptr;
    HMIDIOUT mm2 = nullptr;
};

/// Notes on one channel at every so many ticks from tick 96 on, each half as long as the distance. The last
/// one's note-off is the end of the song, where the engine silences the channels instead of sending it.
SongBuilder evenNotes(int count, std::uint32_t distance, int channel = 0);
