// What newer Windows offer and older ones lack: looked up at run time, so that the program loads on all.
#pragma once

#include <windows.h>

namespace desktop {

/// Tells Windows that the program draws at any scale itself, on each screen anew where that is known. Before the
/// first window.
void drawAtAnyScale();

/// Asks Windows not to stretch the song's timer while the windows are covered or minimised.
void keepTimerSteady();

/// Dots to the inch of the screen that a window is on.
int dpiOf(HWND window);

/// Outer size of a window whose client area has a size.
SIZE outerSize(SIZE client, DWORD style, bool menu, int dpi);

} // namespace desktop
