// What the timing program asks of the system it runs on.
#pragma once

#include <chrono>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;
using Moments = std::vector<Clock::time_point>;

/// Gives the engine one output, which calls this for every short message.
void setOutput(void (*message)());

/// Calls this once a period, as plainly as the system can, until it is destroyed.
class BareTimer {
public:
    BareTimer(int milliseconds, void (*callback)());
    ~BareTimer();
    BareTimer(const BareTimer&) = delete;
    BareTimer& operator=(const BareTimer&) = delete;

private:
    struct Parts;
    Parts* m_parts;
};

} // namespace bench
