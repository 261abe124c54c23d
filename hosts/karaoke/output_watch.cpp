// Notices when an output goes away while it is played on.
#include "karaoke/output_watch.h"

#include <algorithm>

#include "corvmo32_linux.h"
#include "karaoke/devices.h"

namespace karaoke {

namespace {

constexpr std::uint64_t kBetweenLooks = 250'000; ///< microseconds
constexpr std::uint32_t kRefusalsOfLoss = 4;     ///< a port that is merely full takes one of them

} // namespace

std::string OutputWatch::lost(std::uint64_t now) {
    if (now < m_nextLook) {
        return {};
    }
    m_nextLook = now + kBetweenLooks;
    const auto device = std::find_if(m_devices.begin(), m_devices.end(), [](std::uint32_t number) {
        return corvmo_GetRefusals(number) >= kRefusalsOfLoss;
    });
    if (device == m_devices.end()) {
        return {};
    }
    const std::uint32_t number = *device;
    std::erase(m_devices, number);
    return outputNames()[number];
}

} // namespace karaoke
