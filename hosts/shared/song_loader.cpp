// Reads songs through the engine without playing them.
#include "shared/song_loader.h"

#include "shared/song_file_check.h"

namespace host {

std::string reasonOfFailure(HMIDIOUT player, const std::string& path) {
    // The engine never clears its code. After a failure whose code is known, another code is the next
    // failure's own; the same one is its own only if the file has a fault of that kind.
    mm_Scan(player, nullptr);
    const bool fails = mm_Scan(player, path.c_str()) == 0;
    const std::uint32_t code = mm_GetLastError();
    mm_Close(player);
    if (!fails) {
        return "the file has changed while it was read";
    }
    return explainSongFailure(path, code == ENGINE_ERR_FILE ? 0 : code);
}

RawSong loadSong(HMIDIOUT player, const std::string& path) {
    if (mm_Scan(player, path.c_str()) == 0) {
        throw HostError(reasonOfFailure(player, path));
    }
    RawSong song = readRawSong(player);
    mm_Close(player);
    return song;
}

} // namespace host
