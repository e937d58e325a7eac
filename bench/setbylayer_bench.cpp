// SETBYLAYER and its selection on generated drawings of 10,000 to 1,000,000
// model-space entities (1 in 100 a reference to one of 100 definitions of
// 100 entities, every tenth definition nesting another), through a scripted
// session of the real host and module:
//   SelectAll            "SELECT", "ALL": the selection prompt alone
//   SetByLayerChanges    mask 255, ByBlock to ByLayer, blocks included, on
//                        ALL; every tenth object explicit (ByBlock inside
//                        definitions), every other reference red
//   SetByLayerUnchanged  the same on a drawing where everything is ByLayer
// And the settings dialog on Qt's offscreen platform:
//   DialogFirstOpen      a whole pavo run that opens and cancels the dialog,
//                        less the same run without it (Qt loaded, first
//                        dialog built and shown)
//   DialogReopen         one more opening and cancelling in a session that
//                        has shown it before
#include <benchmark/benchmark.h>

#include "BenchSession.h"
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "DrawingGenerator.h"
#include "OxDbDatabase.h"

extern char** environ;

namespace {

// Runs `answers` on a generated drawing; only the session's run is timed.
void runOnDrawing(benchmark::State& state, const std::vector<std::string>& answers, std::size_t explicitEvery) {
    const auto entities = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<pavobench::BenchSession>(answers);
        if (!run->ready()) state.SkipWithError("module not loaded");
        run->session().useDrawing(pavobench::generateDrawing(pavobench::setByLayerDrawingSize(entities, explicitEvery)));
        state.ResumeTiming();
        if (run->session().run() != 0) state.SkipWithError("session failed");
        state.PauseTiming();
        run.reset();
        state.ResumeTiming();
    }
    state.counters["entities"] = static_cast<double>(entities);
}

const std::vector<std::string> kSetByLayerAll = {"SETBYLAYERMODE", "255", "SETBYLAYER", "ALL", "", "Yes", "Yes"};

void BM_SelectAll(benchmark::State& state) { runOnDrawing(state, {"SELECT", "ALL", ""}, 0); }
void BM_SetByLayerChanges(benchmark::State& state) { runOnDrawing(state, kSetByLayerAll, 10); }
void BM_SetByLayerUnchanged(benchmark::State& state) { runOnDrawing(state, kSetByLayerAll, 0); }

// Seconds of one pavo run on a new drawing with `script` on its standard
// input and Qt's offscreen platform.
double pavoRunSeconds(const std::string& script) {
    char scriptFile[] = "/tmp/pavo-bench-XXXXXX";
    const int fd = mkstemp(scriptFile);
    if (fd < 0 || write(fd, script.data(), script.size()) != static_cast<ssize_t>(script.size())) return -1;
    close(fd);
    const std::string exe = PAVO_BENCH_PAVO_EXE;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    std::string newFlag = "--new", scriptFlag = "--script";
    char* argv[] = {const_cast<char*>(exe.c_str()), newFlag.data(), scriptFlag.data(), scriptFile, nullptr};
    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    int status = -1;
    if (posix_spawn(&pid, exe.c_str(), &actions, nullptr, argv, environ) == 0) waitpid(pid, &status, 0);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    posix_spawn_file_actions_destroy(&actions);
    unlink(scriptFile);
    return status == 0 ? seconds : -1;
}

void BM_DialogFirstOpen(benchmark::State& state) {
    for (auto _ : state) {
        const double with = pavoRunSeconds("SETBYLAYER\nS\n@cancel\n^C\n");
        const double without = pavoRunSeconds("SETBYLAYER\n^C\n");
        if (with < 0 || without < 0) state.SkipWithError("pavo failed");
        state.SetIterationTime(with - without);
    }
}

void BM_DialogReopen(benchmark::State& state) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    pavo::app::SessionOptions options = pavobench::benchSessionOptions();
    options.noDialogs = false;
    constexpr int kOpenings = 20;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::string> answers = {"SETBYLAYER", "S", "@cancel"}; // the first one loads Qt
        auto warmUp = std::make_unique<pavobench::BenchSession>(answers, options);
        warmUp->session().newDrawing();
        warmUp->session().run();
        warmUp.reset();
        answers = {"SETBYLAYER"};
        for (int i = 0; i < kOpenings; ++i) {
            answers.push_back("S");
            answers.push_back("@cancel");
        }
        answers.push_back("^C");
        auto run = std::make_unique<pavobench::BenchSession>(answers, options);
        run->session().newDrawing();
        const auto start = std::chrono::steady_clock::now();
        run->session().run();
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        run.reset();
        state.ResumeTiming();
        state.SetIterationTime(seconds / kOpenings);
    }
}

} // namespace

BENCHMARK(BM_SelectAll)->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000)->Iterations(3);
BENCHMARK(BM_SetByLayerChanges)->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000)->Iterations(3);
BENCHMARK(BM_SetByLayerUnchanged)->Unit(benchmark::kMillisecond)->Arg(10000)->Arg(100000)->Arg(1000000)->Iterations(3);
BENCHMARK(BM_DialogFirstOpen)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);
BENCHMARK(BM_DialogReopen)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);
