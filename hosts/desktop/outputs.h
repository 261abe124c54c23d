// The MIDI outputs of the machine, for choosing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// Names of the outputs that the engine can use, by their numbers.
std::vector<std::wstring> outputNames();

/// What the listener chose, by name: numbers change when instruments are plugged in.
struct OutputChoice {
    std::wstring first;  ///< empty = the first output there is
    std::wstring second; ///< of a second song; empty = none
    bool operator==(const OutputChoice&) const = default;
};

/// The numbers of a choice among the outputs that are there.
struct ChosenOutputs {
    std::uint32_t first = 0;
    std::optional<std::uint32_t> second;
};

/// An output that is gone is replaced by the first one, or by none as second.
ChosenOutputs chooseOutputs(const OutputChoice& choice, const std::vector<std::wstring>& names);

} // namespace desktop
