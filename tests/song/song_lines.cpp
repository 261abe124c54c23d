// Readable forms of the text tables.
#include "tests/song/song_lines.h"

#include <algorithm>
#include <cstdint>

namespace {

template <typename Record>
std::vector<std::string> linesOf(const Record* table, int count) {
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) {
        const char* const text = table[i].text;
        const std::uint32_t time = table[i].time;
        lines.push_back(std::to_string(time) + ' ' +
                        std::string(text, std::find(text, text + sizeof table[i].text, '\0')));
    }
    return lines;
}

} // namespace

std::vector<std::string> lyricLines(const MIDIOUT& player) {
    return linesOf(player.lyrics, player.lyricCount);
}

std::vector<std::string> chordLines(const MIDIOUT& player) {
    return linesOf(player.chords, player.chordCount);
}

std::vector<std::string> markerLines(const MIDIOUT& player) {
    return linesOf(player.markers, player.markerCount);
}
