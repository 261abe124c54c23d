// Parts of a text. The string view's own substr can throw, which would bring the C++ runtime, with its thread
// support and that one's handles, into the DLL.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

/// At most the first bytes of a text.
constexpr std::string_view firstOf(std::string_view text, std::size_t count) noexcept {
    return {text.data(), std::min(count, text.size())};
}

/// A text without its first bytes; empty when it has no more.
constexpr std::string_view afterFirst(std::string_view text, std::size_t count) noexcept {
    text.remove_prefix(std::min(count, text.size()));
    return text;
}
