// The instruments of General MIDI.
#pragma once

#include <string_view>

namespace host {

/// @param program  0 to 127
/// @return its name, empty for another number
std::string_view instrumentName(int program);

} // namespace host
