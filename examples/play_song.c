/* A whole host in one file: plays a song and prints its words as they come.
 *
 *     play_song SONG [DEVICE]
 *
 * Windows:  cl play_song.c corvmo32.lib user32.lib winmm.lib        (32-bit)
 * MinGW:    i686-w64-mingw32-gcc play_song.c -lcorvmo32 -lwinmm
 * Linux:    cc play_song.c $(pkg-config --cflags --libs corvmo32)
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "corvmo32.h"

/* ---- what the systems have under different names ---- */

#ifdef _WIN32

/* A window that is never seen and only receives messages. */
static HWND openWindow(void) {
    return CreateWindowA("STATIC", NULL, 0, 0, 0, 0, 0, HWND_MESSAGE, NULL, NULL, NULL);
}

static void closeWindow(HWND window) {
    DestroyWindow(window);
}

/* Waits for the next notification; 0 when there will be none. */
static int nextMessage(HWND window, UINT* message, uintptr_t* first) {
    MSG posted;
    if (GetMessageA(&posted, window, 0, 0) <= 0) {
        return 0;
    }
    *message = posted.message;
    *first = posted.wParam;
    return 1;
}

#else

#include "corvmo32_linux.h"

static HWND openWindow(void) {
    return corvmo_CreateWindow();
}

static void closeWindow(HWND window) {
    corvmo_DestroyWindow(window);
}

static int nextMessage(HWND window, UINT* message, uintptr_t* first) {
    corvmo_message posted;
    if (!corvmo_WaitMessage(window, &posted, 0xFFFFFFFFu)) {
        return 0;
    }
    *message = posted.message;
    *first = posted.wParam;
    return 1;
}

#endif

/* ---- the host ---- */

static void printWord(HMIDIOUT player, int16_t index) {
    const MMLYRIC* lyric = mm_GetPointerLyrics(player, index);
    fputs(strcmp(lyric->text, "\r") == 0 ? "\n" : lyric->text, stdout);
    fflush(stdout);
}

static void playToItsEnd(HMIDIOUT player, HWND window) {
    UINT message;
    uintptr_t first;

    mm_SetLoop(player, NULL); /* the whole song, once */
    mm_PlayFirstNote(player); /* sends the song's set-up */
    mm_StartSync(player);
    while (nextMessage(window, &message, &first) && message != MMN_END) {
        if (message == MMN_LYRIC) {
            printWord(player, (int16_t)first);
        }
    }
    putchar('\n');
}

int main(int argc, char** argv) {
    CRITICAL_SECTION lock; /* must outlive the engine */
    MMINIT settings;
    HMIDIOUT player = NULL;
    int opened = 0;

    if (argc < 2 || argc > 3) {
        fprintf(stderr, "usage: play_song SONG [DEVICE]\n");
        return 2;
    }
    InitializeCriticalSection(&lock);
    memset(&settings, 0, sizeof settings);
    settings.hwnd = openWindow();
    settings.timerPeriod = 5; /* milliseconds */
    settings.deviceIndex1 = argc == 3 ? (uint32_t)strtoul(argv[2], NULL, 10) : 0;
    settings.flags = MMINIT_SYSEXSTORE;
    settings.lock = &lock;

    if (mm_InitEngine(&settings, &player, NULL) == 1) {
        opened = mm_Open(player, argv[1], MMOPT_LYRICS, 0, 0, NULL) == 1;
        if (opened) {
            playToItsEnd(player, settings.hwnd);
        }
        mm_Close(player);
    }
    if (!opened) {
        fprintf(stderr, "%s: error %u\n", argv[1], (unsigned)mm_GetLastError());
    }
    mm_EndEngine();
    closeWindow(settings.hwnd);
    DeleteCriticalSection(&lock);
    return opened ? 0 : 1;
}
