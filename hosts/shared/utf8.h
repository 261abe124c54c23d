// UTF-8: telling whole characters from broken ones, and their code points.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// What stands in for bytes that are no character.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// @return bytes of the character that begins at the position; 0 = none does, as the bytes there are
///         malformed, an overlong form, a surrogate or cut off
std::size_t utf8CharacterLength(std::string_view text, std::size_t position);

/// @param character  one whole character
char32_t utf8CodePoint(std::string_view character);

/// Whether all of the text is well-formed.
bool isUtf8(std::string_view text);

/// The text without a character at its end that lacks its last bytes.
std::string_view withoutBrokenTail(std::string_view text);

/// Whether a code point controls a terminal or the direction of text instead of showing something.
bool isControl(char32_t codePoint);

/// The text, which must be well-formed, without such code points.
std::string withoutControls(std::string_view text);

} // namespace host
