// How long the DLL takes to load songs of 10^5 to 10^7 events, an event: it must not grow with the song.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "bench/songs.h"
#include "corvmo32.h"

int main() {
    using Clock = std::chrono::steady_clock;
    constexpr double kNanoseconds = 1e9;
    CRITICAL_SECTION lock;
    InitializeCriticalSection(&lock);
    MMINIT settings{};
    settings.timerPeriod = 10;
    settings.lock = &lock;
    HMIDIOUT player = nullptr;
    HMIDIOUT second = nullptr;
    if (mm_InitEngine(&settings, &player, &second) != 1) {
        std::printf("no engine: %u\n", static_cast<unsigned>(mm_GetLastError()));
        return 1;
    }
    for (const int events : {100000, 1000000, 10000000}) {
        const std::string file = bench::songFile({bench::Kind::Realistic, 16, events});
        double best = 0;
        for (int round = 0; round < 5; ++round) {
            const auto begin = Clock::now();
            const int opened = mm_Open(player, file.c_str(), 0, 0, 0, nullptr);
            const std::chrono::duration<double> took = Clock::now() - begin;
            mm_Close(player);
            if (opened != 1) {
                std::printf("not opened: %u\n", static_cast<unsigned>(mm_GetLastError()));
                return 1;
            }
            best = round == 0 ? took.count() : std::min(best, took.count());
        }
        std::printf("%8d events: %.1f ns an event\n", events, best * kNanoseconds / events);
    }
    mm_EndEngine();
    DeleteCriticalSection(&lock);
}
