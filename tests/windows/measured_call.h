// Calls a function of any number of arguments and measures what it does to the stack.
#pragma once

#include "corvmo32_system.h"

struct MeasuredCall {
    DWORD result = 0;           ///< eax
    DWORD leftOnStack = 0;      ///< bytes by which the stack pointer lies off after the call
    DWORD registersChanged = 0; ///< not 0 when ebx, esi or edi came back changed
};

/// Pushes the arguments, last one first, calls, and compares the stack pointer after the call with that before
/// the pushes.
/// @param padding  bytes by which the stack is moved first: a caller need not align it to more than 4
extern "C" void measureCall(const void* function, const DWORD* arguments, DWORD count,
                            DWORD padding, MeasuredCall* outcome);
