// What fresh memory costs on this machine: 64 MB mapped, each page written
// once, unmapped; in ordinary pages, and in huge pages where the system
// gives them (madvise). Reported per decimal megabyte, by the wall clock
// ("ms_per_MB", the iteration time) and by processor time ("cpu_ms_per_MB").
#include <benchmark/benchmark.h>

#include <sys/mman.h>

#include <cstdint>

#include "ParseReference.h"

namespace {

constexpr std::size_t kBytes = std::size_t(64) << 20;
constexpr std::size_t kHugePage = std::size_t(2) << 20;

void BM_FirstTouch(benchmark::State& state) {
    const bool huge = state.range(0) != 0;
    state.SetLabel(huge ? "huge pages" : "ordinary pages");
    double cpu = 0, wall = 0;
    for (auto _ : state) {
        void* raw = mmap(nullptr, kBytes + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (raw == MAP_FAILED) {
            state.SkipWithError("no memory");
            break;
        }
        auto* start = reinterpret_cast<volatile char*>((reinterpret_cast<std::uintptr_t>(raw) + kHugePage - 1) &
                                                       ~(kHugePage - 1));
        if (huge) madvise(const_cast<char*>(start), kBytes, MADV_HUGEPAGE);
        const pavobench::Times t0 = pavobench::Times::now();
        for (std::size_t offset = 0; offset < kBytes; offset += 4096)
            start[offset] = 1;
        const pavobench::Times t = pavobench::Times::now() - t0;
        munmap(raw, kBytes + kHugePage);
        const double mb = static_cast<double>(kBytes) / 1e6;
        state.SetIterationTime(t.wall / mb);
        wall += t.wall / mb;
        cpu += t.cpu / mb;
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["cpu_ms_per_MB"] = cpu / n * 1000;
    state.counters["load_avg"] = pavobench::loadAverage();
}

} // namespace

BENCHMARK(BM_FirstTouch)
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->Apply([](benchmark::internal::Benchmark* b) { pavobench::withRange(b); });
