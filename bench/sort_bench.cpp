// The sort step alone, and the same procedure in plain code.
#include "bench/measured.h"
#include "bench/songs.h"
#include "song/song.h"
#include "tests/support/plain_sort.h"

namespace bench {

namespace {

template <typename Sort>
void sortList(benchmark::State& state, const SongShape& shape, Sort sort) {
    const std::vector<MMEVENT> unsorted = makeList(shape);
    while (state.KeepRunning()) {
        standClock(state);
        std::vector<MMEVENT> list = unsorted;
        {
            const Measured measured(state);
            sort(list.data(), static_cast<int>(list.size()));
        }
        benchmark::DoNotOptimize(list.data());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(unsorted.size()));
}

const bool registered = [] {
    constexpr int kMany = 1000000;
    for (const SongShape& shape :
         {SongShape{Kind::Realistic, 16, kMany}, SongShape{Kind::Realistic, 64, kMany},
          SongShape{Kind::Walls, 16, kMany}, SongShape{Kind::Hostile, 16, kMany}}) {
        benchmark::RegisterBenchmark(
            ("sort/engine/" + nameOf(shape)).c_str(),
            [shape](benchmark::State& state) { sortList(state, shape, sortEvents); })
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("sort/plain/" + nameOf(shape)).c_str(),
                                     [shape](benchmark::State& state) {
                                         sortList(state, shape, [](MMEVENT* list, int count) {
                                             plainSort(list, 0, count - 1);
                                         });
                                     })
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

} // namespace

} // namespace bench
