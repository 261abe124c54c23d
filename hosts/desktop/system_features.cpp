// Functions that only newer Windows have.
#include "desktop/system_features.h"

namespace desktop {

namespace {

template <typename Function>
Function* lookUp(const wchar_t* library, const char* name) {
    const HMODULE module = LoadLibraryW(library);
    if (module == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Declared here, since the headers hide what the oldest supported Windows lacks.
const HANDLE kPerMonitorAwareV2 = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-4));
constexpr int kProcessPowerThrottling = 4;
constexpr ULONG kThrottlingVersion = 1;
constexpr ULONG kExecutionSpeed = 0x1;
constexpr ULONG kIgnoreTimerResolution = 0x4;

struct PowerThrottling {
    ULONG version;
    ULONG controlMask;
    ULONG stateMask;
};

bool setThrottling(ULONG controlled) {
    using Set = BOOL WINAPI(HANDLE, int, void*, DWORD);
    auto* const set = lookUp<Set>(L"kernel32.dll", "SetProcessInformation");
    PowerThrottling throttling = {kThrottlingVersion, controlled, 0};
    return set != nullptr &&
           set(GetCurrentProcess(), kProcessPowerThrottling, &throttling, sizeof throttling) != 0;
}

} // namespace

void drawAtAnyScale() {
    using SetContext = BOOL WINAPI(HANDLE);
    using SetAware = BOOL WINAPI();
    if (auto* const set = lookUp<SetContext>(L"user32.dll", "SetProcessDpiAwarenessContext")) {
        if (set(kPerMonitorAwareV2) != 0) {
            return;
        }
    }
    if (auto* const set = lookUp<SetAware>(L"user32.dll", "SetProcessDPIAware")) {
        set();
    }
}

void keepTimerSteady() {
    // Windows 10 knows the execution speed alone and refuses both together.
    if (!setThrottling(kExecutionSpeed | kIgnoreTimerResolution)) {
        setThrottling(kExecutionSpeed);
    }
}

int dpiOf(HWND window) {
    using GetDpi = UINT WINAPI(HWND);
    static auto* const getDpi = lookUp<GetDpi>(L"user32.dll", "GetDpiForWindow");
    if (getDpi != nullptr) {
        if (const UINT dpi = getDpi(window); dpi != 0) {
            return static_cast<int>(dpi);
        }
    }
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dpi;
}

SIZE outerSize(SIZE client, DWORD style, bool menu, int dpi) {
    using Adjust = BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT);
    static auto* const adjust = lookUp<Adjust>(L"user32.dll", "AdjustWindowRectExForDpi");
    RECT outer = {0, 0, client.cx, client.cy};
    if (adjust == nullptr ||
        adjust(&outer, style, menu ? TRUE : FALSE, 0, static_cast<UINT>(dpi)) == 0) {
        AdjustWindowRectEx(&outer, style, menu ? TRUE : FALSE, 0);
    }
    return {outer.right - outer.left, outer.bottom - outer.top};
}

} // namespace desktop
