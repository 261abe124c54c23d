// karaoke lyrics: a song's words and chords with their times.
#include <cstdio>

#include "karaoke/commands.h"
#include "karaoke/line_text.h"
#include "karaoke/song_reader.h"
#include "shared/song.h"

namespace karaoke {

int runLyrics(const LyricsOptions& options) {
    const host::Song song = host::songForDisplay(readSong(options.song.file), options.song.file,
                                                 {.encoding = options.song.encoding});
    if (song.lines.empty()) {
        std::fprintf(stderr, "karaoke: %s: the song has neither words nor chords\n",
                     options.song.file.c_str());
        return 0;
    }
    for (const host::Line& line : song.lines) {
        std::printf("%s\n", lineText(line, song.timeline).c_str());
    }
    return 0;
}

} // namespace karaoke
