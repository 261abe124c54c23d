// Which encoding a song's texts are in: the files do not say.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

inline constexpr const char* kUtf8 = "UTF-8";
inline constexpr const char* kWesternEuropean = "WINDOWS-1252";

/// Judges all texts of a song together, since one alone is too short to tell.
/// @return kUtf8 when they are well-formed UTF-8 (a text that was cut off inside its last character
///         counts as well-formed), else what the bytes look like, and kWesternEuropean when in doubt
std::string guessEncoding(const std::vector<std::string>& texts);

} // namespace host
