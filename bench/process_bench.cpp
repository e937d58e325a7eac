// The real pavo program on real drawing files, as a user runs it: each run is
// a whole process started on a generated drawing (layer names as offices
// give them, not in sorted order) with a script, its output to /dev/null.
//   BM_OpenInProcess     opening the drawing: a run that only quits, less a
//                        run on a new drawing; peak memory against the file
//   BM_LayerOption       one -LAYER option (or LAYERSTATE Restore) repeated
//                        in a script, less the same script without it
//   BM_SaveAsInProcess   SAVEAS with its write, flush and rename, likewise
//   BM_EndToEndJob       open, freeze "A-*", colour "*WALL*" red, save
//                        under a new name, quit: the whole run
// Every iteration also parses the drawing file bare in this process, and the
// rates are given against it (ParseReference.h). Processor time is the
// pavo process's own (user and system), from wait4.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "DrawingGenerator.h"
#include "ParseReference.h"
#include "files/DrawingFile.h"
#include "pavo_host.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using pavobench::Times;

struct ProcessRun {
    double wall = 0;   // seconds
    double cpu = 0;    // seconds of the process, user and system
    double peakMB = 0; // peak resident memory, decimal megabytes
    int status = -1;
};

// The peak resident memory ("VmHWM") in a /proc status file, in decimal
// megabytes; 0 when it cannot be read.
double peakOf(const std::string& statusFile) {
    std::ifstream in(statusFile);
    std::string line;
    while (std::getline(in, line))
        if (line.rfind("VmHWM:", 0) == 0) return std::strtod(line.c_str() + 6, nullptr) * 1024 / 1e6;
    return 0;
}

