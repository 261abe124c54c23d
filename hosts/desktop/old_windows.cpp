// Stands in for a function that the compiler's run-time library imports and Windows XP lacks: without it the
// program would not be loaded there.
#include <windows.h>

#include <atomic>

extern "C" {

/// Milliseconds since the system was started. The system's own count of 32 bits wraps after 49 days; whoever asks at
/// least once in that time sees this one go on.
ULONGLONG WINAPI GetTickCount64() {
    static std::atomic<ULONGLONG> last{0};
    ULONGLONG before = last;
    ULONGLONG now = 0;
    do {
        // What has passed since, modulo 32 bits.
        now = before + static_cast<DWORD>(GetTickCount() - static_cast<DWORD>(before));
    } while (!last.compare_exchange_weak(before, now));
    return now;
}

/// Where calls through the import table look for its address.
extern const void* const kImportOfTickCount asm("__imp__GetTickCount64@0");
const void* const kImportOfTickCount = reinterpret_cast<const void*>(&GetTickCount64);
}
