// Loading and saving drawings of growing size, timed by the wall clock (the
// reader uses two threads), each against a bare parse of the same file in
// the same run. "MB" (per second) is decimal megabytes of drawing file.
//   BM_LoadDrawing      the file on disk to a database ready for commands
//   BM_SaveDrawingFile  what SAVE does: text, write, flush, rename, backup
//   BM_SaveDrawing      building the text in memory alone
#include <benchmark/benchmark.h>

#include "BenchSupport.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>

#include "DrawingGenerator.h"
#include "files/DrawingFile.h"
#include "pavo_host.h"

namespace {

struct Fixture {
    std::unique_ptr<OxDbDatabase> db;
    std::string file;
    std::string path; // the file on disk, as pavo opens it
    ~Fixture() {
        std::error_code ignored;
        if (!path.empty()) std::filesystem::remove(path, ignored);
    }
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
        f.path = (std::filesystem::temp_directory_path() /
                  ("pavo-bench-" + std::to_string(::getpid()) + "-" + std::to_string(entities) + ".pvd"))
                     .string();
        std::ofstream(f.path, std::ios::binary).write(f.file.data(), static_cast<std::streamsize>(f.file.size()));
    }
    return f;
}

using pavobench::reportRate;

void BM_LoadDrawing(benchmark::State& state) {
    const Fixture& f = fixture(static_cast<std::size_t>(state.range(0)));
    pavobench::loadRepeatedly(state, f.path, f.file.size());
}

void BM_SaveDrawing(benchmark::State& state) {
    const Fixture& f = fixture(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::string text = pavo::files::writeDrawing(*f.db);
        benchmark::DoNotOptimize(text.data());
    }
    reportRate(state, f.file.size());
}

void BM_SaveDrawingFile(benchmark::State& state) {
    const Fixture& f = fixture(static_cast<std::size_t>(state.range(0)));
    pavobench::saveRepeatedly(state, *f.db, f.path + ".saved.pvd");
}

void sizes(benchmark::internal::Benchmark* b) {
    b->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
    pavobench::withRange(b);
}

} // namespace

BENCHMARK(BM_LoadDrawing)->Apply(sizes);
BENCHMARK(BM_SaveDrawingFile)->Apply(sizes);
BENCHMARK(BM_SaveDrawing)->Apply(sizes);
