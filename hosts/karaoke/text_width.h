// How many columns of a terminal a text takes.
#pragma once

#include <string>
#include <string_view>

namespace karaoke {

/// Columns of a UTF-8 text.
int columnsOf(std::string_view text);

/// The beginning of a text that fits in some columns; what is left out is marked by an ellipsis.
std::string fitted(std::string_view text, int columns);

} // namespace karaoke
