// Replaces functions that a loaded Windows module imports.
#pragma once

#include "platform/system.h"

/// Makes every call of an imported function by the module go to another one with the same signature. Answers
/// the address that was called before, null when the module does not import the function.
const void* replaceImport(HMODULE module, const char* function, const void* replacement);
