/* A host outside the project: plays a song on the manual clock, and answers 0 when it was told of every
 * word and of the end. C and C++ at once. */
#include <corvmo32.h>
#include <corvmo32_linux.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
    corvmo_UseManualClock(0);
    corvmo_SetAudioDriver("none");
    CRITICAL_SECTION lock;
    InitializeCriticalSection(&lock);
    MMINIT settings;
    memset(&settings, 0, sizeof settings);
    settings.hwnd = corvmo_CreateWindow();
    settings.timerPeriod = 5;
    settings.lock = &lock;
    HMIDIOUT player;
    if (argc != 2 || mm_InitEngine(&settings, &player, NULL) != 1 ||
        mm_Open(player, argv[1], MMOPT_LYRICS, 0, 0, NULL) != 1) {
        printf("%s: error %u\n", argv[argc - 1], (unsigned)mm_GetLastError());
        return 1;
    }
    mm_PlayFirstNote(player);
    mm_StartSync(player);

    int words = 0;
    int ended = 0;
    corvmo_message posted;
    for (int second = 0; second < 3600 && !ended; ++second) {
        corvmo_AdvanceClock(1000);
        while (corvmo_WaitMessage(settings.hwnd, &posted, 0) == 1) {
            words += posted.message == MMN_LYRIC;
            ended |= posted.message == MMN_END;
        }
    }
    const int expected = mm_GetNumLyrics(player) - 1;
    mm_Close(player);
    mm_EndEngine();
    DeleteCriticalSection(&lock);
    corvmo_DestroyWindow(settings.hwnd);
    printf("%d of %d words, %s\n", words, expected, ended ? "ended" : "not ended");
    return ended && expected > 0 && words >= expected ? 0 : 1;
}
