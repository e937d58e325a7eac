#include "ParseReference.h"

#include <simdjson.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace pavobench {

Times Times::now() {
    timespec cpu{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpu);
    const double wall =
        std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    return {wall, static_cast<double>(cpu.tv_sec) + static_cast<double>(cpu.tv_nsec) / 1e9};
}

Times timeBareParse(const std::string& path) {
    const Times start = Times::now();
    simdjson::dom::parser parser; // fresh, as a fresh process would have it
    simdjson::dom::element root;
    if (parser.load(path).get(root)) return {};
    benchmark::DoNotOptimize(root);
    return Times::now() - start;
}

double loadAverage() {
    double avg[1] = {0};
    return getloadavg(avg, 1) == 1 ? avg[0] : -1;
}

void AgainstParse::report(benchmark::State& state) const {
    const double mb = static_cast<double>(m_bytes) / 1e6;
    const double n = static_cast<double>(state.iterations());
    if (m_step.wall > 0) state.counters["MB/s"] = n * mb / m_step.wall;
    if (m_parse.wall > 0) state.counters["parse_MB/s"] = n * mb / m_parse.wall;
    if (m_step.wall > 0 && m_parse.wall > 0) state.counters["x_parse"] = m_parse.wall / m_step.wall;
    if (m_step.cpu > 0 && m_parse.cpu > 0) state.counters["cpu_x_parse"] = m_parse.cpu / m_step.cpu;
    state.counters["file_MB"] = mb;
    state.counters["load_avg"] = loadAverage();
}

benchmark::internal::Benchmark* withRange(benchmark::internal::Benchmark* b) {
    return b
        ->ComputeStatistics("min", [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); })
        ->ComputeStatistics("max", [](const std::vector<double>& v) { return *std::max_element(v.begin(), v.end()); });
}

} // namespace pavobench
