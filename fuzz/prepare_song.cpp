// Prepares any bytes for the engine: what comes out opens, has grown within its bound, and is left alone when
// it is prepared again.
#include <vector>

#include "fuzz/machine.h"
#include "fuzz/song_checks.h"
#include "prepare/prepare_song.h"

using fuzz::require;

namespace {

constexpr std::size_t kGrowth = 3;
constexpr std::size_t kGrowthBase = 100; ///< bytes

void checkPrepared(HMIDIOUT player, const host::PreparedSong& song) {
    const fuzz::MemoryFile file(song.bytes);
    require(mm_Open(player, file.path(), 0, 0, 0, nullptr) == 1, "a prepared song opens");
    fuzz::checkSong(player, song.bytes.size());
    mm_Close(player);
    const host::PreparedSong again = host::prepareSong(song.bytes);
    require(!again.changed && again.bytes == song.bytes, "a prepared song needs no mending");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Players players = fuzz::startEngine();
    fuzz::machine().forget();
    const host::PreparedSong song = host::prepareSong({data, size});
    require(song.changed == !song.notes.empty(), "what was mended is told");
    require(song.error.empty() != song.bytes.empty(), "there is a song or a reason");
    require(song.bytes.size() <= kGrowth * size + kGrowthBase, "a song grows within its bound");
    if (song.error.empty()) {
        checkPrepared(players.first, song);
    }
    return 0;
}
