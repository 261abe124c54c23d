// How many columns of a terminal a text takes, as the C library knows its characters.
#include "karaoke/text_width.h"

#include <wchar.h>

#include <algorithm>

#include "shared/utf8.h"

namespace karaoke {

namespace {

constexpr std::string_view kEllipsis = "…";

std::string_view firstCharacter(std::string_view text) {
    return text.substr(0, std::max<std::size_t>(host::utf8CharacterLength(text, 0), 1));
}

int columnsOfCharacter(std::string_view character) {
    return std::max(::wcwidth(static_cast<wchar_t>(host::utf8CodePoint(character))), 0);
}

} // namespace

int columnsOf(std::string_view text) {
    int columns = 0;
    while (!text.empty()) {
        const std::string_view character = firstCharacter(text);
        columns += columnsOfCharacter(character);
        text.remove_prefix(character.size());
    }
    return columns;
}

std::string fitted(std::string_view text, int columns) {
    if (columnsOf(text) <= columns) {
        return std::string(text);
    }
    if (columns < 1) {
        return {};
    }
    std::string shown;
    int left = columns - 1;
    while (!text.empty()) {
        const std::string_view character = firstCharacter(text);
        left -= columnsOfCharacter(character);
        if (left < 0) {
            break;
        }
        shown += character;
        text.remove_prefix(character.size());
    }
    return shown.append(kEllipsis);
}

} // namespace karaoke
