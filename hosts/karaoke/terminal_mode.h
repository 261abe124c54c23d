// The state of the terminal that is given back on every way out, a crash included.
#pragma once

#include <string_view>

namespace karaoke {

/// Notes how the terminal stands, for restoreTerminal, and has a crash restore it before the program dies.
/// @param sequence  what a restoring writes; must live as long as the program
void guardTerminal(std::string_view sequence);

/// The terminal is as it was: there is nothing to restore any more.
void releaseTerminal();

/// Writes the sequence and puts the terminal's settings back, once after each guardTerminal. Safe in a signal
/// handler and from any thread.
void restoreTerminal();

} // namespace karaoke
