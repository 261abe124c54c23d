// The timing program on Linux: an output of the host's own, and a thread that sleeps to absolute times with
// the priority that the engine's timer asks for.
#include <pthread.h>

#include <ctime>
#include <thread>

#include "bench/timing.h"
#include "corvmo32_linux.h"

namespace bench {

namespace {

constexpr int kTimerPriority = 50;
constexpr long kNanoseconds = 1000000000;
constexpr long kNanosecondsPerMillisecond = 1000000;

void (*onMessage)() = nullptr;

MMRESULT shortMessage(void* /*user*/, std::uint32_t /*message*/) {
    onMessage();
    return MMSYSERR_NOERROR;
}

} // namespace

void setOutput(void (*message)()) {
    onMessage = message;
    corvmo_output output{};
    output.short_message = shortMessage;
    corvmo_SetOutputs(&output, 1);
}

struct BareTimer::Parts {
    std::jthread thread;
};

BareTimer::BareTimer(int milliseconds, void (*callback)()) : m_parts(new Parts) {
    m_parts->thread = std::jthread([milliseconds, callback](const std::stop_token& stop) {
        const sched_param priority = {kTimerPriority};
        pthread_setschedparam(pthread_self(), SCHED_FIFO, &priority);
        timespec due{};
        clock_gettime(CLOCK_MONOTONIC, &due);
        while (!stop.stop_requested()) {
            due.tv_nsec += milliseconds * kNanosecondsPerMillisecond;
            due.tv_sec += due.tv_nsec / kNanoseconds;
            due.tv_nsec %= kNanoseconds;
            clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &due, nullptr);
            callback();
        }
    });
}

BareTimer::~BareTimer() {
    delete m_parts;
}

} // namespace bench
