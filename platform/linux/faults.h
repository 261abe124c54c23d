// Makes single calls of the platform layer fail, so that tests see what the engine does about it.
#pragma once

#include <string_view>

namespace faults {

/// The nth call (1 = the next) of the system function of this name fails, once. Names as in
/// system_names.h; timeSetEvent, GlobalAlloc, ReadFile and so on. nth 0 takes the fault back.
void failCall(std::string_view function, int nth);

/// Calls of the function since the last failCall for it.
int callCount(std::string_view function);

/// Forgets every fault and count.
void clear();

/// What timeGetDevCaps answers, milliseconds; 0, 0 = what the timer can really do.
void setTimerLimits(unsigned shortest, unsigned longest);

/// True when this call is to fail. Called by the platform layer at the head of each function.
bool fails(std::string_view function);

} // namespace faults
