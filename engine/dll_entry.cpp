// Entry point of the DLL: there is nothing to do when it is loaded or unloaded.
#include "platform/system.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}
