// The values of options that name places in a song. All functions throw UsageError with one clear line.
#pragma once

#include <string>

#include "karaoke/play_options.h"

namespace karaoke {

/// A tick ("960") or a bar ("bar5").
SongPlace parsePlace(const std::string& option, const std::string& text);

/// "A:B" or "A:BxN", two places and a number of passes; an empty B is the song's end.
RangeWish parseLoop(const std::string& text);

/// "A:B:START:STEP:LIMIT", two places and three percentages.
PracticeWish parsePractice(const std::string& text);

} // namespace karaoke
