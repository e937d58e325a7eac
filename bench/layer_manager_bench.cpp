// The layer manager ("LAYER") on drawings of 1,000 to 100,000 layers, on
// Qt's offscreen platform, through a scripted session of the real host, the
// real module and "LAYER". The dialog's prompt comes after each "@" line
// has been carried out and the dialog repainted, so each figure is the time
// between two prompts:
//   Open         INITDIA, LAYER to the first prompt: the layers read, the
//                dialog built, shown and painted (Qt already loaded)
//   Filter       @filter DISC-3-* (a seventeenth of the layers)
//   Sort         @sort Color
//   SetApply     @set Color 1 with every layer selected, then @apply
//   ScrollToEnd  the table scrolled to its last row and repainted
// Counters: "cpu_ms" the processor time of the session's thread for the
// same span (close to a quiet machine's wall clock when the machine is
// busy), "paints" of the table seen in the run, "memory_MB" the heap the
// open dialog holds beyond the drawing's (Open only).
#include <benchmark/benchmark.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QTableView>
#include <malloc.h>
#include <time.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "BenchSession.h"
#include "DrawingGenerator.h"
#include "OxDbDatabase.h"
#include "app/Session.h"
#include "editor/Input.h"

namespace {

using Clock = std::chrono::steady_clock;

// The processor time of the calling thread, in seconds.
double threadSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

// Swallows a session's output and notes when each prompt of the dialog was
// written; `onPrompt` runs there, inside the session.
class PromptClock : public std::streambuf {
public:
    std::vector<Clock::time_point> prompts;
    std::vector<double> cpu; // threadSeconds() at each prompt
    std::function<void(std::size_t)> onPrompt;

protected:
    int overflow(int ch) override {
        const char c = static_cast<char>(ch);
        xsputn(&c, 1);
        return ch;
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override {
        m_tail.append(s, static_cast<std::size_t>(n));
        if (m_tail.size() > 256) m_tail.erase(0, m_tail.size() - 128);
        static const std::string kPrompt = "Dialog \"Layer Manager\": ";
        if (m_tail.size() >= kPrompt.size() && m_tail.compare(m_tail.size() - kPrompt.size(), kPrompt.size(), kPrompt) == 0) {
            prompts.push_back(Clock::now());
            cpu.push_back(threadSeconds());
            m_tail.clear();
            if (onPrompt) onPrompt(prompts.size() - 1);
        }
        return n;
    }

private:
    std::string m_tail;
};

// Counts paint events of the layer table's viewport.
class PaintCounter : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->parent() &&
            watched->parent()->objectName() == QLatin1String("IDC_LAYER_TABLE"))
            ++paints;
        return false;
    }
};

QTableView* layerTable() {
    for (QWidget* w : QApplication::allWidgets())
        if (auto* table = qobject_cast<QTableView*>(w); table && table->objectName() == "IDC_LAYER_TABLE") return table;
    return nullptr;
}

pavo::app::SessionOptions dialogOptions() {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    pavo::app::SessionOptions options = pavobench::benchSessionOptions();
    options.noDialogs = false;
    return options;
}

// Loads Qt and the dialog module once, so that figures are of later openings.
void warmUp() {
    static bool done = false;
    if (done) return;
    done = true;
    PromptClock clock;
    std::ostream out(&clock);
    pavo::app::Session session(dialogOptions(), pavo::editor::makeLinesInput({"INITDIA", "LAYER", "@cancel"}), out);
    session.loadModules();
    session.newDrawing();
    session.run();
}

struct Run {
    std::vector<Clock::time_point> prompts;
    std::vector<double> cpu;
    Clock::time_point start;
    double startCpu = 0;
    double memoryMB = 0;
    int paints = 0;
};

