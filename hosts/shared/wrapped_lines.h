// Lines of a song divided into parts that fit a width.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "shared/lyric_lines.h"

namespace host {

/// How wide a text is shown, in any unit.
using TextMeasure = std::function<int(const std::string&)>;

struct WrapWidth {
    int most;  ///< what a part may take
    int slack; ///< by which a part may exceed the even length
};

/// Divides lines that take more than some width, between words where there are any; the parts are of about
/// the same length. Chords go with their syllables. A single syllable is not divided.
std::vector<Line> wrapLines(const std::vector<Line>& lines, const WrapWidth& width,
                            const TextMeasure& measure);

} // namespace host
