// The "-LAYER" options on drawings of many layers, driven through a scripted
// session of the real host and module, output to a null stream:
//   Freeze "*"            (every layer matched and changed)
//   "?" with Enter        (every layer listed)
//   Thaw of 1,000 names   (plain names, no wildcards)
//   Thaw of a 1 MB list   (262,144 short names on 100,000 layers)
//   Thaw of "=" repeated  (up to 1 MB of them)
//   Thaw of wildcard items (each a walk of 100,000 layers)
//   New with a 1 MB list   (262,144 names, none existing)
//   Thaw of one long pattern item (up to 1 MB of unclosed '[')
//   Color "*"             (every layer coloured, and turned on)
//   stAte Save            (every layer recorded in a new layer state)
//   restoreLayerState     (the database call alone, every layer changed back)
// Each figure is one whole command run: from the answers to the return.
#include <benchmark/benchmark.h>

#include "BenchSession.h"

#include <memory>
#include <string>
#include <vector>

#include "OxDbDatabase.h"
#include "OxDbLayerStateManager.h"

namespace {

using pavobench::addLayers;
using pavobench::BenchSession;
using pavobench::LayerNaming;
using pavobench::layerName;

// The shortest names: 1 ... Z, 10 ... ZZ, 100 ...; layer i is named i + 1.
std::wstring shortLayerName(std::size_t i) {
    std::wstring name;
    for (std::size_t n = i + 1; n; n /= 36)
        name.insert(name.begin(), L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[n % 36]);
    return name;
}

// Runs `answers` in a fresh session on a new drawing with `layers` extra
// layers (`layers`, else the first argument); only the run is timed.
void runScript(benchmark::State& state, const std::vector<std::string>& answers, LayerNaming nameOf = layerName,
               std::size_t layers = 0) {
    if (!layers) layers = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<BenchSession>(answers);
        if (!run->ready()) state.SkipWithError("module not loaded");
        run->session().newDrawing();
        addLayers(run->session().database(), layers, nameOf);
        state.ResumeTiming();
        if (run->session().run() != 0) state.SkipWithError("session failed");
        state.PauseTiming();
        run.reset();
        state.ResumeTiming();
    }
}

void BM_FreezeAll(benchmark::State& state) { runScript(state, {"-LAYER", "Freeze", "*", ""}); }

void BM_ListAll(benchmark::State& state) { runScript(state, {"-LAYER", "?", "", ""}); }

void BM_ThawThousandPlainNames(benchmark::State& state) {
    std::string list;
    const auto layers = static_cast<std::size_t>(state.range(0));
    for (std::size_t i = 0; i < 1000; ++i) {
        if (i) list += ',';
        list += OxString(layerName(i * (layers / 1000))).utf8();
    }
    runScript(state, {"-LAYER", "Thaw", list, ""});
}

// A list of as many names as the argument, each naming one of 100,000
// layers (names of 1 to 3 characters, so 262,144 of them make 1 MB).
void BM_ThawNameList(benchmark::State& state) {
    constexpr std::size_t kLayers = 100000;
    constexpr std::size_t kShortNames = 36 * 36 * 36 - 1; // 1 to ZZZ
    std::string list;
    for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i) {
        if (i) list += ',';
        list += OxString(shortLayerName((i * 7919) % kShortNames)).utf8();
    }
    state.counters["list MB"] = static_cast<double>(list.size()) / (1 << 20);
    runScript(state, {"-LAYER", "Thaw", list, ""}, shortLayerName, kLayers);
}

// A list of as many wildcard items as the argument ("*1Z", ...), each a
// walk of 100,000 layers.
void BM_ThawWildcardItems(benchmark::State& state) {
    std::string list;
    for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i)
        list += (i ? ",*" : "*") + OxString(shortLayerName(i * 7919 % 46655)).utf8();
    runScript(state, {"-LAYER", "Thaw", list, ""}, shortLayerName, 100000);
}

// New with a list of as many names as the argument, none existing yet: the
// whole answer is attempted as one name, once.
void BM_NewNameList(benchmark::State& state) {
    std::string list;
    for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i)
        list += (i ? "," : "") + OxString(shortLayerName(i)).utf8();
    runScript(state, {"-LAYER", "New", list, ""}, layerName, 1000);
}

// One item of as many unclosed '[' as the argument (each a literal), matched
// against each of 100,000 layers.
void BM_ThawLongPatternItem(benchmark::State& state) {
    runScript(state, {"-LAYER", "Thaw", std::string(static_cast<std::size_t>(state.range(0)), '['), ""},
              shortLayerName, 100000);
}

// A list of nothing but equals signs (exact mode, no item): as many as the
// argument.
void BM_EqualsSignsList(benchmark::State& state) {
    runScript(state, {"-LAYER", "Thaw", std::string(static_cast<std::size_t>(state.range(0)), '='), ""}, layerName,
              100000);
}

void BM_ColorAll(benchmark::State& state) { runScript(state, {"-LAYER", "Color", "1", "*", ""}); }

void BM_SaveLayerState(benchmark::State& state) { runScript(state, {"-LAYER", "stAte", "Save", "S", "", "", ""}); }

// Saves a state, changes every layer, then times only the restore.
void BM_RestoreLayerState(benchmark::State& state) {
    const auto layers = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<BenchSession>(std::vector<std::string>{"-LAYER", "Color", "3", "*", ""});
        if (!run->ready()) state.SkipWithError("module not loaded");
        run->session().newDrawing();
        addLayers(run->session().database(), layers);
        OxDbLayerStateManager* states = run->session().database()->getLayerStateManager();
        if (states->saveLayerState(L"S", OxDbLayerStateManager::kAll) != Ox::eOk) state.SkipWithError("not saved");
        if (run->session().run() != 0) state.SkipWithError("session failed");
        state.ResumeTiming();
        if (states->restoreLayerState(L"S") != Ox::eOk) state.SkipWithError("not restored");
        state.PauseTiming();
        run.reset();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(BM_ColorAll)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SaveLayerState)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RestoreLayerState)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_FreezeAll)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ListAll)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ThawThousandPlainNames)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK(BM_ThawNameList)->Arg(16384)->Arg(65536)->Arg(262144)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_EqualsSignsList)->Arg(65536)->Arg(262144)->Arg(1048576)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_NewNameList)->Arg(16384)->Arg(65536)->Arg(262144)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ThawLongPatternItem)->Arg(16384)->Arg(65536)->Arg(262144)->Arg(1048576)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_ThawWildcardItems)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond)->Iterations(3);
