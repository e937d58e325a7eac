// Loading and saving drawings of growing size. Bytes processed are the
// drawing file's size, so the rates read as MB/s of file.
#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <string>

#include "DrawingGenerator.h"
#include "files/DrawingFile.h"
#include "pavo_host.h"

namespace {

struct Fixture {
    std::unique_ptr<OxDbDatabase> db;
    std::string file;
};

// One drawing per size, made once: layers are a tenth of the entities.
Fixture& fixture(std::size_t entities) {
    static std::map<std::size_t, Fixture> cache;
    Fixture& f = cache[entities];
    if (!f.db) {
        pavobench::DrawingSize size;
        size.entities = entities;
        size.layers = entities / 10;
        f.db = pavobench::generateDrawing(size);
        f.file = pavo::files::writeDrawing(*f.db);
    }
    return f;
}

void BM_LoadDrawing(benchmark::State& state) {
    const Fixture& f = fixture(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        pavo::files::LoadError error;
        auto db = pavo::files::readDrawing(f.file, "bench", error);
        if (!db) state.SkipWithError(error.message().c_str());
        benchmark::DoNotOptimize(db.get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.file.size()));
    state.counters["file_MB"] = static_cast<double>(f.file.size()) / 1e6;
}

void BM_SaveDrawing(benchmark::State& state) {
    const Fixture& f = fixture(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::string text = pavo::files::writeDrawing(*f.db);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.file.size()));
}

} // namespace

BENCHMARK(BM_LoadDrawing)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveDrawing)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
