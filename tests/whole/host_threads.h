// Threads of a host: calls of the engine by chance while songs play, and a watchdog over them.
#pragma once

#include <atomic>
#include <random>
#include <string>
#include <thread>

#include "corvmo32.h"
#include "tests/support/song_builder.h"

/// A message of a kind with a running number at every tick, beside notes. At 1 ms periods and the usual tempo a
/// period is a tick.
SongBuilder messageEveryTick(int kind, int ticks);

/// Another one for each thread and round.
unsigned nextSeed();

/// A call that may come at any time and leaves the position of a playing song alone. None of these sets the
/// busy flag outside the lock, so that none makes a tick pass unserved.
void callBesideTicks(std::mt19937& random, HMIDIOUT player);

/// A setting of a player by chance; ticks that fall into some of these pass unserved.
void changeSetting(std::mt19937& random, HMIDIOUT player);

/// Opens, plays, moves and closes a song on a player.
void playBriefly(std::mt19937& random, HMIDIOUT player, const std::string& file);

/// Ends the tests loudly when it lives longer than any of them takes.
class Watchdog {
public:
    Watchdog() : m_thread([this] { watch(); }) {}
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    void watch() const;

    std::atomic<bool> m_over{false};
    std::thread m_thread;
};
