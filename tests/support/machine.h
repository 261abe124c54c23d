// The machine that the engine runs on in tests: MIDI outputs that record what they receive, a window that
// collects notifications, and timer periods that pass when a test says so.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corvmo32.h"
#include "platform/system.h"

/// One message that an output received.
struct Sent {
    int output = 0;
    std::uint64_t time = 0; ///< microseconds since the machine was set up
    std::vector<std::uint8_t> bytes;
};

/// "0: 90 3C 64" for output 0.
std::string toText(const Sent& sent);
std::vector<std::string> toText(const std::vector<Sent>& log);

/// One notification that the window received.
struct Posted {
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;

    bool operator==(const Posted&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Posted& posted);

/// How a test's output behaves.
struct OutputDouble {
    std::atomic<MMRESULT> openResult{0};
    std::atomic<MMRESULT> shortResult{0};
    std::atomic<MMRESULT> prepareResult{0};
    std::atomic<int> stillPlaying{0}; ///< how often a long message is reported as unfinished
    std::atomic<int> opened{0};
    std::atomic<int> closed{0};
    std::atomic<int> resets{0};
    std::atomic<void (*)()> onMessage{nullptr}; ///< called while a message is under way
};

namespace machine {

constexpr int kMaxOutputs = 40;

/// Fresh outputs, an empty log, a new window, a clock that stands.
void setUp(int outputs);
/// The same with the machine's own clock and timer.
void setUpRealTime(int outputs);
void tearDown();

OutputDouble& output(int index);

/// Lets timer periods pass, one after the other. Not in real time.
void passPeriods(int count, int periodMilliseconds);
/// The system time that the engine reads, milliseconds. Reading it here lets no time pass.
DWORD time();

/// What was sent since the last call.
std::vector<Sent> takeSent();

HWND window();
/// What was posted since the last call.
std::vector<Posted> takePosted();
/// Waits for a notification, passing over others; empty after a watchdog's time.
std::optional<Posted> waitFor(UINT message);

/// The nth call from now of a system function fails, once.
void failCall(const char* function, int nth);
/// Calls of a system function since it was last named to failCall.
int callCount(const char* function);
void setTimerLimits(unsigned shortest, unsigned longest);

} // namespace machine
