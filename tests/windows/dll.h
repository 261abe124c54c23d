// The DLL as a host finds it: loaded by name, its functions by their undecorated names.
#pragma once

#include "corvmo32.h"

/// Loaded with load(), with every export as a member that carries its name.
struct Dll {
    HMODULE module = nullptr;

#define EXPORT(name, argumentBytes) decltype(&::name) name = nullptr;
#include "corvmo32_exports.inc"
#undef EXPORT

    /// Loads the library that lies beside the program. False when it, or one of its exports, is missing.
    bool load();
    void unload();
};
