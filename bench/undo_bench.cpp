// The undo history's cost, through a session of the real host and module:
//   FreezeAll/N/recording  "-LAYER" Freeze "*" on N layers, with the
//                          history recording (1) or turned off (0)
//   UndoFreezeAll/N        U of that command
//   RedoFreezeAll/N        REDO after that U
//   UndoSetByLayer/N       U of a SETBYLAYER on ALL of N entities (as in
//                          setbylayer_bench: every tenth object explicit)
// Counters: "step_B_per_object" the heap the recorded step takes per
// changed object (measured: heap after the command with recording on, less
// the same with it off), "state_B_per_object" what the recorded objects'
// own states take, and "bookkeeping_B_per_object" the difference.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <memory>
#include <string>
#include <vector>

#include "BenchSession.h"
#include "DrawingGenerator.h"
#include "OxDbDatabase.h"
#include "db/UndoHistory.h"

namespace {

// A session on a new drawing of `layers` layers (or on `drawing`) whose
// input holds `answers` for the commands run with command().
struct Run : pavobench::BenchSession {
    Run(const std::vector<std::string>& answers, std::size_t layers, std::unique_ptr<OxDbDatabase> drawing = {})
        : BenchSession(answers) {
        if (drawing)
            session().useDrawing(std::move(drawing));
        else
            session().newDrawing();
        pavobench::addLayers(session().database(), layers);
    }
    void command(const wchar_t* name) { session().runCommandLine(name); }
    pavo::db::UndoHistory& history() { return pavo::db::undoHistory(session().database()); }
};

const std::vector<std::string> kFreezeAnswers = {"Freeze", "*", ""};

void BM_FreezeAll(benchmark::State& state) {
    const auto layers = static_cast<std::size_t>(state.range(0));
    const bool recording = state.range(1) != 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<Run>(kFreezeAnswers, layers);
        if (!recording) run->history().setControl(pavo::db::UndoHistory::Control::None);
        state.ResumeTiming();
        run->command(L"-LAYER");
        state.PauseTiming();
        if (recording && run->history().stepCount() != 1) state.SkipWithError("not recorded");
        run.reset();
        state.ResumeTiming();
    }
}

void BM_UndoFreezeAll(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<Run>(kFreezeAnswers, static_cast<std::size_t>(state.range(0)));
        run->command(L"-LAYER");
        state.ResumeTiming();
        run->command(L"U");
        state.PauseTiming();
        if (run->history().redoableCount() != 1) state.SkipWithError("not undone");
        run.reset();
        state.ResumeTiming();
    }
}

void BM_RedoFreezeAll(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<Run>(kFreezeAnswers, static_cast<std::size_t>(state.range(0)));
        run->command(L"-LAYER");
        run->command(L"U");
        state.ResumeTiming();
        run->command(L"REDO");
        state.PauseTiming();
        if (run->history().stepCount() != 1) state.SkipWithError("not redone");
        run.reset();
        state.ResumeTiming();
    }
}

const std::vector<std::string> kSetByLayerAnswers = {"255", "ALL", "", "Yes", "Yes"};

std::unique_ptr<Run> setByLayerRun(std::size_t entities) {
    auto run = std::make_unique<Run>(kSetByLayerAnswers, 0,
                                     pavobench::generateDrawing(pavobench::setByLayerDrawingSize(entities, 10)));
    run->command(L"SETBYLAYERMODE");
    return run;
}

// Heap in use after SETBYLAYER, less before it.
std::size_t heapGrowth(Run& run) {
    const std::size_t before = mallinfo2().uordblks;
    run.command(L"SETBYLAYER");
    return mallinfo2().uordblks - before;
}

void BM_UndoSetByLayer(benchmark::State& state) {
    const auto entities = static_cast<std::size_t>(state.range(0));
    double stepPerObject = 0, statePerObject = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto off = setByLayerRun(entities);
        off->history().setControl(pavo::db::UndoHistory::Control::None);
        const std::size_t withoutRecording = heapGrowth(*off);
        off.reset();
        auto run = setByLayerRun(entities);
        const std::size_t withRecording = heapGrowth(*run);
        const std::size_t changed = run->history().changedObjects();
        if (!changed) state.SkipWithError("nothing recorded");
        stepPerObject = static_cast<double>(withRecording - withoutRecording) / static_cast<double>(changed);
        statePerObject = static_cast<double>(run->history().stateBytes()) / static_cast<double>(changed);
        state.counters["changed_objects"] = static_cast<double>(changed);
        state.ResumeTiming();
        run->command(L"U");
        state.PauseTiming();
        if (run->history().redoableCount() != 1) state.SkipWithError("not undone");
        run.reset();
        state.ResumeTiming();
    }
    state.counters["step_B_per_object"] = stepPerObject;
    state.counters["state_B_per_object"] = statePerObject;
    state.counters["bookkeeping_B_per_object"] = stepPerObject - statePerObject;
}

} // namespace

BENCHMARK(BM_FreezeAll)
    ->Args({10000, 0})
    ->Args({10000, 1})
    ->Args({100000, 0})
    ->Args({100000, 1})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK(BM_UndoFreezeAll)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_RedoFreezeAll)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_UndoSetByLayer)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);
