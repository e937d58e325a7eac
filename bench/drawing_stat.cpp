// pavo-drawing-stat: opens one drawing file as pavo does (read from disk
// into one buffer, then parsed into a database), saves it as SAVE does (the
// text, written and flushed to a temporary file renamed into place), and
// reports the rates and the peak resident memory after each step. The copy
// is saved to the output path when one is given (to compare writers), else
// to a temporary file that is removed.
// With --load-only it stops after loading, without freeing the database, so
// that a profile of it shows the load alone.
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <unistd.h>

#include "files/DrawingFile.h"
#include "pavo_host.h"

namespace {

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

// Processor time of this process (user and system), in seconds: steadier
// than the wall clock on a machine that others share.
double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

int main(int argc, char** argv) {
    const bool loadOnly = argc > 1 && std::string_view(argv[1]) == "--load-only";
    if (loadOnly) {
        --argc;
        ++argv;
    }
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: pavo-drawing-stat [--load-only] FILE.pvd [SAVED.pvd]\n";
        return 1;
    }
    std::error_code ec;
    const auto fileSize = std::filesystem::file_size(argv[1], ec);
    if (ec) {
        std::cerr << argv[1] << ": " << ec.message() << "\n";
        return 1;
    }
    using clock = std::chrono::steady_clock;
    const double c0 = cpuSeconds();
    const auto t0 = clock::now();
    pavo::files::LoadError error;
    auto db = pavo::files::readDrawingFile(argv[1], error);
    const auto t1 = clock::now();
    const double c1 = cpuSeconds();
    if (!db) {
        std::cerr << error.message() << "\n";
        return 2;
    }
    const double peakLoad = peakMegabytes();
    const double mb = static_cast<double>(fileSize) / 1e6;
    const double load = std::chrono::duration<double>(t1 - t0).count();
    if (loadOnly) {
        std::cout << "file " << mb << " MB\nload " << load << " s, " << mb / load << " MB/s (processor " << c1 - c0
                  << " s), peak resident " << peakLoad << " MB" << std::endl;
        std::_Exit(0);
    }
    std::string problem;
    const std::filesystem::path out = argc == 3 ? std::filesystem::path(argv[2])
                                                : std::filesystem::temp_directory_path() /
                                                      ("pavo-drawing-stat-" + std::to_string(::getpid()) + ".pvd");
    const double c2 = cpuSeconds();
    const auto t2 = clock::now();
    const bool saved = pavo::files::writeDrawingFile(*db, out, problem);
    const auto t3 = clock::now();
    const double c3 = cpuSeconds();
    if (!saved) {
        std::cerr << out.string() << ": " << problem << "\n";
        return 3;
    }
    const double peakSave = peakMegabytes();
    const double save = std::chrono::duration<double>(t3 - t2).count();
    const double savedMb = static_cast<double>(std::filesystem::file_size(out, ec)) / 1e6;
    if (argc != 3) {
        std::filesystem::remove(out, ec);
        std::filesystem::remove(out.string() + ".bak", ec);
    }
    std::cout << "file " << mb << " MB\nload " << load << " s, " << mb / load << " MB/s (processor " << c1 - c0
              << " s, " << mb / (c1 - c0) << " MB/s), peak resident " << peakLoad << " MB\nsave " << save << " s, "
              << savedMb / save << " MB/s (processor " << c3 - c2 << " s, " << savedMb / (c3 - c2)
              << " MB/s), peak resident " << peakSave << " MB\n";
    return 0;
}
