// Prepares a song file, for tests: prepare_file IN OUT prints the notes; a file beyond repair gives status 1
// and its reason.
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "prepare/prepare_song.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: prepare_file IN OUT\n";
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    const std::vector<char> text{std::istreambuf_iterator<char>(in),
                                 std::istreambuf_iterator<char>()};
    const std::vector<std::uint8_t> file(text.begin(), text.end());
    const host::PreparedSong song = host::prepareSong(file);
    for (const std::string& note : song.notes) {
        std::cout << note << '\n';
    }
    if (!song.error.empty()) {
        std::cerr << song.error << '\n';
        return 1;
    }
    std::ofstream out(argv[2], std::ios::binary);
    out.write(reinterpret_cast<const char*>(song.bytes.data()),
              static_cast<std::streamsize>(song.bytes.size()));
    return out ? 0 : 2;
}
