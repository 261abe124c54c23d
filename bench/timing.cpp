// How punctual the engine's timer is, beside a bare timer in the same process, and whether it loses periods.
//   corvmo_timing SECONDS [busy]    busy: a thread computes all the while
#include "bench/timing.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "corvmo32.h"
#include "platform/system.h"

namespace bench {

namespace {

constexpr int kDivision = 480;
constexpr int kPeriods[] = {1, 5, 10}; ///< milliseconds

Moments engineMoments;
Moments bareMoments;
std::atomic<bool> busyThreadEnds{false};

void onTick() {
    engineMoments.push_back(Clock::now());
}

void onBareTick() {
    bareMoments.push_back(Clock::now());
}

void append(std::string& bytes, std::uint32_t number, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<char>(number >> shift));
    }
}

/// One message a tick, at a tempo of one tick a period.
std::string steadySong(int period, int periods) {
    std::string track("\0\xFF\x51\x03", 4);
    append(track, static_cast<std::uint32_t>(period * 1000 * kDivision), 3);
    for (int i = 0; i < periods; ++i) {
        track += {1, static_cast<char>(0x90), static_cast<char>(i % 128), 64};
    }
    track += std::string("\0\xFF\x2F\0", 4);
    std::string file = "MThd";
    append(file, 6, 4);
    append(file, 0, 2);
    append(file, 1, 2);
    append(file, kDivision, 2);
    file += "MTrk";
    append(file, static_cast<std::uint32_t>(track.size()), 4);
    return file + track;
}

using Milliseconds = std::chrono::duration<double, std::milli>;

/// When the first tick would have come, had it been as punctual as the most punctual one.
Clock::time_point origin(const Moments& moments, int period) {
    Clock::time_point earliest = moments.front();
    for (std::size_t i = 0; i < moments.size(); ++i) {
        earliest = std::min(earliest,
                            moments[i] - std::chrono::milliseconds(period * static_cast<int>(i)));
    }
    return earliest;
}

/// Milliseconds by which each moment lies behind the most punctual one, sorted.
std::vector<double> lateness(const Moments& moments, int period) {
    const Clock::time_point start = origin(moments, period);
    std::vector<double> late;
    for (std::size_t i = 0; i < moments.size(); ++i) {
        late.push_back(Milliseconds(moments[i] - start).count() - static_cast<double>(i) * period);
    }
    std::sort(late.begin(), late.end());
    return late;
}

double at(const std::vector<double>& sorted, double share) {
    return sorted[static_cast<std::size_t>(static_cast<double>(sorted.size() - 1) * share)];
}

void report(int period, const Moments& engine, const Moments& bare, double expected,
            double astray) {
    const std::vector<double> late = lateness(engine, period);
    const std::vector<double> bareLate = lateness(bare, period);
    std::printf("%2d ms: late p50 %.3f ms (bare %.3f), p99 %.3f ms (bare %.3f); %zu ticks of %.0f "
                "(%.4f); position off by %.2f periods\n",
                period, at(late, 0.5), at(bareLate, 0.5), at(late, 0.99), at(bareLate, 0.99),
                engine.size(), expected, static_cast<double>(engine.size()) / expected, astray);
    std::fflush(stdout);
}

void measure(int period, int seconds) {
    const int periods = seconds * 1000 / period;
    const std::string name = "corvmo-timing.mid";
    const std::string song = steadySong(period, periods + 10 * 1000 / period);
    std::ofstream(name, std::ios::binary)
        .write(song.data(), static_cast<std::streamsize>(song.size()));
    engineMoments.clear();
    bareMoments.clear();
    engineMoments.reserve(song.size());
    bareMoments.reserve(song.size());

    setOutput(onTick);
    CRITICAL_SECTION lock{};
    InitializeCriticalSection(&lock);
    MMINIT settings{};
    settings.timerPeriod = static_cast<std::int16_t>(period);
    settings.lock = &lock;
    HMIDIOUT player = nullptr;
    HMIDIOUT second = nullptr;
    if (mm_InitEngine(&settings, &player, &second) != 1 ||
        mm_Open(player, name.c_str(), 0, 0, 0, nullptr) != 1) {
        std::fprintf(stderr, "no song: %u\n", static_cast<unsigned>(mm_GetLastError()));
        std::exit(1);
    }
    mm_SetLoop(player, nullptr);
    mm_CreateMap(player, 0);
    // The tempo event is due only with the first tick: it has to be in force before.
    mm_PlayFirstNote(player);
    engineMoments.clear();
    {
        std::this_thread::sleep_for(std::chrono::microseconds(period * 500));
        const BareTimer bare(period, onBareTick);
        mm_StartSync(player);
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        EnterCriticalSection(&lock);
        const Clock::time_point now = Clock::now();
        const Moments ticks = engineMoments;
        const double position = mm_GetTicks(player);
        LeaveCriticalSection(&lock);
        mm_StopSync(player);
        const Milliseconds played = now - origin(ticks, period);
        const double expected = std::floor(played.count() / period) + 1;
        const double first = mm_GetMM(player)->events[1].time;
        report(period, ticks, bareMoments, expected, std::abs(position - first - (expected - 1)));
    }
    mm_Close(player);
    mm_EndEngine();
    DeleteCriticalSection(&lock);
    std::remove(name.c_str());
}

void keepBusy() {
    volatile unsigned work = 0;
    while (!busyThreadEnds) {
        work = work + 1;
    }
}

} // namespace

} // namespace bench

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 20;
    std::thread busy;
    if (argc > 2 && std::string(argv[2]) == "busy") {
        busy = std::thread(bench::keepBusy);
    }
    for (const int period : bench::kPeriods) {
        bench::measure(period, std::max(seconds, 1));
    }
    bench::busyThreadEnds = true;
    if (busy.joinable()) {
        busy.join();
    }
}
