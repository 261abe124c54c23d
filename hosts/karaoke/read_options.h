// What a user can ask of the commands that read a song without playing it.
#pragma once

#include <string>

namespace karaoke {

struct ReadOptions {
    std::string file;
    std::string encoding; ///< of the song's texts; empty = guessed
};

struct InfoOptions {
    ReadOptions song;
    bool json = false;
};

/// The forms in which words are written.
enum class LyricsForm {
    Text, ///< for people
    Lrc,  ///< lines with a time for every syllable, for music players
    Ass,  ///< subtitles with karaoke effects, for video players
    Srt,  ///< plain subtitles
};

struct LyricsOptions {
    ReadOptions song;
    LyricsForm form = LyricsForm::Text;
    std::string output; ///< file; empty = standard output
    float tempoPercent = 0;
    int offset = 0; ///< milliseconds by which the words come later
};

} // namespace karaoke
