// Loading and unloading the DLL again and again in one process.
#include "tests/windows/dll_test.h"

#include <tlhelp32.h>

namespace {

constexpr DWORD kWatchdog = 30000; ///< milliseconds

constexpr std::uintptr_t kHighestHandle = 16384;
constexpr std::uintptr_t kHandleStep = 4;

/// Tries each possible handle: not every system that runs Windows programs keeps the count.
int handlesOfProcess() {
    int count = 0;
    for (std::uintptr_t value = kHandleStep; value <= kHighestHandle; value += kHandleStep) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0 ? 1 : 0;
    }
    return count;
}

int threadsOfProcess() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more != 0;
         more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

} // namespace

class Lifetime : public DllTest {
protected:
    /// One life of the library: start-up, in some rounds a song, and shut-down.
    void live(bool withSong) {
        load();
        machine::failCall("GlobalAlloc", 0);
        machine::failCall("GlobalFree", 0);
        ASSERT_EQ(start(), 1);
        if (withSong) {
            play(mm1, evenNotes(2, 12));
            play(mm2, evenNotes(3, 12), kAllOptions);
            ASSERT_TRUE(window.waitFor(MMN_END, 2));
        }
        dll.mm_Close(mm1);
        dll.mm_Close(mm2);
        dll.mm_EndEngine();
        EXPECT_EQ(machine::callCount("GlobalFree"), machine::callCount("GlobalAlloc"));
        unload();
        ASSERT_EQ(GetModuleHandleA("corvmo32.dll"), nullptr);
    }
};

TEST_F(Lifetime, Ends_a_hundred_times_without_a_handle_or_thread_left) {
    constexpr int kRounds = 100;
    live(true);
    const int handles = handlesOfProcess();
    const int threads = threadsOfProcess();
    for (int round = 0; round < kRounds; ++round) {
        live(round % 5 == 0);
    }
    // The system's timer thread may still be on its way out.
    const DWORD start = GetTickCount();
    while ((handlesOfProcess() > handles || threadsOfProcess() > threads) &&
           GetTickCount() - start < kWatchdog) {
        SwitchToThread();
    }
    EXPECT_LE(handlesOfProcess(), handles);
    EXPECT_LE(threadsOfProcess(), threads);
    RecordProperty("handles", handles);
    RecordProperty("threads", threads);
}
