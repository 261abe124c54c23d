/* A host as Microsoft's compiler would make it: no run-time library, every kind of argument. Answers the
 * error code for a file that is not there. */
#include <stddef.h>

#define IMPORTED __declspec(dllimport)
#define CALL __stdcall

typedef struct player_handle* Player;
IMPORTED short CALL mm_InitEngine(const void*, Player*, Player*);
IMPORTED short CALL mm_Scan(Player, const char*);
IMPORTED void CALL mm_SetTempo(Player, unsigned, float);
IMPORTED void CALL mm_EndEngine(void);
IMPORTED unsigned CALL mm_GetLastError(void);
IMPORTED void CALL InitializeCriticalSection(void*);
IMPORTED void CALL ExitProcess(unsigned);

int _fltused = 1; /* what the run-time library has where floating point is used */
static unsigned char lock[24];
static unsigned char settings[44]; /* an MMINIT */

void start(void) {
    Player player;
    settings[4] = 5; /* timerPeriod */
    InitializeCriticalSection(lock);
    *(void* __unaligned*)(settings + 26) = lock;
    if (mm_InitEngine(settings, &player, NULL) != 1) {
        ExitProcess(1);
    }
    mm_SetTempo(player, 500000, 10.0f);
    mm_Scan(player, "no such file");
    mm_EndEngine();
    ExitProcess(mm_GetLastError() % 256);
}
