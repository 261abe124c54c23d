// Descriptions of options in lines that fit.
#include "karaoke/declared_options.h"

#include <sstream>

namespace karaoke {

namespace {

constexpr std::size_t kHelpWidth = 53;

} // namespace

std::string folded(const std::string& text) {
    std::istringstream words(text);
    std::string lines;
    std::size_t length = 0;
    for (std::string word; words >> word; length += word.size() + 1) {
        if (length + word.size() > kHelpWidth) {
            lines += '\n'; // the formatter indents what follows
            length = 0;
        } else if (length > 0) {
            lines += ' ';
        }
        lines += word;
    }
    return lines;
}

} // namespace karaoke
