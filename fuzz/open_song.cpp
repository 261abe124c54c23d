// Opens and scans any bytes as a song. The last byte of the input chooses how.
#include "fuzz/machine.h"
#include "fuzz/song_checks.h"

namespace {

constexpr std::uint8_t kEndOnBeat = 1;
constexpr std::uint8_t kScan = 2;

void open(HMIDIOUT player, std::span<const std::uint8_t> song, std::uint8_t mode) {
    const fuzz::MemoryFile file(song);
    const bool opened = (mode & kScan) != 0
                            ? mm_Scan(player, file.path()) == 1
                            : mm_Open(player, file.path(), 0, 0, mode & kEndOnBeat, nullptr) == 1;
    if (opened) {
        fuzz::checkSong(player, song.size());
    }
    mm_Close(player);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Players players = fuzz::startEngine();
    if (size > 0) {
        fuzz::machine().forget();
        open(players.first, {data, size - 1}, data[size - 1]);
    }
    return 0;
}
