// Notices when an output goes away while it is played on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace karaoke {

class OutputWatch {
public:
    /// @param devices  numbers of the outputs that are played on
    explicit OutputWatch(std::vector<std::uint32_t> devices) : m_devices(std::move(devices)) {}

    /// @param now  microseconds of a clock
    /// @return the name of an output that has begun to refuse everything; empty = none. Each is told once.
    std::string lost(std::uint64_t now);

private:
    std::vector<std::uint32_t> m_devices;
    std::uint64_t m_nextLook = 0;
};

} // namespace karaoke
