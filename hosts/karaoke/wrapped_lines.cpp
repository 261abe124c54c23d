// Lines of a song divided into parts that fit a terminal's width.
#include "karaoke/wrapped_lines.h"

#include "karaoke/text_width.h"
#include "shared/wrapped_lines.h"

namespace karaoke {

std::vector<host::Line> wrapLines(const std::vector<host::Line>& lines, int columns) {
    constexpr int kSlack = 8;
    return host::wrapLines(lines, {columns, kSlack},
                           [](const std::string& text) { return columnsOf(text); });
}

} // namespace karaoke
