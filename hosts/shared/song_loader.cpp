// Reads songs through the engine without playing them.
#include "shared/song_loader.h"

namespace host {

std::string reasonOfFailure(HMIDIOUT player, const SongFile& file) {
    // The engine never clears its code. After a failure whose code is known, another code is the next
    // failure's own.
    mm_Scan(player, nullptr);
    const bool fails = mm_Scan(player, file.enginePath().c_str()) == 0;
    const std::uint32_t code = mm_GetLastError();
    mm_Close(player);
    if (!fails) {
        return "the file has changed while it was read";
    }
    return code == ENGINE_ERR_FILE ? "damaged, in a way that is not mended" : errorText(code);
}

RawSong loadSong(HMIDIOUT player, const SongFile& file) {
    if (mm_Scan(player, file.enginePath().c_str()) == 0) {
        throw SongError(file.name(), reasonOfFailure(player, file));
    }
    RawSong song = readRawSong(player);
    mm_Close(player);
    return song;
}

} // namespace host
