// The sort of the event list: a quicksort around middle records that ends in selection passes. It is not
// stable, and hosts see its order of equal times, so records move exactly as two scans from both ends of a
// range would move them.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

#include "song/song.h"

namespace {

constexpr std::ptrdiff_t kSelectionSize = 8;
constexpr int kMaxPending = 32; ///< the larger half is the one deferred, so 30 would do

/// One bit for each record of a block.
using Mask = std::uintptr_t;
constexpr std::ptrdiff_t kBlock = std::numeric_limits<Mask>::digits;

/// The same number of four records. Compilers make one instruction of an operation on the four where the
/// processor has such, and four instructions where it has not.
using Four __attribute__((vector_size(16))) = std::uint32_t;

constexpr std::ptrdiff_t kStep = 8;   ///< records that are compared at once
constexpr std::ptrdiff_t kGroup = 32; ///< records for whose bits there is room in a number

static_assert(sizeof(MMEVENT) == 8 && offsetof(MMEVENT, time) == 4,
              "timesOf takes every second number");

Four timesOf(const MMEVENT* events) noexcept {
    Four firstTwo;
    Four lastTwo;
    std::memcpy(&firstTwo, events, sizeof firstTwo);
    std::memcpy(&lastTwo, events + 2, sizeof lastTwo);
    return __builtin_shufflevector(firstTwo, lastTwo, 1, 3, 5, 7);
}

constexpr Mask lowBits(std::ptrdiff_t count) noexcept {
    return count >= kBlock ? ~Mask{0} : (Mask{1} << count) - 1;
}

constexpr std::ptrdiff_t wholeSteps(std::ptrdiff_t count) noexcept {
    return (count + kStep - 1) / kStep * kStep;
}

/// `compareStep` compares the eight records from the step's number on and has a bit for each, in any of its
/// four numbers; the mask has them all.
template <typename CompareStep>
Mask compareSteps(std::ptrdiff_t count, const CompareStep& compareStep) noexcept {
    Mask mask = 0;
    for (std::ptrdiff_t group = 0; group < kBlock && group < count; group += kGroup) {
        Four found = {0, 0, 0, 0};
        const std::ptrdiff_t groupCount = std::min(count - group, kGroup);
        for (std::ptrdiff_t step = 0; step < groupCount; step += kStep) {
            found |= compareStep(group + step) << static_cast<std::uint32_t>(step);
        }
        mask |= Mask{found[0] | found[1] | found[2] | found[3]} << group;
    }
    return mask & lowBits(count);
}

/// Compares stretches of up to a block with the pivot: whole steps where the list goes on far enough,
/// record by record where it does not.
class PivotComparison {
public:
    PivotComparison(const MMEVENT* listBegin, const MMEVENT* listEnd, std::uint32_t pivot) noexcept
        : m_listBegin(listBegin), m_listEnd(listEnd), m_pivot(pivot) {}

    /// Bit k: begin[k] is later than the pivot.
    Mask later(const MMEVENT* begin, std::ptrdiff_t count) const noexcept {
        if (m_listEnd - begin < wholeSteps(count)) {
            Mask mask = 0;
            for (std::ptrdiff_t k = 0; k < count; ++k) {
                mask |= Mask{begin[k].time > m_pivot} << k;
            }
            return mask;
        }
        return compareSteps(count, [begin, pivot = fourPivots()](std::ptrdiff_t step) {
            const MMEVENT* const events = begin + step;
            return ((timesOf(events) > pivot) & Four{1, 2, 4, 8}) |
                   ((timesOf(events + 4) > pivot) & Four{16, 32, 64, 128});
        });
    }

    /// Bit k: end[-1 - k] is earlier than the pivot.
    Mask earlier(const MMEVENT* end, std::ptrdiff_t count) const noexcept {
        if (end - m_listBegin < wholeSteps(count)) {
            Mask mask = 0;
            for (std::ptrdiff_t k = 0; k < count; ++k) {
                mask |= Mask{end[-1 - k].time < m_pivot} << k;
            }
            return mask;
        }
        return compareSteps(count, [end, pivot = fourPivots()](std::ptrdiff_t step) {
            const MMEVENT* const events = end - step - kStep;
            return ((timesOf(events) < pivot) & Four{128, 64, 32, 16}) |
                   ((timesOf(events + 4) < pivot) & Four{8, 4, 2, 1});
        });
    }

private:
    Four fourPivots() const noexcept {
        return Four{m_pivot, m_pivot, m_pivot, m_pivot};
    }

