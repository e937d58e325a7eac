// A bare parse of a drawing file by simdjson, timed in the same run as what
// is compared with it, so that a load or save rate can be given as a ratio
// that means the same on a busy machine as on a quiet one. The parse is
// what the fastest reader could do: a fresh DOM parser reads the file into
// fresh memory and indexes and parses all of it, building nothing else.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace pavobench {

// Wall-clock and processor time (of the whole process, every thread).
struct Times {
    double wall = 0;
    double cpu = 0;
    static Times now();
    Times operator-(const Times& o) const { return {wall - o.wall, cpu - o.cpu}; }
    Times& operator+=(const Times& o) {
        wall += o.wall;
        cpu += o.cpu;
        return *this;
    }
};

// Times one bare parse of the file at `path`; zero times when it fails.
Times timeBareParse(const std::string& path);

// Sums the times of a measured step and of the bare parse of the same
// bytes, and reports them as counters:
//   MB/s        decimal megabytes a second of the step, by the wall clock
//   parse_MB/s  the bare parse's rate, by the wall clock
//   x_parse     the step's rate over the parse's (wall clock)
//   cpu_x_parse the same by processor time
//   load_avg    the system's load average over the last minute
class AgainstParse {
public:
    explicit AgainstParse(std::size_t bytes) : m_bytes(bytes) {}
    void addStep(const Times& t) { m_step += t; }
    void addParse(const Times& t) { m_parse += t; }
    void report(benchmark::State& state) const;

private:
    std::size_t m_bytes;
    Times m_step, m_parse;
};

// Adds the smallest and largest of the repetitions to the median and mean,
// so that a figure comes with its range.
benchmark::internal::Benchmark* withRange(benchmark::internal::Benchmark* b);

// The system's load average over the last minute.
double loadAverage();

} // namespace pavobench