// Runs INITDIA, LAYER, `lines` and @cancel on a drawing of `layers` layers.
// `atPrompt` runs when prompt N is written (before its line is read).
Run runDialog(std::size_t layers, std::vector<std::string> lines, std::function<void(std::size_t)> atPrompt = {}) {
    warmUp();
    pavobench::DrawingSize size;
    size.layers = layers;
    size.entities = 10000;
    std::vector<std::string> script{"INITDIA", "LAYER"};
    script.insert(script.end(), lines.begin(), lines.end());
    script.push_back("@cancel");
    PromptClock clock;
    std::ostream out(&clock);
    auto session = std::make_unique<pavo::app::Session>(dialogOptions(), pavo::editor::makeLinesInput(script), out);
    session->loadModules();
    session->useDrawing(pavobench::generateDrawing(size));
    PaintCounter counter;
    qApp->installEventFilter(&counter);
    Run run;
    const std::size_t heapBefore = mallinfo2().uordblks;
    clock.onPrompt = [&](std::size_t n) {
        if (n == 0) run.memoryMB = (static_cast<double>(mallinfo2().uordblks) - static_cast<double>(heapBefore)) / 1e6;
        if (atPrompt) atPrompt(n);
    };
    run.start = Clock::now();
    run.startCpu = threadSeconds();
    session->run();
    qApp->removeEventFilter(&counter);
    run.prompts = clock.prompts;
    run.cpu = clock.cpu;
    run.paints = counter.paints;
    return run;
}

double seconds(Clock::time_point from, Clock::time_point to) { return std::chrono::duration<double>(to - from).count(); }

// The time from prompt `first` to prompt `last` of each run.
void timeBetweenPrompts(benchmark::State& state, const std::vector<std::string>& lines, std::size_t first,
                        std::size_t last) {
    for (auto _ : state) {
        const Run run = runDialog(static_cast<std::size_t>(state.range(0)), lines);
        if (run.prompts.size() <= last) {
            state.SkipWithError("the dialog did not run the script");
            return;
        }
        state.SetIterationTime(seconds(run.prompts[first], run.prompts[last]));
        state.counters["cpu_ms"] = (run.cpu[last] - run.cpu[first]) * 1e3;
        state.counters["paints"] = run.paints;
    }
}

void BM_Open(benchmark::State& state) {
    for (auto _ : state) {
        const Run run = runDialog(static_cast<std::size_t>(state.range(0)), {});
        if (run.prompts.empty()) {
            state.SkipWithError("the dialog did not open");
            return;
        }
        state.SetIterationTime(seconds(run.start, run.prompts.front()));
        state.counters["cpu_ms"] = (run.cpu.front() - run.startCpu) * 1e3;
        state.counters["memory_MB"] = run.memoryMB;
        state.counters["paints"] = run.paints;
    }
}

void BM_Filter(benchmark::State& state) { timeBetweenPrompts(state, {"@filter DISC-3-*"}, 0, 1); }

void BM_Sort(benchmark::State& state) { timeBetweenPrompts(state, {"@sort Color"}, 0, 1); }

void BM_SetApply(benchmark::State& state) {
    timeBetweenPrompts(state, {"@select *", "@set Color 1", "@apply"}, 1, 3);
}

void BM_ScrollToEnd(benchmark::State& state) {
    for (auto _ : state) {
        double elapsed = -1, cpu = 0;
        const Run run = runDialog(static_cast<std::size_t>(state.range(0)), {}, [&](std::size_t n) {
            QTableView* table = n == 0 ? layerTable() : nullptr;
            if (!table) return;
            const Clock::time_point from = Clock::now();
            const double fromCpu = threadSeconds();
            table->scrollToBottom();
            QApplication::processEvents();
            elapsed = seconds(from, Clock::now());
            cpu = threadSeconds() - fromCpu;
        });
        if (elapsed < 0) {
            state.SkipWithError("no layer table");
            return;
        }
        state.SetIterationTime(elapsed);
        state.counters["cpu_ms"] = cpu * 1e3;
        state.counters["paints"] = run.paints;
    }
}

} // namespace

#define LAYER_SIZES ->Unit(benchmark::kMillisecond)->UseManualTime()->Arg(1000)->Arg(10000)->Arg(100000)->Iterations(3)
BENCHMARK(BM_Open) LAYER_SIZES;
BENCHMARK(BM_Filter) LAYER_SIZES;
BENCHMARK(BM_Sort) LAYER_SIZES;
BENCHMARK(BM_SetApply) LAYER_SIZES;
BENCHMARK(BM_ScrollToEnd) LAYER_SIZES;
