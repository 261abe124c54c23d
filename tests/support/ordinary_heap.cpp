// Stands between the engine and calloc; the linker redirects the calls (--wrap).
#include "tests/support/ordinary_heap.h"

#include <atomic>
#include <cstddef>

namespace {

std::atomic<int> callsUntilFailure{0};

} // namespace

extern "C" {

void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);

void* __wrap_calloc(std::size_t count, std::size_t size) {
    const bool fails = callsUntilFailure > 0 && --callsUntilFailure == 0;
    return fails ? nullptr : __real_calloc(count, size);
}
}

void failOrdinaryHeap(int nth) {
    callsUntilFailure = nth;
}
