// The MIDI outputs, and the choice of one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace karaoke {

/// Names of the machine's outputs, by their number. The engine can use the first 32.
std::vector<std::string> outputNames();

/// @param wanted  a number, or a name or a part of it (upper and lower case are the same)
/// @return the output's number
/// @throws UsageError  when there is none, or when several match
std::uint32_t chooseOutput(const std::string& wanted, const std::vector<std::string>& names);

} // namespace karaoke
