// Times as people read them.
#pragma once

#include <string>

namespace host {

/// "m:ss.t", tenths cut off; negative times count as 0.
std::string timeWithTenths(double seconds);

/// "m:ss".
std::string timeInSeconds(double seconds);

} // namespace host
