// Names of notes and controllers.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// @param note  0 to 127
/// @return "C4" for 60, sharps as "C#4"
std::string noteName(int note);

/// @param controller  0 to 127
/// @return what it does, empty for one without a fixed meaning
std::string_view controllerName(int controller);

} // namespace host
