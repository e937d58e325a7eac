// The undo history's cost, through a session of the real host and module:
//   RecordingFreezeAll/N   "-LAYER" Freeze "*" on N layers, with the
//                          history recording and with it off: medians of
//                          each, and of the extra CPU time of recording
//   RecordingListAll/N     the same for "-LAYER" "?", which only reads
//   UndoFreezeAll/N        U of that command
//   RedoFreezeAll/N        REDO after that U
//   UndoSetByLayer/N/E     U of a SETBYLAYER on ALL of N entities, every
//                          E-th one with its own properties (as in
//                          setbylayer_bench: E = 10), the rest ByLayer
//   UndoLine/N             U of a LINE drawn on N entities; "step_bytes"
//                          what the step records
// Counters: "step_B_per_object" the heap the recorded step takes per
// changed object (measured: heap after the command with recording on, less
// the same with it off), "state_B_per_object" what the recorded objects'
// own states take, and "bookkeeping_B_per_object" the difference.
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <chrono>
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

// Thread CPU time and wall time of `work`, in milliseconds, and the page
// faults it took (first touches of memory new to the process).
struct Timing {
    double cpu, wall, faults;
};
template <class F> Timing timed(F work) {
    timespec cpu0{}, cpu1{};
    rusage usage0{}, usage1{};
    getrusage(RUSAGE_THREAD, &usage0);
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &cpu0);
    const auto wall0 = std::chrono::steady_clock::now();
    work();
    const auto wall1 = std::chrono::steady_clock::now();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &cpu1);
    getrusage(RUSAGE_THREAD, &usage1);
    const double cpu = static_cast<double>(cpu1.tv_sec - cpu0.tv_sec) * 1e3 +
                       static_cast<double>(cpu1.tv_nsec - cpu0.tv_nsec) / 1e6;
    return {cpu, std::chrono::duration<double, std::milli>(wall1 - wall0).count(),
            static_cast<double>(usage1.ru_minflt - usage0.ru_minflt)};
}

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const std::size_t mid = values.size() / 2;
    return values.size() % 2 ? values[mid] : (values[mid - 1] + values[mid]) / 2;
}

// A "-LAYER" run of `answers` with the history recording and with it off,
// in pairs run one after the other (each first in turn), so that the load
// of a shared machine falls on both alike. The time is the recording run's
// wall time; `steps` the steps the history must hold after it.
void recordingCost(benchmark::State& state, const std::vector<std::string>& answers, std::size_t steps) {
    const auto layers = static_cast<std::size_t>(state.range(0));
    std::vector<double> cpu[2], wall[2], faults[2], extraCpu;
    bool recordingFirst = false;
    for (auto _ : state) {
        Timing t[2]{};
        for (const bool recording : {recordingFirst, !recordingFirst}) {
            auto run = std::make_unique<Run>(answers, layers);
            if (!recording) run->history().setControl(pavo::db::UndoHistory::Control::None);
            t[recording] = timed([&] { run->command(L"-LAYER"); });
            if (recording && (run->history().stepCount() != steps || (!steps && run->history().bytes())))
                state.SkipWithError("recorded what it should not, or not what it should");
        }
        recordingFirst = !recordingFirst;
        for (int recording : {0, 1}) {
            cpu[recording].push_back(t[recording].cpu);
            wall[recording].push_back(t[recording].wall);
            faults[recording].push_back(t[recording].faults);
        }
        extraCpu.push_back(100 * (t[1].cpu / t[0].cpu - 1));
        state.SetIterationTime(t[1].wall / 1e3);
    }
    state.counters["off_cpu_ms"] = median(cpu[0]);
    state.counters["on_cpu_ms"] = median(cpu[1]);
    state.counters["off_wall_ms"] = median(wall[0]);
    state.counters["on_wall_ms"] = median(wall[1]);
    state.counters["extra_cpu_pct"] = median(extraCpu);
    state.counters["off_faults"] = median(faults[0]);
    state.counters["on_faults"] = median(faults[1]);
}

void BM_RecordingFreezeAll(benchmark::State& state) { recordingCost(state, kFreezeAnswers, 1); }
// Listing every layer only reads: nothing is recorded.
void BM_RecordingListAll(benchmark::State& state) { recordingCost(state, {"?", "", ""}, 0); }

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

std::unique_ptr<Run> setByLayerRun(std::size_t entities, std::size_t explicitEvery) {
    auto run = std::make_unique<Run>(
        kSetByLayerAnswers, 0, pavobench::generateDrawing(pavobench::setByLayerDrawingSize(entities, explicitEvery)));
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
    const auto explicitEvery = static_cast<std::size_t>(state.range(1));
    double stepPerObject = 0, statePerObject = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto off = setByLayerRun(entities, explicitEvery);
        off->history().setControl(pavo::db::UndoHistory::Control::None);
        const std::size_t withoutRecording = heapGrowth(*off);
        off.reset();
        auto run = setByLayerRun(entities, explicitEvery);
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

// A line drawn on a model space of N entities: the step it records (the
// line, the model space's header and the list's length), and U of it.
void BM_UndoLine(benchmark::State& state) {
    const auto entities = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<Run>(std::vector<std::string>{"0,0", "5,5", ""}, 0,
                                         pavobench::generateDrawing(pavobench::setByLayerDrawingSize(entities, 10)));
        run->command(L"LINE");
        state.counters["step_bytes"] = static_cast<double>(run->history().bytes());
        state.ResumeTiming();
        run->command(L"U");
        state.PauseTiming();
        if (run->history().redoableCount() != 1) state.SkipWithError("not undone");
        run.reset();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(BM_RecordingFreezeAll)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(11);
BENCHMARK(BM_RecordingListAll)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(11);
BENCHMARK(BM_UndoFreezeAll)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_RedoFreezeAll)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_UndoSetByLayer)->Args({100000, 10})->Args({1000000, 10})->Unit(benchmark::kMillisecond)->Iterations(3);
// Every object explicit: all of them change.
BENCHMARK(BM_UndoSetByLayer)->Args({1000000, 1})->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_UndoLine)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);
