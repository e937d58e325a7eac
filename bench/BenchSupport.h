// What the benchmarks share: a stream that swallows a session's output, the
// timed loading and saving of a drawing file, and the file throughput
// counters of the load and save benchmarks.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <streambuf>
#include <string>

#include "ParseReference.h"
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
// one is left out of the time. Each iteration also parses the file bare
// (untimed), and the rates are reported against it (ParseReference.h).
inline void loadRepeatedly(benchmark::State& state, const std::string& path, std::size_t bytes) {
    std::unique_ptr<OxDbDatabase> db;
    AgainstParse against(bytes);
    for (auto _ : state) {
        state.PauseTiming();
        db.reset();
        against.addParse(timeBareParse(path));
        state.ResumeTiming();
        const Times start = Times::now();
        pavo::files::LoadError error;
        db = pavo::files::readDrawingFile(path, error);
        against.addStep(Times::now() - start);
        if (!db) state.SkipWithError(error.message().c_str());
        benchmark::DoNotOptimize(db.get());
    }
    against.report(state);
}

// Saves `db` to a file once an iteration as SAVE does (the text, its write
// and flush to a temporary file, the rename over the previous one and the
// backup), reported against a bare parse of the saved file.
inline void saveRepeatedly(benchmark::State& state, const OxDbDatabase& db, const std::string& path) {
    std::size_t bytes = 0;
    Times parse, step;
    for (auto _ : state) {
        const Times start = Times::now();
        std::string error;
        if (!pavo::files::writeDrawingFile(db, path, error)) state.SkipWithError(error.c_str());
        step += Times::now() - start;
        state.PauseTiming();
        parse += timeBareParse(path);
        std::error_code ignored;
        bytes = static_cast<std::size_t>(std::filesystem::file_size(path, ignored));
        state.ResumeTiming();
    }
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    std::filesystem::remove(path + ".bak", ignored);
    AgainstParse report(bytes);
    report.addStep(step);
    report.addParse(parse);
    report.report(state);
}

} // namespace pavobench
