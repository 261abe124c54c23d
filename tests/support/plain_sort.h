// The sort of the event list in its plainest form: the order of equal times that hosts rely on.
#pragma once

#include <utility>

#include "corvmo32_records.h"

/// The latest record of lo to hi, the first of several, goes to the end; then the same with the rest.
inline void plainSelection(MMEVENT* events, int lo, int hi) {
    for (; hi > lo; hi -= 1) {
        int greatest = lo;
        for (int k = lo + 1; k <= hi; ++k) {
            greatest = events[k].time > events[greatest].time ? k : greatest;
        }
        std::swap(events[greatest], events[hi]);
    }
}

/// Sorts records lo to hi. The two ranges of a split share no record, so either may come first.
inline void plainSort(MMEVENT* events, int lo, int hi) {
    while (hi - lo + 1 > 8) {
        std::swap(events[lo + (hi - lo + 1) / 2], events[lo]);
        const std::uint32_t pivot = events[lo].time;
        int i = lo;
        int j = hi + 1;
        for (;;) {
            i += 1;
            while (i <= hi && !(events[i].time > pivot)) {
                i += 1;
            }
            j -= 1;
            while (j > lo && !(events[j].time < pivot)) {
                j -= 1;
            }
            if (j < i) {
                break;
            }
            std::swap(events[i], events[j]);
        }
        std::swap(events[lo], events[j]);
        // The larger range waits, for the sake of the stack.
        if (j - lo < hi - i + 1) {
            plainSort(events, lo, j - 1);
            lo = i;
        } else {
            plainSort(events, i, hi);
            hi = j - 1;
        }
    }
    plainSelection(events, lo, hi);
}
