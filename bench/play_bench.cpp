// Playing: due events, ticks in which nothing is due, whole songs, and seeks.
#include "bench/engine.h"
#include "bench/measured.h"
#include "bench/peers.h"
#include "bench/songs.h"
#include "engine/globals.h"

namespace bench {

namespace {

constexpr int kMany = 1000000;
constexpr SongShape kBurst{Kind::Burst, 1, kMany};
constexpr SongShape kSong{Kind::Realistic, 16, kMany};
constexpr int kIdleTicks = 1000; ///< in one round
constexpr double kMillisecondsPerSecond = 1000;

void playBurst(benchmark::State& state) {
    const std::string file = songFile(kBurst);
    const Engine engine;
    while (state.KeepRunning()) {
        standClock(state);
        engine.open(file);
        engine.start();
        {
            const Measured measured(state);
            Engine::tick();
        }
        if (MM1.eventIndex != MM1.eventCount - 1) {
            state.SkipWithError("not all events were due");
        }
        engine.close();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kMany);
}

void fluidBurst(benchmark::State& state) {
    const std::string file = songFile(kBurst);
    while (state.KeepRunning()) {
        standClock(state);
        FluidPlayer player;
        player.add(file);
        player.step();
        player.rush();
        {
            const Measured measured(state);
            player.step();
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kMany);
}

/// One note now and one in the far future.
void idleTicks(benchmark::State& state) {
    const std::string file = songFile({Kind::Burst, 1, 2});
    const Engine engine;
    engine.open(file);
    while (state.KeepRunning()) {
        standClock(state);
        engine.start();
        Engine::tick();
        {
            const Measured measured(state);
            for (int i = 0; i < kIdleTicks; ++i) {
                Engine::tick();
            }
        }
        if (MM1.eventIndex != 1 || MM1.playing == 0) {
            state.SkipWithError("something was due");
        }
        mm_StopSync(engine.player());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kIdleTicks);
}

void lockPairs(benchmark::State& state) {
    Engine engine;
    while (state.KeepRunning()) {
        standClock(state);
        {
            const Measured measured(state);
            for (int i = 0; i < kIdleTicks; ++i) {
                EnterCriticalSection(&engine.lock());
                LeaveCriticalSection(&engine.lock());
            }
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kIdleTicks);
}

void playSong(benchmark::State& state) {
    const std::string file = songFile(kSong);
    const Engine engine;
    engine.open(file);
    double periods = 0;
    while (state.KeepRunning()) {
        standClock(state);
        engine.start();
        periods = 0;
        {
            const Measured measured(state);
            for (; MM1.playing != 0; ++periods) {
                Engine::tick();
            }
        }
        state.ResumeTiming();
    }
    state.counters["song_seconds"] = periods * Engine::kPeriod / kMillisecondsPerSecond;
}

void seekEngine(benchmark::State& state) {
    const std::string file = songFile(kSong);
    const Engine engine;
    while (state.KeepRunning()) {
        standClock(state);
        engine.open(file);
        engine.start();
        Engine::tick();
        const std::uint32_t middle = MM1.events[MM1.eventCount - 1].time / 2;
        {
            const Measured measured(state);
            mm_CreateMap(engine.player(), middle);
            mm_SendMap(engine.player(), middle);
        }
        engine.close();
        state.ResumeTiming();
    }
}

void seekFluid(benchmark::State& state) {
    const std::string file = songFile(kSong);
    while (state.KeepRunning()) {
        standClock(state);
        FluidPlayer player;
        player.add(file);
        player.step();
        {
            const Measured measured(state);
            player.seek(player.length() / 2);
            player.step();
        }
        state.ResumeTiming();
    }
}

BENCHMARK(playBurst)->Name("burst/engine")->Unit(benchmark::kMillisecond);
BENCHMARK(fluidBurst)->Name("burst/FluidSynth")->Unit(benchmark::kMillisecond);
BENCHMARK(idleTicks)->Name("idle/engine")->Unit(benchmark::kMicrosecond);
BENCHMARK(lockPairs)->Name("idle/lock")->Unit(benchmark::kMicrosecond);
BENCHMARK(playSong)->Name("song/engine")->Unit(benchmark::kMillisecond);
BENCHMARK(seekEngine)->Name("seek/engine")->Unit(benchmark::kMillisecond);
BENCHMARK(seekFluid)->Name("seek/FluidSynth")->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
