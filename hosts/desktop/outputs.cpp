// The MIDI outputs of the machine.
#include "desktop/outputs.h"

#include <windows.h>

#include <mmsystem.h>

#include <algorithm>

namespace desktop {

namespace {

constexpr UINT kMostOutputs = 32;

std::optional<std::uint32_t> numberOf(const std::wstring& name,
                                      const std::vector<std::wstring>& names) {
    const auto found = std::find(names.begin(), names.end(), name);
    if (name.empty() || found == names.end()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(found - names.begin());
}

} // namespace

std::vector<std::wstring> outputNames() {
    std::vector<std::wstring> names;
    const UINT count = std::min(midiOutGetNumDevs(), kMostOutputs);
    for (UINT i = 0; i < count; ++i) {
        MIDIOUTCAPSW capabilities{};
        const bool known =
            midiOutGetDevCapsW(i, &capabilities, sizeof capabilities) == MMSYSERR_NOERROR;
        names.emplace_back(known ? capabilities.szPname : L"Output " + std::to_wstring(i + 1));
    }
    return names;
}

ChosenOutputs chooseOutputs(const OutputChoice& choice, const std::vector<std::wstring>& names) {
    return {numberOf(choice.first, names).value_or(0), numberOf(choice.second, names)};
}

} // namespace desktop
