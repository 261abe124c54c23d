// The engine as the benchmarks use it: started on outputs that do nothing, with the clock standing still, so
// that timer periods pass when a benchmark calls the tick.
#pragma once

#include <string>

#include "corvmo32.h"
#include "platform/system.h"

namespace bench {

class Engine {
public:
    Engine();
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    HMIDIOUT player() const {
        return m_player;
    }
    CRITICAL_SECTION& lock() {
        return m_lock;
    }

    /// Ends the program when the song does not open.
    void open(const std::string& file) const;
    void close() const {
        mm_Close(m_player);
    }
    /// Gives the song its whole range and starts it from the beginning.
    void start() const;

    static constexpr int kPeriod = 5; ///< milliseconds

    /// Lets one timer period pass.
    static void tick() {
        SyncTimer(0, 0, 0, 0, 0);
    }

private:
    CRITICAL_SECTION m_lock{};
    HMIDIOUT m_player = nullptr;
};

} // namespace bench
