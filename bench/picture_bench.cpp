// Pictures (pavo/render, PavoRender.pvx, loaded as pavo loads it): model
// space of generated drawings to a 4000 x 3000 PNG, the layouts of those
// drawings and of the sample to PDF. Each figure is one picture made in
// memory, from the request to the file's bytes (writing them is the same
// atomic save as a drawing's, left out).
#include <benchmark/benchmark.h>

#include <dlfcn.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "BenchSupport.h"
#include "DrawingGenerator.h"
#include "OxDbDatabase.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "PavoPlotStyles.h"
#include "db/PaperSpace.h"
#include "db/SpaceExtents.h"
#include "files/DrawingFile.h"
#include "files/PlotStyleTable.h"
#include "render/PictureRequest.h"

namespace {

using pavo::render::PictureFormat;
using pavo::render::PictureRequest;

pavo::render::WritePictureFn pictureEntry() {
    static const pavo::render::WritePictureFn entry = [] {
        void* library = dlopen(PAVO_BENCH_RENDER_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        return library ? reinterpret_cast<pavo::render::WritePictureFn>(
                             dlsym(library, pavo::render::kWritePictureEntry))
                       : nullptr;
    }();
    return entry;
}

void makePictures(benchmark::State& state, const PictureRequest& request) {
    const pavo::render::WritePictureFn entry = pictureEntry();
    if (!entry) {
        state.SkipWithError("PavoRender.pvx did not load");
        return;
    }
    std::string bytes;
    for (auto _ : state) {
        std::wstring error;
        if (!entry(request, bytes, error)) {
            state.SkipWithError("no picture");
            break;
        }
        benchmark::DoNotOptimize(bytes.data());
    }
    state.counters["file_MB"] = static_cast<double>(bytes.size()) / 1e6;
}

// Generated drawings of `entities` objects and one layout of `viewports`
// viewports, made once each.
OxDbDatabase* generated(std::size_t entities, std::size_t viewports) {
    static std::map<std::pair<std::size_t, std::size_t>, std::unique_ptr<OxDbDatabase>> made;
    auto& db = made[{entities, viewports}];
    if (!db) {
        pavobench::DrawingSize size;
        size.entities = entities;
        size.layouts = 1;
        size.viewportsPerLayout = viewports;
        db = pavobench::generateDrawing(size);
    }
    return db.get();
}

// Model space's extents to a 4000 x 3000 PNG at 96 dots an inch.
void ModelSpaceToPng(benchmark::State& state) {
    PictureRequest r;
    r.database = generated(static_cast<std::size_t>(state.range(0)), 0);
    const auto box = pavo::db::blockExtents(r.database->modelSpaceId());
    const double height = std::max(box->maxY - box->minY, (box->maxX - box->minX) * 0.75);
    const double cx = (box->minX + box->maxX) / 2, cy = (box->minY + box->maxY) / 2;
    r.window = {cx - height / 1.5, cy - height / 2, cx + height / 1.5, cy + height / 2};
    r.pageWidthMm = 4000 / 96.0 * 25.4;
    r.pageHeightMm = 3000 / 96.0 * 25.4;
    r.dotsPerInch = 96;
    makePictures(state, r);
    state.counters["entities"] = static_cast<double>(state.range(0));
}
// PNGs are painted on every core: the time is the wall clock's, the CPU
// time that of the whole process.
BENCHMARK(ModelSpaceToPng)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

// A layout's sheet plotted to PDF, at its size.
PictureRequest layoutPlot(OxDbDatabase* db, const OxDbObjectId& layoutId, const PavoPlotStyleTable* styles) {
    PictureRequest r;
    r.database = db;
    r.layout = layoutId;
    r.format = PictureFormat::Pdf;
    r.plot = true;
    r.plotStyles = styles;
    OxDbLayout* layout = nullptr;
    if (oxdbOpenObject(layout, layoutId, OxDb::kForRead) == Ox::eOk) {
        const pavo::db::geom::Box sheet = pavo::db::sheetBox(*layout);
        layout->close();
        r.window = {sheet.minX, sheet.minY, sheet.maxX, sheet.maxY};
        r.pageWidthMm = sheet.maxX - sheet.minX;
        r.pageHeightMm = sheet.maxY - sheet.minY;
    }
    return r;
}

// The generated layout "Sheet 1" (viewports of 140 x 100 mm, each showing a
// 700 x 500 window of the 10,000 x 10,000 model) to PDF.
void GeneratedLayoutToPdf(benchmark::State& state) {
    OxDbDatabase* db = generated(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    const OxDbObjectId layout = oxdbHostApplicationServices()->layoutManager()->findLayoutNamed(L"Sheet 1", db);
    makePictures(state, layoutPlot(db, layout, nullptr));
    state.counters["entities"] = static_cast<double>(state.range(0));
    state.counters["viewports"] = static_cast<double>(state.range(1));
}
BENCHMARK(GeneratedLayoutToPdf)
    ->Args({100000, 1})
    ->Args({100000, 3})
    ->Args({100000, 10})
    ->Args({1000000, 1})
    ->Args({1000000, 3})
    ->Args({1000000, 10})
    ->Unit(benchmark::kMillisecond);

// The sample drawing's layouts plotted to PDF with their plot style table.
void SampleLayoutToPdf(benchmark::State& state, const wchar_t* name) {
    static std::unique_ptr<OxDbDatabase> sample;
    if (!sample) {
        pavo::files::LoadError error;
        sample = pavo::files::readDrawingFile(PAVO_BENCH_SAMPLE, error);
    }
    if (!sample) {
        state.SkipWithError("the sample did not load");
        return;
    }
    std::wstring problem;
    const std::unique_ptr<PavoPlotStyleTable> styles =
        pavo::files::readPlotStyleTable(PAVO_BENCH_SUPPORT "/pavo-named.pst", problem);
    const OxDbObjectId layout = oxdbHostApplicationServices()->layoutManager()->findLayoutNamed(name, sample.get());
    makePictures(state, layoutPlot(sample.get(), layout, styles.get()));
}
BENCHMARK_CAPTURE(SampleLayoutToPdf, A1Plan, L"A1 Plan")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SampleLayoutToPdf, A3Detail, L"A3 Detail")->Unit(benchmark::kMillisecond);

} // namespace
