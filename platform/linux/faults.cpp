// Which calls of the platform layer are to fail, and how often each watched function was called.
#include "platform/linux/faults.h"

#include <atomic>
#include <map>
#include <mutex>
#include <string>

#include "platform/linux/timer_limits.h"

namespace {

struct Watch {
    int failingCall = 0;
    int calls = 0;
};

constexpr TimerLimits kRealLimits = {1, 65535};

struct Watches {
    std::mutex mutex;
    std::map<std::string, Watch, std::less<>> byFunction;
    TimerLimits limits = kRealLimits;
};

std::atomic<bool> g_armed = false;

// Never destroyed: a timer thread may still ask while the process ends.
Watches& watches() {
    static Watches& instance = *new Watches;
    return instance;
}

} // namespace

namespace faults {

void failCall(std::string_view function, int nth) {
    Watches& all = watches();
    const std::lock_guard guard(all.mutex);
    all.byFunction.insert_or_assign(std::string(function), Watch{nth, 0});
    g_armed.store(true, std::memory_order_relaxed);
}

int callCount(std::string_view function) {
    Watches& all = watches();
    const std::lock_guard guard(all.mutex);
    const auto found = all.byFunction.find(function);
    return found == all.byFunction.end() ? 0 : found->second.calls;
}

void clear() {
    Watches& all = watches();
    const std::lock_guard guard(all.mutex);
    all.byFunction.clear();
    all.limits = kRealLimits;
    g_armed.store(false, std::memory_order_relaxed);
}

void setTimerLimits(unsigned shortest, unsigned longest) {
    const bool real = shortest == 0 && longest == 0;
    Watches& all = watches();
    const std::lock_guard guard(all.mutex);
    all.limits = real ? kRealLimits : TimerLimits{shortest, longest};
}

bool fails(std::string_view function) {
    if (!g_armed.load(std::memory_order_relaxed)) {
        return false;
    }
    Watches& all = watches();
    const std::lock_guard guard(all.mutex);
    const auto found = all.byFunction.find(function);
    if (found == all.byFunction.end()) {
        return false;
    }
    Watch& watch = found->second;
    ++watch.calls;
    return watch.calls == watch.failingCall;
}

} // namespace faults

TimerLimits timerLimits() {
    Watches& all = watches();
    const std::lock_guard guard(all.mutex);
    return all.limits;
}
