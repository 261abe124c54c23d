// Sleep: giving way to other threads.
#include <sched.h>
#include <time.h>

#include "platform/linux/system_names.h"

void Sleep(DWORD milliseconds) {
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    constexpr DWORD kMillisecondsPerSecond = 1000;
    constexpr long kNanosecondsPerMillisecond = 1000000;
    const timespec pause{static_cast<time_t>(milliseconds / kMillisecondsPerSecond),
                         static_cast<long>(milliseconds % kMillisecondsPerSecond) *
                             kNanosecondsPerMillisecond};
    nanosleep(&pause, nullptr);
}
