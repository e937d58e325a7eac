// "VPLAYER" on drawings of many layers and viewports, driven through a
// scripted session of the real host and module, output to a null stream.
// The drawings have `layers` layers and 10 layouts of `viewports / 10` model
// viewports each (and their sheets); the user works inside the first
// layout's viewport 2. Each figure is one whole VPLAYER run, from the
// answers to the regeneration at the end:
//   Freeze "*" in the Current viewport
//   Freeze "*" in All viewports, and Thaw "*" in All with every layer frozen
//   Color 1 on "*" in All viewports
//   reMoveoverrides All on "*" in All, with a colour override everywhere
//   List of a viewport in which every layer is frozen
//   Newfrz of one layer
// and loading and saving such a drawing (1,000 layers frozen and 1,000
// overrides in each viewport).
#include <benchmark/benchmark.h>

#include "BenchSession.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "DrawingGenerator.h"
#include "app/Session.h"
#include "db/PaperSpace.h"
#include "files/DrawingFile.h"
#include "pavo_host.h"

namespace {

constexpr std::size_t kLayouts = 10;

pavobench::DrawingSize sizeOf(std::size_t layers, std::size_t viewports) {
    pavobench::DrawingSize size;
    size.layers = layers;
    size.entities = 10000;
    size.layouts = viewports < kLayouts ? 1 : kLayouts;
    size.viewportsPerLayout = viewports / size.layouts;
    return size;
}

// A drawing file per size, written once to a temporary file.
const std::string& drawingFile(const pavobench::DrawingSize& size) {
    struct File {
        std::string path;
        ~File() {
            std::error_code ignored;
            std::filesystem::remove(path, ignored);
        }
    };
    static std::map<std::tuple<std::size_t, std::size_t, std::size_t, std::size_t>, File> files;
    File& f = files[{size.layers, size.layouts * size.viewportsPerLayout, size.frozenLayersPerViewport,
                     size.overridesPerViewport}];
    if (f.path.empty()) {
        const std::unique_ptr<OxDbDatabase> db = pavobench::generateDrawing(size);
        const std::string text = pavo::files::writeDrawing(*db);
        f.path = (std::filesystem::temp_directory_path() /
                  ("pavo-vplayer-bench-" + std::to_string(::getpid()) + "-" + std::to_string(files.size()) + ".pvd"))
                     .string();
        std::ofstream(f.path, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    return f.path;
}

// Every viewport of every layout, sheets included.
std::vector<OxDbObjectId> allViewports(OxDbDatabase* db) {
    std::vector<OxDbObjectId> ids;
    OxDbDictionary* layouts = nullptr;
    db->getLayoutDictionary(layouts, OxDb::kForRead);
    OxDbDictionaryIterator* it = layouts->newIterator();
    for (; !it->done(); it->next()) {
        OxDbLayout* layout = nullptr;
        if (it->getObject(layout, OxDb::kForRead) != Ox::eOk) continue;
        for (const OxDbObjectId& id : layout->getViewportArray())
            ids.push_back(id);
        layout->close();
    }
    delete it;
    layouts->close();
    return ids;
}

std::vector<OxDbObjectId> allLayers(OxDbDatabase* db) {
    std::vector<OxDbObjectId> ids;
    OxDbLayerTable* table = nullptr;
    db->getLayerTable(table, OxDb::kForRead);
    OxDbSymbolTableIterator* it = nullptr;
    table->newIterator(it);
    for (; !it->done(); it->step()) {
        OxDbObjectId id;
        it->getRecordId(id);
        ids.push_back(id);
    }
    delete it;
    table->close();
    return ids;
}

void freezeEverything(OxDbDatabase* db, const std::vector<OxDbObjectId>& viewports) {
    OxDbObjectIdArray layers;
    for (const OxDbObjectId& id : allLayers(db))
        layers.append(id);
    for (const OxDbObjectId& id : viewports) {
        OxDbViewport* viewport = nullptr;
        if (oxdbOpenObject(viewport, id, OxDb::kForWrite) != Ox::eOk) continue;
        viewport->freezeLayersInViewport(layers);
        viewport->close();
    }
}

void colourEverything(OxDbDatabase* db) {
    const std::vector<OxDbObjectId> viewports = allViewports(db);
    for (const OxDbObjectId& id : allLayers(db)) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
        for (const OxDbObjectId& viewport : viewports)
            layer->setColor(OxCmColor::fromIndex(3), viewport);
        layer->close();
    }
}

// What the drawing holds afterwards, so that a figure shows the work was
// done: layers frozen in viewports, and overrides, counted over all.
void countResults(OxDbDatabase* db, double& frozen, double& overrides) {
    for (const OxDbObjectId& id : allViewports(db)) {
        OxDbViewport* viewport = nullptr;
        if (oxdbOpenObject(viewport, id, OxDb::kForRead) != Ox::eOk) continue;
        frozen += viewport->numFrozenLayers();
        viewport->close();
    }
    for (const OxDbObjectId& id : allLayers(db)) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) continue;
        for (const auto& o : layer->viewportOverrides())
            overrides += o.isEmpty() ? 0 : 1;
        layer->close();
    }
}

