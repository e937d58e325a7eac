// What the benchmarks share: a stream that swallows a session's output, the
// timed loading of a drawing file, and the file throughput counters of the
// load and save benchmarks.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <streambuf>
#include <string>

#include "files/DrawingFile.h"

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

// Loads the drawing file `path` once an iteration, from the file on disk (in
// the page cache after the first run) to a database; freeing the previous
// one is left out of the time.
inline void loadRepeatedly(benchmark::State& state, const std::string& path) {
    std::unique_ptr<OxDbDatabase> db;
    for (auto _ : state) {
        state.PauseTiming();
        db.reset();
        state.ResumeTiming();
        pavo::files::LoadError error;
        db = pavo::files::readDrawingFile(path, error);
        if (!db) state.SkipWithError(error.message().c_str());
        benchmark::DoNotOptimize(db.get());
    }
}

} // namespace pavobench
