// The sort of the event list. It is not stable, and hosts see its order of equal times: partition and
// selection must move records exactly as they do here.
#include <utility>

#include "song/song.h"

namespace {

constexpr std::int32_t kSelectionSize = 8;
constexpr int kMaxPending = 32; ///< the larger half is the one deferred, so 30 would do

/// Records lo to hi, both included.
struct Range {
    std::int32_t lo;
    std::int32_t hi;

    std::int32_t size() const noexcept {
        return hi - lo + 1;
    }
};

/// Moves the latest record to the end, again and again.
void selectionSort(MMEVENT* events, Range range) noexcept {
    for (; range.hi > range.lo; --range.hi) {
        std::int32_t latest = range.lo;
        for (std::int32_t i = range.lo + 1; i <= range.hi; ++i) {
            if (events[i].time > events[latest].time) {
                latest = i;
            }
        }
        std::swap(events[latest], events[range.hi]);
    }
}

/// Splits the range around the time of its middle record, which itself ends between the two halves.
std::pair<Range, Range> partition(MMEVENT* events, Range range) noexcept {
    std::swap(events[range.lo + range.size() / 2], events[range.lo]);
    const std::uint32_t pivot = events[range.lo].time;
    std::int32_t i = range.lo;
    std::int32_t j = range.hi + 1;
    for (;;) {
        do {
            ++i;
        } while (i <= range.hi && events[i].time <= pivot);
        do {
            --j;
        } while (j > range.lo && events[j].time >= pivot);
        if (j < i) {
            break;
        }
        std::swap(events[i], events[j]);
    }
    std::swap(events[range.lo], events[j]);
    return {{range.lo, j - 1}, {i, range.hi}};
}

} // namespace

void sortEvents(MMEVENT* events, std::int32_t count) noexcept {
    Range pending[kMaxPending];
    int pendingCount = 0;
    pending[pendingCount++] = {0, count - 1};
    while (pendingCount > 0) {
        Range range = pending[--pendingCount];
        while (range.size() > kSelectionSize) {
            const auto [left, right] = partition(events, range);
            const bool leftLater = left.size() >= right.size();
            const Range later = leftLater ? left : right;
            const Range next = leftLater ? right : left;
            if (later.size() >= 2) {
                pending[pendingCount++] = later;
            }
            range = next;
        }
        selectionSort(events, range);
    }
}
