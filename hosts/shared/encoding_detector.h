// What the bytes of texts that are not UTF-8 look like. One file a platform.
#pragma once

#include <string>

namespace host {

/// @param bytes  all texts of a song
/// @return the name of the likeliest encoding, as TextDecoder knows it; empty = none is likely
std::string detectEncoding(const std::string& bytes);

} // namespace host
