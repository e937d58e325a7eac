// What the benchmarks share: a stream that swallows a session's output, and
// the file throughput counters of the load and save benchmarks.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <streambuf>

namespace pavobench {

// Swallows what is written, counting the bytes.
class NullBuffer : public std::streambuf {
public:
    std::size_t written() const { return m_written; }

protected:
    int overflow(int ch) override {
        ++m_written;
        return ch;
    }
    std::streamsize xsputn(const char*, std::streamsize n) override {
        m_written += static_cast<std::size_t>(n);
        return n;
    }

private:
    std::size_t m_written = 0;
};

// "MB": decimal megabytes of drawing file per second; "file_MB": its size.
inline void reportRate(benchmark::State& state, std::size_t bytes) {
    state.counters["MB"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * static_cast<double>(bytes) / 1e6, benchmark::Counter::kIsRate);
    state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
}

} // namespace pavobench
