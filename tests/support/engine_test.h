// The fixture of the engine's tests: an engine on the tests' machine, with two players on outputs 0 and 1
// unless a test changes the settings before start().
// A test compares fields of the packed records by value, EXPECT_EQ(+MM1.ticks, 96U): a reference to a field
// may be misaligned.
#pragma once

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvmo32.h"
#include "engine/globals.h"
#include "tests/support/machine.h"
#include "tests/support/song_builder.h"
#include "tests/support/sounding.h"

constexpr int kAllOptions = 0x7F;

class EngineTest : public ::testing::Test {
protected:
    EngineTest();
    ~EngineTest() override;

    /// Starts the engine and expects success.
    void start();
    /// Starts the engine, its answer as it comes.
    std::int16_t tryStart();

    /// Opens a song on player 1 (or another) and answers mm_Open's result.
    std::int16_t open(const SongBuilder& song, int options = 0, int endOnBeat = 0);
    std::int16_t openBytes(const Bytes& bytes, int options = 0);

    /// Opens a song on player 1, gives it its whole range and starts it; the log is emptied first.
    void play(const SongBuilder& song, int options = 0, int endOnBeat = 0);

    /// Lets timer periods pass.
    void ticks(int count);
    /// Lets periods pass until player 1 stops, and expects that it does.
    void playToEnd();

    /// Short and long messages as text, since the last call.
    std::vector<std::string> sent() {
        return toText(takeLog());
    }
    /// The same for channel messages of one status nibble (0x90, ...) alone.
    std::vector<std::string> sent(int kind);
    std::vector<Posted> posted() {
        return machine::takePosted();
    }
    /// The posted notifications with one number.
    std::vector<Posted> posted(UINT message);

    /// Everything sent since the engine started, for checks on what still sounds.
    const std::vector<Sent>& history();

    MMINIT settings{};
    CRITICAL_SECTION lock{};
    int outputs = 2;
    bool realTime = false; ///< the machine's own clock and timer instead of ticks()
    HMIDIOUT mm1 = nullptr;
    HMIDIOUT mm2 = nullptr;

private:
    std::vector<Sent> takeLog();

    std::vector<Sent> history_;
    bool machineReady_ = false;
};

/// A controller with value 0 on the 16 channels of an output, channel 0 first.
std::vector<std::string> sweep(int controller, int output = 0);

/// The event list of a player as readable lines: "480 90 3C 64 00".
std::vector<std::string> eventLines(const MIDIOUT& player);
