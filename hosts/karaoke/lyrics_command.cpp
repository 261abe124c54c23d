// karaoke lyrics: a song's words and chords with their times, for people and for other players.
#include <cstdio>

#include "karaoke/commands.h"
#include "karaoke/finished_file.h"
#include "karaoke/line_text.h"
#include "karaoke/song_reader.h"
#include "shared/error_texts.h"
#include "shared/lyric_files.h"
#include "shared/song.h"

namespace karaoke {

namespace {

std::string plainText(const host::Song& song) {
    std::string text;
    for (const host::Line& line : song.lines) {
        text += lineText(line, song.timeline) + "\n";
    }
    return text;
}

std::string textOf(const host::Song& song, const LyricsOptions& options) {
    switch (options.form) {
    case LyricsForm::Lrc:
        return host::lrcFile(song, options.offset);
    case LyricsForm::Ass:
        return host::assFile(song, options.offset);
    case LyricsForm::Srt:
        return host::srtFile(song, options.offset);
    case LyricsForm::Text:
        break;
    }
    return plainText(song);
}

} // namespace

int runLyrics(const LyricsOptions& options) {
    const std::string& file = options.song.file;
    const host::Song song = host::songForDisplay(
        readSong(file), file,
        {.encoding = options.song.encoding, .tempoPercent = options.tempoPercent});
    if (options.form != LyricsForm::Text && !song.hasWords()) {
        throw host::SongError(file, "the song has no words");
    }
    if (song.lines.empty()) {
        std::fprintf(stderr, "karaoke: %s: the song has neither words nor chords\n", file.c_str());
        return 0;
    }
    const std::string text = textOf(song, options);
    if (options.output.empty()) {
        std::fwrite(text.data(), 1, text.size(), stdout);
    } else {
        FinishedFile output(options.output);
        output.write(text);
        output.finish();
    }
    return 0;
}

} // namespace karaoke
