// What the tests of this room share: an engine that runs, refusals, and text tables as readable lines.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/engine_test.h"

/// What mm_GetLastError answers after a failure that has no code of its own.
constexpr std::uint32_t kEarlierError = 77;

class SongTest : public EngineTest {
protected:
    SongTest() {
        start();
    }

    void expectRefused(const Bytes& file, std::uint32_t code, const std::string& what) {
        g_lastError.store(kEarlierError);
        EXPECT_EQ(openBytes(file), 0) << what;
        EXPECT_EQ(mm_GetLastError(), code) << what;
    }
};

/// The records of a text table: "960 Hello".
template <typename Record>
std::vector<std::string> textLines(const Record* table, int count) {
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) {
        const std::uint32_t time = table[i].time;
        const auto& text = table[i].text;
        lines.push_back(std::to_string(time) + ' ' +
                        std::string(text, std::find(text, text + sizeof text, '\0')));
    }
    return lines;
}

inline std::vector<std::string> lyricLines(const MIDIOUT& player) {
    return textLines(player.lyrics, player.lyricCount);
}

inline std::vector<std::string> chordLines(const MIDIOUT& player) {
    return textLines(player.chords, player.chordCount);
}
