// UTF-8 and the UTF-16 of the Windows calls. Windows alone.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// Bytes that are no character become the replacement character.
std::wstring toWide(std::string_view utf8);

/// A half of a surrogate pair that stands alone becomes the replacement character, where Windows knows it.
std::string toUtf8(std::wstring_view wide);

} // namespace host