    const MMEVENT* m_listBegin;
    const MMEVENT* m_listEnd;
    std::uint32_t m_pivot;
};

/// A stretch of a range. While a range is split, the open one: no record before it is later than the
/// pivot, none behind it earlier.
struct Stretch {
    MMEVENT* begin;
    MMEVENT* end;
};

void removeLowest(Mask& mask) noexcept {
    mask &= mask - 1;
}

/// Exchanges late records at the left with early ones at the right, outermost first, until one block or
/// less is open.
Stretch exchangeBlocks(Stretch open, const PivotComparison& pivot) noexcept {
    MMEVENT* left = open.begin; // bits of late count from here
    MMEVENT* right = open.end;  // bits of early count back from here
    Mask late = 0;
    Mask early = 0;
    while (open.begin != open.end) {
        const std::ptrdiff_t count = std::min(kBlock, open.end - open.begin);
        if (late == 0) {
            left = open.begin;
            late = pivot.later(left, count);
            open.begin += count;
        } else {
            right = open.end;
            early = pivot.earlier(right, count);
            open.end -= count;
        }
        while (late != 0 && early != 0) {
            std::swap(left[std::countr_zero(late)], right[-1 - std::countr_zero(early)]);
            removeLowest(late);
            removeLowest(early);
        }
    }
    if (late != 0) {
        open.begin = left + std::countr_zero(late);
    }
    if (early != 0) {
        open.end = right - std::countr_zero(early);
    }
    return open;
}

/// The same within a block, until the two sides have crossed.
Stretch exchangeWithin(Stretch open, const PivotComparison& pivot) noexcept {
    const std::ptrdiff_t count = open.end - open.begin;
    Mask late = pivot.later(open.begin, count);
    Mask early = pivot.earlier(open.end, count);
    for (;;) {
        MMEVENT* const i = late != 0 ? open.begin + std::countr_zero(late) : open.end;
        MMEVENT* const pastJ = early != 0 ? open.end - std::countr_zero(early) : open.begin;
        if (pastJ <= i) {
            return {pastJ, i};
        }
        std::swap(*i, pastJ[-1]);
        removeLowest(late);
        removeLowest(early);
    }
}

/// Records of the list, and the times between which all of them lie.
struct Range {
    MMEVENT* begin;
    MMEVENT* end;
    std::uint32_t earliest;
    std::uint32_t latest;

    std::ptrdiff_t size() const noexcept {
        return end - begin;
    }
};

/// Moves the latest record to the end, again and again.
void selectionSort(const Range& range) noexcept {
    for (MMEVENT* end = range.end; end - range.begin > 1; --end) {
        MMEVENT* latest = range.begin;
        std::uint32_t time = latest->time;
        for (MMEVENT* event = range.begin + 1; event != end; ++event) {
            // Without a branch, which could not be foretold.
            const bool later = event->time > time;
            latest = later ? event : latest;
            time = later ? event->time : time;
        }
        std::swap(*latest, end[-1]);
    }
}

/// Sorts one list.
class EventSorter {
public:
    EventSorter(MMEVENT* begin, MMEVENT* end) noexcept : m_begin(begin), m_end(end) {}

    void sort() noexcept;

private:
    std::pair<Range, Range> split(const Range& range) const noexcept;

    MMEVENT* m_begin;
    MMEVENT* m_end;
};

/// Splits the range around its middle record. Of the records with the pivot's time, those that come to lie
/// between the halves belong to neither.
std::pair<Range, Range> EventSorter::split(const Range& range) const noexcept {
    MMEVENT* const first = range.begin;
    std::swap(first[range.size() / 2], *first);
    const std::uint32_t pivot = first->time;
    // Few distinct times make many pivots with nothing on one side; that side is not read again then.
    const bool anyEarlier = pivot > range.earliest;
    const bool anyLater = pivot < range.latest;
    Stretch open{first + 1, range.end};
    if (anyEarlier && anyLater) {
        const PivotComparison comparison(m_begin, m_end, pivot);
        if (range.size() > kBlock) {
            open = exchangeBlocks(open, comparison);
        }
        open = exchangeWithin(open, comparison);
    }
    MMEVENT* i = anyLater ? open.begin : range.end;
    while (i != range.end && i->time <= pivot) {
        ++i;
    }
    MMEVENT* j = anyEarlier ? open.end - 1 : first;
    while (j != first && j->time >= pivot) {
        --j;
    }
    std::swap(*first, *j);
    return {{first, j, range.earliest, pivot}, {i, range.end, pivot, range.latest}};
}

void EventSorter::sort() noexcept {
    Range pending[kMaxPending];
    int pendingCount = 0;
    pending[pendingCount++] = {m_begin, m_end, 0, std::numeric_limits<std::uint32_t>::max()};
    while (pendingCount > 0) {
        Range range = pending[--pendingCount];
        while (range.size() > kSelectionSize) {
            const auto [left, right] = split(range);
            const bool leftLater = left.size() >= right.size();
            const Range& later = leftLater ? left : right;
            const Range& next = leftLater ? right : left;
            if (later.size() >= 2) {
                pending[pendingCount++] = later;
            }
            range = next;
        }
        selectionSort(range);
    }
}

} // namespace

void sortEvents(MMEVENT* events, std::int32_t count) noexcept {
    EventSorter(events, events + count).sort();
}
