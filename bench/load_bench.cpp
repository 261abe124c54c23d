// Loading: from a file on disk to an event list in order.
#include <malloc.h>

#include <fstream>
#include <string>

#include "bench/engine.h"
#include "bench/measured.h"
#include "bench/peers.h"
#include "bench/songs.h"

namespace bench {

namespace {

constexpr double kKilobyte = 1024;

void perEvent(benchmark::State& state, const SongShape& shape) {
    state.SetItemsProcessed(state.iterations() * shape.events);
}

/// One line of what the system knows about this process, bytes.
double memoryOf(const std::string& key) {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kilobytes = 0;
    while (status >> word) {
        if (word == key + ':') {
            status >> kilobytes;
        }
    }
    return kilobytes * kKilobyte;
}

/// Has the peak begin anew, from the memory that is in use now.
void forgetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

void loadEngine(benchmark::State& state, const SongShape& shape) {
    const std::string file = songFile(shape);
    const Engine engine;
    while (state.KeepRunning()) {
        standClock(state);
        {
            const Measured measured(state);
            engine.open(file);
        }
        engine.close();
        state.ResumeTiming();
    }
    perEvent(state, shape);
}

/// What one load uses at most, against what it may use: the file, 8 bytes an event, 1 MB.
void loadMemory(benchmark::State& state, const SongShape& shape) {
    const std::string file = songFile(shape);
    const auto bytes = static_cast<double>(fileSize(shape));
    const Engine engine;
    while (state.KeepRunning()) {
        forgetPeak();
        const double before = memoryOf("VmRSS");
        engine.open(file);
        state.counters["used"] = memoryOf("VmHWM") - before;
        state.counters["allowed"] =
            bytes + static_cast<double>(mm_GetNumEvents(engine.player())) * sizeof(MMEVENT) +
            kKilobyte * kKilobyte;
        engine.close();
    }
}

void loadFluid(benchmark::State& state, const SongShape& shape) {
    const std::string file = songFile(shape);
    while (state.KeepRunning()) {
        standClock(state);
        FluidPlayer player;
        player.add(file);
        {
            const Measured measured(state);
            player.step();
        }
        if (player.length() == 0) {
            state.SkipWithError("nothing was loaded");
        }
        state.ResumeTiming();
    }
    perEvent(state, shape);
}

template <typename Open, typename Close>
void loadWith(benchmark::State& state, const SongShape& shape, Open open, Close close) {
    const std::string file = songFile(shape);
    while (state.KeepRunning()) {
        standClock(state);
        void* song = nullptr;
        {
            const Measured measured(state);
            song = open(file);
        }
        close(song);
        state.ResumeTiming();
    }
    perEvent(state, shape);
}

void loadWild(benchmark::State& state, const SongShape& shape) {
    WildReader reader;
    loadWith(
        state, shape, [&reader](const std::string& file) { return reader.open(file); },
        [&reader](void* song) { reader.close(song); });
}

void loadMidicsv(benchmark::State& state, const SongShape& shape) {
    const std::string file = songFile(shape);
    while (state.KeepRunning()) {
        state.SetIterationTime(runMidicsv(file));
    }
    perEvent(state, shape);
}

void registerLoads(const SongShape& shape) {
    const auto name = [&shape](const char* subject) {
        return std::string("load/") + subject + '/' + nameOf(shape);
    };
    const auto add = [&name](const char* subject, auto run) {
        return benchmark::RegisterBenchmark(name(subject).c_str(), run)
            ->Unit(benchmark::kMillisecond);
    };
    add("engine", [shape](benchmark::State& state) { loadEngine(state, shape); });
    add("FluidSynth", [shape](benchmark::State& state) { loadFluid(state, shape); });
    add("WildMIDI", [shape](benchmark::State& state) { loadWild(state, shape); });
    add("libsmf", [shape](benchmark::State& state) {
        loadWith(state, shape, openWithLibsmf, [](void*) {});
    })->Iterations(1);
    add("portsmf", [shape](benchmark::State& state) {
        loadWith(state, shape, openWithPortsmf, closeWithPortsmf);
    });
    add("midicsv", [shape](benchmark::State& state) {
        loadMidicsv(state, shape);
    })->UseManualTime();
    benchmark::RegisterBenchmark(name("memory").c_str(), [shape](benchmark::State& state) {
        loadMemory(state, shape);
    })->Iterations(1);
}

const bool registered = [] {
    for (const int tracks : {1, 16, 64}) {
        for (int events = 1000; events <= 10000000; events *= 10) {
            registerLoads({Kind::Realistic, tracks, events});
        }
    }
    registerLoads({Kind::Walls, 16, 1000000});
    registerLoads({Kind::Hostile, 16, 1000000});
    return true;
}();

} // namespace

} // namespace bench
