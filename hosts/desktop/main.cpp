// The karaoke player for Windows: karaoke.exe [SONG...]
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "desktop/main_window.h"
#include "desktop/system_features.h"

namespace {

std::vector<std::wstring> songsOfCommandLine() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr) {
        return {};
    }
    std::vector<std::wstring> songs(words + 1, words + count);
    LocalFree(words);
    return songs;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    desktop::drawAtAnyScale();
    desktop::keepTimerSteady();
    InitCommonControls();
    desktop::MainWindow window(songsOfCommandLine(), desktop::programSettingsFile());
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!window.takeKey(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return 0;
}
