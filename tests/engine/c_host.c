/* A host in C99: what the public headers promise must hold here as well as in C++. */
#include <string.h>

#include "corvmo32.h"

static MMCLICK silentClick(void) {
    MMCLICK click;
    memset(&click, 0, sizeof click);
    click.clickDevice = 1;
    return click;
}

static void setMix(HMIDIOUT player) {
    const MMPATCH patch = {1, 2, 40, 0};
    MMNOTEPAIR pairs[10];
    memset(pairs, -1, sizeof pairs);
    pairs[0].from = 36;
    pairs[0].to = 35;
    mm_SetPatch(player, 0, &patch);
    mm_SetReplaceNotes(player, 9, pairs, 0);
    mm_SetVolume(player, 0, -28);
}

static void setRange(HMIDIOUT player) {
    MMLOOP ranges[MM_MAX_LOOPS];
    int i;
    memset(ranges, 0, sizeof ranges);
    for (i = 1; i < MM_MAX_LOOPS; ++i) {
        ranges[i].start = MMLOOP_UNUSED;
    }
    mm_SetLoop(player, ranges);
}

static int songIsKnown(HMIDIOUT player) {
    const MMEVENT* first = mm_GetPointerEvents(player, 0);
    const MMMAP* map = mm_GetMap(player);
    mm_CreateMap(player, 1);
    return first->time == 0 && map->channel[0].slot[MMSLOT_VOLUME] == 100 &&
           map->tempo == MMMAP_NONE32 && mm_GetInfo(player)->keySignature == -1 &&
           mm_GetMM1()->division == mm_GetUnits(player);
}

int cHostStart(const MMINIT* settings, const char* file, HMIDIOUT* player);

/* Starts the engine, opens the file on player 1, gives it one of everything and starts it. Answers 0, or
   the number of the step that failed. */
int cHostStart(const MMINIT* settings, const char* file, HMIDIOUT* player) {
    const MMCLICK click = silentClick();
    if (mm_InitEngine(settings, player, 0) != 1) {
        return 1;
    }
    if (mm_Open(*player, "no such file", MMOPT_NOTES, 0, 0, &click) != 0 ||
        mm_GetLastError() != ENGINE_ERR_FILE) {
        return 2;
    }
    if (mm_Open(*player, file, MMOPT_NOTES, 0, 0, &click) != 1) {
        return 3;
    }
    if (!songIsKnown(*player)) {
        return 4;
    }
    setRange(*player);
    setMix(*player);
    if (mm_PlayFirstNote(*player) != 1) {
        return 5;
    }
    mm_StartSync(*player);
    return mm_GetMM(*player)->playing == 1 ? 0 : 6;
}
