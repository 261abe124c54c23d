// Song files for the tests of the preparation.
#include "tests/prepare/song_files.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace {

void addSongs(const std::string& folder, std::vector<std::string>& names) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const auto extension = entry.path().extension();
        if (extension == ".mid" || extension == ".kar") {
            names.push_back(entry.path().string());
        }
    }
}

} // namespace

const Bytes kEnd{0x00, 0xFF, 0x2F, 0x00};

std::vector<std::string> ownSongFiles() {
    std::vector<std::string> names;
    addSongs(std::string(CORVMO_SOURCE_DIR) + "/songs", names);
    std::sort(names.begin(), names.end());
    EXPECT_FALSE(names.empty());
    return names;
}

std::vector<std::string> songFiles() {
    std::vector<std::string> names = ownSongFiles();
    const char* const folder = std::getenv("CORVMO_SONG_DIR");
    if (folder != nullptr && *folder != '\0') {
        addSongs(folder, names);
    }
    return names;
}

Bytes readFile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    const std::vector<char> text{std::istreambuf_iterator<char>(file),
                                 std::istreambuf_iterator<char>()};
    return {text.begin(), text.end()};
}

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes bytesOf(std::initializer_list<int> bytes) {
    Bytes result;
    for (const int byte : bytes) {
        result.push_back(static_cast<std::uint8_t>(byte));
    }
    return result;
}

Bytes header(int format, int tracks, int division) {
    return chunk("MThd", bytesOf({format >> 8, format & 0xFF, tracks >> 8, tracks & 0xFF,
                                  division >> 8 & 0xFF, division & 0xFF}));
}

Bytes chunk(const std::string& tag, const Bytes& data) {
    return chunk(tag, data, static_cast<std::uint32_t>(data.size()));
}

Bytes chunk(const std::string& tag, const Bytes& data, std::uint32_t length) {
    return Bytes(tag.begin(), tag.end()) +
           bytesOf({static_cast<int>(length >> 24), static_cast<int>(length >> 16 & 0xFF),
                    static_cast<int>(length >> 8 & 0xFF), static_cast<int>(length & 0xFF)}) +
           data;
}

Bytes rewritten(const Bytes& file) {
    const host::PreparedSong song = host::prepareSong(Bytes(1, 0) + file);
    EXPECT_TRUE(song.changed);
    EXPECT_EQ(song.error, "");
    return song.bytes;
}
