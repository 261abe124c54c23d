// Tells chord names from the other texts that songs carry in the same place.
#pragma once

#include <string_view>

namespace host {

/// Whether a text without surrounding spaces reads like a chord name: a root with its alteration, then
/// any of the usual qualities, figures and a bass note; or "N.C.".
bool isChordName(std::string_view text);

} // namespace host
