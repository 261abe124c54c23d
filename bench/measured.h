// Times one stretch of a benchmark's round and lets callgrind count that stretch alone.
#pragma once

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

namespace bench {

/// Begins with the clock stopped; see Measured.
inline void standClock(benchmark::State& state) {
    state.PauseTiming();
}

/// The clock runs while this lives.
class Measured {
public:
    explicit Measured(benchmark::State& state) : m_state(state) {
        CALLGRIND_START_INSTRUMENTATION;
        m_state.ResumeTiming();
    }
    ~Measured() {
        m_state.PauseTiming();
        CALLGRIND_STOP_INSTRUMENTATION;
    }
    Measured(const Measured&) = delete;
    Measured& operator=(const Measured&) = delete;

private:
    benchmark::State& m_state;
};

} // namespace bench