// Runs pavo with `args`, input from /dev/null and output to it.
ProcessRun runPavo(const std::vector<std::string>& args) {
    const std::string exe = PAVO_BENCH_PAVO_EXE;
    std::vector<char*> argv{const_cast<char*>(exe.c_str())};
    for (const std::string& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    ProcessRun run;
    const Times start = Times::now();
    pid_t pid = 0;
    if (posix_spawn(&pid, exe.c_str(), &actions, nullptr, argv.data(), environ) == 0) {
        // The peak is read from the process while it runs: a spawned child's
        // own count of it starts from this (large) process's.
        const std::string statusFile = "/proc/" + std::to_string(pid) + "/status";
        int status = 0;
        rusage usage{};
        for (;;) {
            const pid_t done = wait4(pid, &status, WNOHANG, &usage);
            if (done == pid || done < 0) break;
            run.peakMB = std::max(run.peakMB, peakOf(statusFile));
            usleep(2000);
        }
        run.wall = (Times::now() - start).wall;
        auto seconds = [](const timeval& t) {
            return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
        };
        run.cpu = seconds(usage.ru_utime) + seconds(usage.ru_stime);
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    return run;
}

std::string tempPath(const std::string& name) {
    return (fs::temp_directory_path() / ("pavo-process-bench-" + std::to_string(::getpid()) + "-" + name)).string();
}

// Files made here, removed when the benchmarks end.
struct TempFiles {
    std::vector<std::string> paths;
    ~TempFiles() {
        std::error_code ignored;
        for (const std::string& p : paths)
            fs::remove(p, ignored);
    }
    const std::string& add(std::string path) { return paths.emplace_back(std::move(path)); }
};
TempFiles& tempFiles() {
    static TempFiles files;
    return files;
}

struct Drawing {
    std::string path;
    std::size_t bytes = 0;
};

// A generated drawing, written once per size.
const Drawing& drawing(std::size_t layers, std::size_t entities, bool linesOnly) {
    static std::map<std::tuple<std::size_t, std::size_t, bool>, Drawing> cache;
    Drawing& d = cache[{layers, entities, linesOnly}];
    if (d.path.empty()) {
        pavobench::DrawingSize size;
        size.layers = layers;
        size.entities = entities;
        size.officeLayerNames = true;
        size.linesOnly = linesOnly;
        const std::string path = tempFiles().add(tempPath(std::to_string(layers) + "-" + std::to_string(entities) +
                                                          (linesOnly ? "-lines" : "") + ".pvd"));
        std::string error;
        if (pavo::files::writeDrawingFile(*pavobench::generateDrawing(size), path, error)) {
            d.path = path;
            d.bytes = static_cast<std::size_t>(fs::file_size(path));
        }
        tempFiles().add(path + ".bak");
    }
    return d;
}

std::string writeScript(const std::string& name, const std::vector<std::string>& lines) {
    const std::string path = tempFiles().add(tempPath(name + ".scr"));
    std::ofstream out(path, std::ios::binary);
    for (const std::string& line : lines)
        out << line << '\n';
    return path;
}

std::vector<std::string> repeated(const std::vector<std::string>& lines, int times) {
    std::vector<std::string> out;
    for (int i = 0; i < times; ++i)
        out.insert(out.end(), lines.begin(), lines.end());
    return out;
}

std::vector<std::string> joined(std::vector<std::string> a, const std::vector<std::string>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::vector<std::string> kQuit{"QUIT", "N"}; // discarding any changes

// The figure of one step: a script with it less the same script without it,
// run in turn on `file` `times` times each iteration. Reports the step's wall
// clock as the iteration time, its processor time ("cpu_ms"), both per
// step, and its rate against the bare parse of the file.
void differenceOfScripts(benchmark::State& state, const Drawing& file, const std::vector<std::string>& without,
                         const std::vector<std::string>& with, int times, const std::string& name) {
    if (file.path.empty()) {
        state.SkipWithError("no drawing");
        return;
    }
    const std::string plain = writeScript(name + "-without", joined(without, kQuit));
    const std::string full = writeScript(name + "-with", joined(with, kQuit));
    pavobench::AgainstParse against(file.bytes);
    double cpu = 0, parseWall = 0;
    for (auto _ : state) {
        const ProcessRun a = runPavo({file.path, "--script", plain});
        const ProcessRun b = runPavo({file.path, "--script", full});
        if (a.status != 0 || b.status != 0) state.SkipWithError("pavo failed");
        const Times parse = pavobench::timeBareParse(file.path);
        against.addParse(parse);
        parseWall += parse.wall;
        const Times step{std::max(0.0, b.wall - a.wall) / times, (b.cpu - a.cpu) / times};
        against.addStep(step);
        state.SetIterationTime(step.wall);
        cpu += step.cpu;
    }
    against.report(state);
    const double n = static_cast<double>(state.iterations());
    state.counters["cpu_ms"] = cpu / n * 1000;
    state.counters["parse_ms"] = parseWall / n * 1000;
}

// -LAYER options on a drawing of as many layers as entities.
enum Option { kFreezeAll, kColorAll, kListAll, kThawThousandNames, kRestoreState };

void BM_LayerOption(benchmark::State& state) {
    const auto layers = static_cast<std::size_t>(state.range(0));
    const auto option = static_cast<Option>(state.range(1));
    const Drawing& file = drawing(layers, layers, false);
    const std::vector<std::string> colourAll{"-LAYER", "Color", "3", "*", ""};
    switch (option) {
    case kFreezeAll:
        state.SetLabel("Freeze *");
        differenceOfScripts(state, file, {}, repeated({"-LAYER", "Freeze", "*", ""}, 5), 5, "freeze");
        break;
    case kColorAll:
        state.SetLabel("Color *");
        differenceOfScripts(state, file, {}, repeated({"-LAYER", "Color", "1", "*", ""}, 5), 5, "color");
        break;
    case kListAll:
        state.SetLabel("? listing");
        differenceOfScripts(state, file, {}, repeated({"-LAYER", "?", "", ""}, 5), 5, "list");
        break;
    case kThawThousandNames: {
        state.SetLabel("1,000 names");
        std::string list;
        for (std::size_t i = 0; i < 1000; ++i)
            list += (i ? "," : "") + OxString(pavobench::officeLayerName(1 + i * (layers - 1) / 1000)).utf8();
        differenceOfScripts(state, file, {}, repeated({"-LAYER", "Thaw", list, ""}, 20), 20, "names");
        break;
    }
    case kRestoreState: {
        // Every restore puts back the colour of every layer.
        state.SetLabel("LAYERSTATE Restore");
        const std::vector<std::string> save{"-LAYER", "stAte", "Save", "S", "", "", ""};
        const std::vector<std::string> restore{"LAYERSTATE", "Restore", "S", ""};
        differenceOfScripts(state, file, joined(save, repeated(colourAll, 5)),
                            joined(save, repeated(joined(colourAll, restore), 5)), 5, "restore");
        break;
    }
    }
    // Rates of the file mean nothing for a command.
    for (const char* counter : {"MB/s", "x_parse", "cpu_x_parse"})
        state.counters.erase(counter);
}

// Opening a drawing of `entities` entities and a tenth as many layers.
void BM_OpenInProcess(benchmark::State& state) {
    const auto entities = static_cast<std::size_t>(state.range(0));
    const Drawing& file = drawing(entities / 10, entities, false);
    const std::string quit = writeScript("quit", kQuit);
    pavobench::AgainstParse against(file.bytes);
    double peak = 0;
    for (auto _ : state) {
        const ProcessRun empty = runPavo({"--new", "--script", quit});
        const ProcessRun open = runPavo({file.path, "--script", quit});
        if (empty.status != 0 || open.status != 0) state.SkipWithError("pavo failed");
        against.addParse(pavobench::timeBareParse(file.path));
        const Times step{open.wall - empty.wall, open.cpu - empty.cpu};
        against.addStep(step);
        state.SetIterationTime(std::max(0.0, step.wall));
        peak = std::max(peak, open.peakMB);
    }
    against.report(state);
    state.counters["peak_MB"] = peak;
    state.counters["peak_x_file"] = peak * 1e6 / static_cast<double>(file.bytes);
}

// SAVEAS to a new name, with the text, write, flush and rename.
void BM_SaveAsInProcess(benchmark::State& state) {
    const auto entities = static_cast<std::size_t>(state.range(0));
    const Drawing& file = drawing(entities / 10, entities, false);
    const std::string saved = tempFiles().add(tempPath("saved-" + std::to_string(entities) + ".pvd"));
    tempFiles().add(saved + ".bak");
    differenceOfScripts(state, file, {}, {"SAVEAS", saved}, 1, "saveas-" + std::to_string(entities));
}

// The whole job on `entities` lines and a tenth as many layers.
void BM_EndToEndJob(benchmark::State& state) {
    const auto entities = static_cast<std::size_t>(state.range(0));
    const Drawing& file = drawing(entities / 10, entities, true);
    const std::string saved = tempFiles().add(tempPath("job-" + std::to_string(entities) + ".pvd"));
    tempFiles().add(saved + ".bak");
    const std::string script = writeScript(
        "job", {"-LAYER", "Freeze", "A-*", "", "-LAYER", "Color", "red", "*WALL*", "", "SAVEAS", saved, "QUIT"});
    double cpu = 0, peak = 0, parseWall = 0;
    for (auto _ : state) {
        std::error_code ignored;
        fs::remove(saved, ignored);
        const ProcessRun run = runPavo({file.path, "--script", script});
        if (run.status != 0 || !fs::exists(saved)) state.SkipWithError("the job failed");
        parseWall += pavobench::timeBareParse(file.path).wall;
        state.SetIterationTime(run.wall);
        cpu += run.cpu;
        peak = std::max(peak, run.peakMB);
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["cpu_ms"] = cpu / n * 1000;
    state.counters["parse_ms"] = parseWall / n * 1000;
    state.counters["peak_MB"] = peak;
    state.counters["file_MB"] = static_cast<double>(file.bytes) / 1e6;
    state.counters["load_avg"] = pavobench::loadAverage();
}

void repeatedRuns(benchmark::internal::Benchmark* b) {
    b->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
    pavobench::withRange(b);
}

} // namespace

BENCHMARK(BM_OpenInProcess)->Arg(10000)->Arg(100000)->Arg(1000000)->Apply(repeatedRuns);
BENCHMARK(BM_SaveAsInProcess)->Arg(10000)->Arg(100000)->Arg(1000000)->Apply(repeatedRuns);
BENCHMARK(BM_EndToEndJob)->Arg(10000)->Arg(100000)->Arg(1000000)->Apply(repeatedRuns);
BENCHMARK(BM_LayerOption)
    ->ArgsProduct({{10000, 100000, 1000000}, {kFreezeAll, kColorAll, kListAll, kThawThousandNames, kRestoreState}})
    ->Apply(repeatedRuns);
