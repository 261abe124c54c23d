// The tests' machine on Windows. Memory, files, locks, messages and the timer are the system's own; the MIDI
// outputs are the tests', put in place by patching the program's import table. Outside real time the
// system's timer runs, but its periods pass when a test says so.
#include <array>
#include <atomic>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "tests/support/import_table.h"
#include "tests/support/machine_windows.h"

namespace {

constexpr DWORD kWatchdog = 60000;    ///< milliseconds
constexpr UINT kLastMessage = 0x7FFF; ///< of those that programs define

std::array<std::unique_ptr<OutputDouble>, machine::kMaxOutputs> doubles;
UINT outputCount = 0;
std::mutex logMutex;
std::vector<Sent> sentLog;
std::atomic<std::uint64_t> passed{0}; ///< microseconds of periods let pass
bool realTime = false;
LPTIMECALLBACK engineCallback = nullptr;
HWND testWindow = nullptr;

/// Calls of a function that may be made to fail.
struct Fault {
    int calls = 0;
    int failing = 0;
};
std::mutex faultMutex;
std::map<std::string, Fault> faults;

bool fails(const char* function) {
    const std::lock_guard guard(faultMutex);
    const auto found = faults.find(function);
    return found != faults.end() && ++found->second.calls == found->second.failing;
}

std::uint64_t now() {
    if (!realTime) {
        return passed;
    }
    LARGE_INTEGER count;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<std::uint64_t>(static_cast<double>(count.QuadPart) * 1e6 /
                                      static_cast<double>(frequency.QuadPart));
}

void record(int output, const void* bytes, std::size_t length) {
    const auto* data = static_cast<const std::uint8_t*>(bytes);
    const std::lock_guard guard(logMutex);
    sentLog.push_back({output, now(), {data, data + length}});
}

/// Handles are the output's index and one, so that no output has the null handle; a closed one is no more.
int indexOf(HMIDIOUT device) {
    const auto number = reinterpret_cast<std::uintptr_t>(device);
    if (number < 1 || number > outputCount) {
        return -1;
    }
    const int index = static_cast<int>(number) - 1;
    const OutputDouble& output = machine::output(index);
    return output.opened > output.closed ? index : -1;
}

UINT WINAPI getNumDevs() {
    return outputCount;
}

MMRESULT WINAPI openOutput(HMIDIOUT* device, UINT index, DWORD_PTR, DWORD_PTR, DWORD) {
    if (fails("midiOutOpen") || index >= outputCount) {
        return MMSYSERR_BADDEVICEID;
    }
    OutputDouble& output = machine::output(static_cast<int>(index));
    ++output.opened;
    if (output.openResult != MMSYSERR_NOERROR) {
        return output.openResult;
    }
    *device = reinterpret_cast<HMIDIOUT>(static_cast<std::uintptr_t>(index) + 1);
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI closeOutput(HMIDIOUT device) {
    const int index = indexOf(device);
    if (index < 0) {
        return MMSYSERR_INVALHANDLE;
    }
    ++machine::output(index).closed;
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI resetOutput(HMIDIOUT device) {
    const int index = indexOf(device);
    if (index < 0 || fails("midiOutReset")) {
        return MMSYSERR_INVALHANDLE;
    }
    ++machine::output(index).resets;
    return MMSYSERR_NOERROR;
}

void callObserver(int index) {
    if (void (*const observer)() = machine::output(index).onMessage) {
        observer();
    }
}

std::size_t shortLength(DWORD message) {
    const DWORD kind = message & 0xF0;
    return kind == 0xC0 || kind == 0xD0 ? 2 : 3;
}

MMRESULT WINAPI shortMessage(HMIDIOUT device, DWORD message) {
    const int index = indexOf(device);
    if (index < 0 || fails("midiOutShortMsg")) {
        return MMSYSERR_INVALHANDLE;
    }
    record(index, &message, shortLength(message));
    callObserver(index);
    return machine::output(index).shortResult;
}

MMRESULT WINAPI prepareHeader(HMIDIOUT device, MIDIHDR* header, UINT) {
    const int index = indexOf(device);
    if (index < 0 || fails("midiOutPrepareHeader")) {
        return MMSYSERR_INVALHANDLE;
    }
    if (machine::output(index).prepareResult != MMSYSERR_NOERROR) {
        return machine::output(index).prepareResult;
    }
    header->dwFlags |= MHDR_PREPARED;
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI longMessage(HMIDIOUT device, MIDIHDR* header, UINT) {
    const int index = indexOf(device);
    if (index < 0 || fails("midiOutLongMsg")) {
        return MMSYSERR_INVALHANDLE;
    }
    if ((header->dwFlags & MHDR_PREPARED) == 0) {
        return MIDIERR_UNPREPARED;
    }
    record(index, header->lpData, header->dwBufferLength);
    callObserver(index);
    header->dwFlags |= MHDR_DONE;
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI unprepareHeader(HMIDIOUT device, MIDIHDR* header, UINT) {
    const int index = indexOf(device);
    if (index < 0) {
        return MMSYSERR_INVALHANDLE;
    }
    if (fails("midiOutUnprepareHeader")) {
        return MMSYSERR_INVALHANDLE;
    }
    OutputDouble& output = machine::output(index);
    if (output.stillPlaying > 0) {
        --output.stillPlaying;
        return MIDIERR_STILLPLAYING;
    }
    header->dwFlags &= ~static_cast<DWORD>(MHDR_PREPARED);
    return MMSYSERR_NOERROR;
}

// The system's own functions, with a fault in front of them. They are reached by address: their imports
// lead here.

TIMECAPS limits{};

template <typename Function>
Function* systemFunction(const char* library, const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(LoadLibraryA(library), name)));
}

#define SYSTEM_FUNCTION(library, name)                                                             \
    const auto system_##name =                                                                     \
        systemFunction<std::remove_pointer_t<decltype(&name)>>(library, #name)

SYSTEM_FUNCTION("kernel32", GlobalAlloc);
SYSTEM_FUNCTION("kernel32", GlobalReAlloc);
SYSTEM_FUNCTION("kernel32", GlobalLock);
SYSTEM_FUNCTION("kernel32", GlobalFree);
SYSTEM_FUNCTION("kernel32", CreateFileA);
SYSTEM_FUNCTION("kernel32", GetFileSize);
SYSTEM_FUNCTION("kernel32", ReadFile);
SYSTEM_FUNCTION("kernel32", CloseHandle);
SYSTEM_FUNCTION("winmm", timeGetDevCaps);
SYSTEM_FUNCTION("winmm", timeBeginPeriod);
SYSTEM_FUNCTION("winmm", timeEndPeriod);
SYSTEM_FUNCTION("winmm", timeSetEvent);
SYSTEM_FUNCTION("winmm", timeKillEvent);

HGLOBAL WINAPI globalAlloc(UINT flags, SIZE_T bytes) {
    return fails("GlobalAlloc") ? nullptr : system_GlobalAlloc(flags, bytes);
}

HGLOBAL WINAPI globalReAlloc(HGLOBAL block, SIZE_T bytes, UINT flags) {
    return fails("GlobalReAlloc") ? nullptr : system_GlobalReAlloc(block, bytes, flags);
}

LPVOID WINAPI globalLock(HGLOBAL block) {
    return fails("GlobalLock") ? nullptr : system_GlobalLock(block);
}

HGLOBAL WINAPI globalFree(HGLOBAL block) {
    return fails("GlobalFree") ? block : system_GlobalFree(block);
}

HANDLE WINAPI createFile(LPCSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                         DWORD disposition, DWORD attributes, HANDLE pattern) {
    return fails("CreateFileA") ? INVALID_HANDLE_VALUE
                                : system_CreateFileA(name, access, share, security, disposition,
                                                     attributes, pattern);
}

DWORD WINAPI getFileSize(HANDLE file, LPDWORD high) {
    return fails("GetFileSize") ? INVALID_FILE_SIZE : system_GetFileSize(file, high);
}

BOOL WINAPI readFile(HANDLE file, LPVOID buffer, DWORD bytes, LPDWORD bytesRead,
                     LPOVERLAPPED overlapped) {
    if (fails("ReadFile")) {
        *bytesRead = 0;
        return FALSE;
    }
    return system_ReadFile(file, buffer, bytes, bytesRead, overlapped);
}

BOOL WINAPI closeHandle(HANDLE handle) {
    return fails("CloseHandle") ? FALSE : system_CloseHandle(handle);
}

MMRESULT WINAPI getDevCaps(LPTIMECAPS caps, UINT size) {
    if (fails("timeGetDevCaps")) {
        return TIMERR_NOCANDO;
    }
    if (limits.wPeriodMax != 0) {
        *caps = limits;
        return TIMERR_NOERROR;
    }
    return system_timeGetDevCaps(caps, size);
}

MMRESULT WINAPI beginPeriod(UINT period) {
    return fails("timeBeginPeriod") ? TIMERR_NOCANDO : system_timeBeginPeriod(period);
}

MMRESULT WINAPI endPeriod(UINT period) {
    return fails("timeEndPeriod") ? TIMERR_NOCANDO : system_timeEndPeriod(period);
}

void CALLBACK ignorePeriod(UINT, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR) {}

MMRESULT WINAPI setEvent(UINT delay, UINT resolution, LPTIMECALLBACK callback, DWORD_PTR user,
                         UINT flags) {
    if (fails("timeSetEvent")) {
        return 0;
    }
    engineCallback = callback;
    return system_timeSetEvent(delay, resolution, realTime ? callback : ignorePeriod, user, flags);
}

MMRESULT WINAPI killEvent(UINT timerId) {
    engineCallback = nullptr;
    return fails("timeKillEvent") ? TIMERR_NOCANDO : system_timeKillEvent(timerId);
}

template <typename Function>
const void* address(Function* function) {
    return reinterpret_cast<const void*>(function);
}

void setUpMachine(int outputs) {
    [[maybe_unused]] static const bool kPatched = machine::takeOver(GetModuleHandleA(nullptr));
    outputCount = static_cast<UINT>(outputs);
    for (int i = 0; i < outputs; ++i) {
        doubles.at(static_cast<std::size_t>(i)) = std::make_unique<OutputDouble>();
    }
    passed = 0;
    machine::takeSent();
    testWindow =
        CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
}

} // namespace

namespace machine {

bool takeOver(HMODULE module) {
    const std::pair<const char*, const void*> replacements[] = {
        {"midiOutGetNumDevs", address(getNumDevs)},
        {"midiOutOpen", address(openOutput)},
        {"midiOutClose", address(closeOutput)},
        {"midiOutReset", address(resetOutput)},
        {"midiOutShortMsg", address(shortMessage)},
        {"midiOutPrepareHeader", address(prepareHeader)},
        {"midiOutLongMsg", address(longMessage)},
        {"midiOutUnprepareHeader", address(unprepareHeader)},
        {"GlobalAlloc", address(globalAlloc)},
        {"GlobalReAlloc", address(globalReAlloc)},
        {"GlobalLock", address(globalLock)},
        {"GlobalFree", address(globalFree)},
        {"CreateFileA", address(createFile)},
        {"GetFileSize", address(getFileSize)},
        {"ReadFile", address(readFile)},
        {"CloseHandle", address(closeHandle)},
        {"timeGetDevCaps", address(getDevCaps)},
        {"timeBeginPeriod", address(beginPeriod)},
        {"timeEndPeriod", address(endPeriod)},
        {"timeSetEvent", address(setEvent)},
        {"timeKillEvent", address(killEvent)},
    };
    bool all = true;
    for (const auto& [name, function] : replacements) {
        all = replaceImport(module, name, function) != nullptr && all;
    }
    return all;
}

void setUp(int outputs) {
    realTime = false;
    setUpMachine(outputs);
}

void setUpRealTime(int outputs) {
    realTime = true;
    setUpMachine(outputs);
}

void tearDown() {
    const std::lock_guard guard(faultMutex);
    faults.clear();
    limits = {};
    DestroyWindow(testWindow);
    testWindow = nullptr;
    outputCount = 0;
}

OutputDouble& output(int index) {
    return *doubles.at(static_cast<std::size_t>(index));
}

void passPeriods(int count, int periodMilliseconds) {
    for (int i = 0; i < count; ++i) {
        passed += static_cast<std::uint64_t>(periodMilliseconds) * 1000;
        if (engineCallback != nullptr) {
            engineCallback(0, 0, 0, 0, 0);
        }
    }
}

DWORD time() {
    return timeGetTime();
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
    MSG message;
    while (PeekMessageA(&message, testWindow, WM_USER, kLastMessage, PM_REMOVE) != 0) {
        posted.push_back({message.message, message.wParam, message.lParam});
    }
    return posted;
}

std::optional<Posted> waitFor(UINT wanted) {
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < kWatchdog) {
        // One at a time: what comes after the wanted one stays for the next call.
        MSG message;
        while (PeekMessageA(&message, testWindow, WM_USER, kLastMessage, PM_REMOVE) != 0) {
            if (message.message == wanted) {
                return Posted{message.message, message.wParam, message.lParam};
            }
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kWatchdog, QS_POSTMESSAGE);
    }
    return std::nullopt;
}

void failCall(const char* function, int nth) {
    const std::lock_guard guard(faultMutex);
    faults[function] = {0, nth};
}

int callCount(const char* function) {
    const std::lock_guard guard(faultMutex);
    return faults[function].calls;
}

void setTimerLimits(unsigned shortest, unsigned longest) {
    limits = {shortest, longest};
}

} // namespace machine