// Runs `answers` on the drawing of `size`, opened in a fresh session inside
// viewport 2 of the first layout, after `prepare`; only the run is timed.
// Counters: frozen layers and overrides in all viewports afterwards, and
// the bytes of output.
void runVplayer(benchmark::State& state, const pavobench::DrawingSize& size, const std::vector<std::string>& answers,
                const std::function<void(OxDbDatabase*)>& prepare = {}) {
    const std::string& path = drawingFile(size);
    double frozen = 0, overrides = 0, output = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<pavobench::BenchSession>(answers);
        if (!run->ready() || !run->session().openDrawing(path)) state.SkipWithError("not set up");
        OxDbDatabase* db = run->session().database();
        oxdbHostApplicationServices()->layoutManager()->setCurrentLayout(L"Sheet 1", db);
        if (db->setCvport(2) != Ox::eOk) state.SkipWithError("no viewport 2");
        if (prepare) prepare(db);
        const std::size_t before = run->written();
        state.ResumeTiming();
        if (run->session().run() != 0) state.SkipWithError("session failed");
        state.PauseTiming();
        countResults(db, frozen, overrides);
        output += static_cast<double>(run->written() - before);
        run.reset();
        state.ResumeTiming();
    }
    const double runs = static_cast<double>(state.iterations());
    state.counters["frozen"] = frozen / runs;
    state.counters["overrides"] = overrides / runs;
    state.counters["output_bytes"] = output / runs;
}

std::size_t layersOf(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }
std::size_t viewportsOf(const benchmark::State& state) { return static_cast<std::size_t>(state.range(1)); }

void BM_FreezeAllInCurrent(benchmark::State& state) {
    runVplayer(state, sizeOf(layersOf(state), viewportsOf(state)), {"VPLAYER", "Freeze", "*", "", ""});
}

void BM_FreezeAllInAll(benchmark::State& state) {
    runVplayer(state, sizeOf(layersOf(state), viewportsOf(state)), {"VPLAYER", "Freeze", "*", "All", ""});
}

void BM_ThawAllInAll(benchmark::State& state) {
    runVplayer(state, sizeOf(layersOf(state), viewportsOf(state)), {"VPLAYER", "Thaw", "*", "All", ""},
               [](OxDbDatabase* db) { freezeEverything(db, allViewports(db)); });
}

void BM_ColorAllInAll(benchmark::State& state) {
    runVplayer(state, sizeOf(layersOf(state), viewportsOf(state)), {"VPLAYER", "Color", "1", "*", "All", ""});
}

void BM_RemoveAllOverridesInAll(benchmark::State& state) {
    runVplayer(state, sizeOf(layersOf(state), viewportsOf(state)),
               {"VPLAYER", "reMoveoverrides", "All", "*", "All", ""}, colourEverything);
}

// Viewport 2 of "Sheet 1" is centred at 100,150, 140 wide: its left edge is
// at x 30.
void BM_ListViewportWithEveryLayerFrozen(benchmark::State& state) {
    runVplayer(state, sizeOf(layersOf(state), viewportsOf(state)), {"VPLAYER", "List", "30,150", ""},
               [](OxDbDatabase* db) { freezeEverything(db, {pavo::db::currentViewport(db)}); });
}

void BM_NewfrzOneLayer(benchmark::State& state) {
    runVplayer(state, sizeOf(layersOf(state), viewportsOf(state)), {"VPLAYER", "Newfrz", "NEW-FROZEN-LAYER", ""});
}

// The drawing with 1,000 layers frozen and 1,000 colour and lineweight
// overrides in each viewport.
pavobench::DrawingSize heavySize(const benchmark::State& state) {
    pavobench::DrawingSize size = sizeOf(layersOf(state), viewportsOf(state));
    size.frozenLayersPerViewport = 1000;
    size.overridesPerViewport = 1000;
    return size;
}

void BM_LoadViewportDrawing(benchmark::State& state) {
    const std::string& path = drawingFile(heavySize(state));
    pavobench::loadRepeatedly(state, path, static_cast<std::size_t>(std::filesystem::file_size(path)));
}

void BM_SaveViewportDrawing(benchmark::State& state) {
    pavo::files::LoadError error;
    const std::string& path = drawingFile(heavySize(state));
    const std::unique_ptr<OxDbDatabase> db = pavo::files::readDrawingFile(path, error);
    pavobench::saveRepeatedly(state, *db, path + ".saved.pvd");
}

// Layers grow at 100 viewports; viewports grow at 100,000 layers.
void layersAndViewports(benchmark::internal::Benchmark* b) {
    b->Args({10000, 100})->Args({100000, 100})->Args({100000, 10})->Args({100000, 1000});
    b->Unit(benchmark::kMillisecond)->Iterations(3);
}

} // namespace

BENCHMARK(BM_FreezeAllInCurrent)->Apply(layersAndViewports);
BENCHMARK(BM_FreezeAllInAll)->Args({10000, 100})->Args({100000, 100})->Args({100000, 10})->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ThawAllInAll)->Args({10000, 100})->Args({100000, 100})->Args({100000, 10})->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ColorAllInAll)->Args({10000, 100})->Args({100000, 100})->Args({100000, 10})->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RemoveAllOverridesInAll)->Args({10000, 100})->Args({100000, 100})->Args({100000, 10})->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ListViewportWithEveryLayerFrozen)->Apply(layersAndViewports);
BENCHMARK(BM_NewfrzOneLayer)->Args({100000, 100})->Args({100000, 1000})->Args({100000, 10000})->Args({10000, 1000})->Unit(benchmark::kMillisecond)->Iterations(3);
void viewportFiles(benchmark::internal::Benchmark* b) {
    b->Args({10000, 100})->Args({100000, 100})->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
    pavobench::withRange(b);
}

BENCHMARK(BM_LoadViewportDrawing)->Apply(viewportFiles);
BENCHMARK(BM_SaveViewportDrawing)->Apply(viewportFiles);
