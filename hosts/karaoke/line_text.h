// Lines of words and chords as plain text.
#pragma once

#include <string>

#include "shared/lyric_lines.h"
#include "shared/timeline.h"

namespace karaoke {

/// "[m:ss.t] words", each chord in brackets before the syllable that it stands over.
std::string lineText(const host::Line& line, const host::Timeline& timeline);

} // namespace karaoke
