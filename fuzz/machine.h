// The machine that the fuzz targets run the engine on: a clock that stands still, outputs that judge every
// message, and song files that live in memory. A property that does not hold ends the process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "corvmo32.h"
#include "corvmo32_linux.h"

namespace fuzz {

/// Ends the process with a message when a property does not hold.
void require(bool holds, const char* property);

/// A file without a name on any disk.
class MemoryFile {
public:
    explicit MemoryFile(std::span<const std::uint8_t> bytes);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// A path under which it can be opened.
    const char* path() const {
        return m_path.c_str();
    }

private:
    int m_descriptor;
    std::string m_path;
};

constexpr UINT kOutputs = 2;

/// Chooses the manual clock and the judging outputs, makes the lock and the window. Once a process.
class Machine {
public:
    Machine();

    CRITICAL_SECTION* lock() {
        return &m_lock;
    }
    HWND window() const {
        return m_window;
    }

    /// Lets time pass and empties the window's queue.
    void pass(std::uint32_t milliseconds);

    /// Forgets what sounds and which bytes may be sent.
    void forget();
    /// Data bytes above 127 are a song's own: those of this player's events may be sent from now on.
    void allowBytesOf(HMIDIOUT player);
    /// The host sends raw messages of its own: from now on only their frames are judged.
    void allowRawMessages();

    /// Notes and pedals that a device would still sound, a line each.
    static std::vector<std::string> sounding();
    static bool soundsNotes();

private:
    CRITICAL_SECTION m_lock{};
    HWND m_window;
};

/// The one machine of this process.
Machine& machine();

/// Starts the engine with one player on each output, every switch that adds work on.
struct Players {
    HMIDIOUT first = nullptr;
    HMIDIOUT second = nullptr;
};
Players startEngine();

} // namespace fuzz
