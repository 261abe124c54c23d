// What the tests' machine offers on Windows alone.
#pragma once

#include "tests/support/machine.h"

namespace machine {

/// Puts the machine's functions in place of the system's that a loaded module imports; setUp does it for
/// the program itself. False when the module does not import all of them.
bool takeOver(HMODULE module);

} // namespace machine
