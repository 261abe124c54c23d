// The tests' machine on the platform layer's own doubles: host outputs, recorder, manual clock, faults.
#include <array>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "corvmo32_linux.h"
#include "platform/linux/faults.h"
#include "tests/support/machine.h"

namespace {

constexpr std::uint32_t kWatchdog = 60000; ///< milliseconds of real time
/// A quarter of a second before the milliseconds wrap, so that they do in most tests.
constexpr std::uint32_t kClockStart = 0xFFFFFF00;

std::array<std::unique_ptr<OutputDouble>, machine::kMaxOutputs> doubles;
std::mutex logMutex;
std::vector<Sent> sentLog;
std::uint64_t origin = 0;
HWND testWindow = nullptr;

OutputDouble& doubleOf(void* user) {
    return *static_cast<OutputDouble*>(user);
}

MMRESULT openOutput(void* user) {
    ++doubleOf(user).opened;
    return doubleOf(user).openResult;
}

void closeOutput(void* user) {
    ++doubleOf(user).closed;
}

void resetOutput(void* user) {
    ++doubleOf(user).resets;
}

void callObserver(void* user) {
    if (void (*const observer)() = doubleOf(user).onMessage) {
        observer();
    }
}

MMRESULT shortMessage(void* user, std::uint32_t) {
    callObserver(user);
    return doubleOf(user).shortResult;
}

MMRESULT longMessage(void* user, const std::uint8_t*, std::uint32_t) {
    callObserver(user);
    return MMSYSERR_NOERROR;
}

MMRESULT prepareMessage(void* user) {
    return doubleOf(user).prepareResult;
}

int stillPlaying(void* user) {
    return doubleOf(user).stillPlaying > 0 ? doubleOf(user).stillPlaying-- : 0;
}

void record(void*, const corvmo_sent* message) {
    const std::lock_guard guard(logMutex);
    sentLog.push_back({static_cast<int>(message->output), message->time - origin,
                       std::vector<std::uint8_t>(message->data, message->data + message->length)});
}

void setUpOutputs(int count) {
    static const std::string kName = "test output";
    std::vector<corvmo_output> outputs;
    for (int i = 0; i < count; ++i) {
        auto& output = doubles.at(static_cast<std::size_t>(i));
        output = std::make_unique<OutputDouble>();
        outputs.push_back({kName.c_str(), output.get(), openOutput, closeOutput, resetOutput,
                           shortMessage, longMessage, prepareMessage, stillPlaying});
    }
    corvmo_output none{};
    corvmo_SetOutputs(outputs.empty() ? &none : outputs.data(), static_cast<UINT>(outputs.size()));
    corvmo_RecordOutputs(record, nullptr);
    machine::takeSent();
    origin = corvmo_GetClock();
    testWindow = corvmo_CreateWindow();
}

} // namespace

namespace machine {

void setUp(int outputs) {
    faults::clear();
    corvmo_UseManualClock(kClockStart);
    setUpOutputs(outputs);
}

void setUpRealTime(int outputs) {
    faults::clear();
    corvmo_UseRealClock();
    setUpOutputs(outputs);
}

void tearDown() {
    faults::clear();
    corvmo_RecordOutputs(nullptr, nullptr);
    corvmo_SetOutputs(nullptr, 0);
    corvmo_DestroyWindow(testWindow);
    testWindow = nullptr;
}

OutputDouble& output(int index) {
    return *doubles.at(static_cast<std::size_t>(index));
}

void passPeriods(int count, int periodMilliseconds) {
    corvmo_AdvanceClock(static_cast<std::uint32_t>(count) *
                        static_cast<std::uint32_t>(periodMilliseconds));
}

DWORD time() {
    constexpr std::uint64_t kMicrosecondsPerMillisecond = 1000;
    return static_cast<DWORD>(corvmo_GetClock() / kMicrosecondsPerMillisecond);
}

std::vector<Sent> takeSent() {
    const std::lock_guard guard(logMutex);
    return std::exchange(sentLog, {});
}

HWND window() {
    return testWindow;
}

std::vector<Posted> takePosted() {
    std::vector<Posted> posted;
    corvmo_message message{};
    while (corvmo_WaitMessage(testWindow, &message, 0) == 1) {
        posted.push_back({message.message, message.wParam, message.lParam});
    }
    return posted;
}

std::optional<Posted> waitFor(UINT wanted) {
    corvmo_message message{};
    while (corvmo_WaitMessage(testWindow, &message, kWatchdog) == 1) {
        if (message.message == wanted) {
            return Posted{message.message, message.wParam, message.lParam};
        }
    }
    return std::nullopt;
}

void failCall(const char* function, int nth) {
    faults::failCall(function, nth);
}

int callCount(const char* function) {
    return faults::callCount(function);
}

void setTimerLimits(unsigned shortest, unsigned longest) {
    faults::setTimerLimits(shortest, longest);
}

} // namespace machine
