// pavo-drawing-stat: opens one drawing file as pavo does (read from disk
// into one buffer, then parsed into a database), saves it to memory, and
// reports the rates and the peak resident memory after each step. With an
// output path the saved text is written there too (to compare writers).
// With --load-only it stops after loading, without freeing the database, so
// that a profile of it shows the load alone.
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>

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
    const double c2 = cpuSeconds();
    const auto t2 = clock::now();
    const std::string saved = pavo::files::writeDrawing(*db);
    const auto t3 = clock::now();
    const double c3 = cpuSeconds();
    const double peakSave = peakMegabytes();
    const double save = std::chrono::duration<double>(t3 - t2).count();
    const double savedMb = static_cast<double>(saved.size()) / 1e6;
    std::cout << "file " << mb << " MB\nload " << load << " s, " << mb / load << " MB/s (processor " << c1 - c0
              << " s, " << mb / (c1 - c0) << " MB/s), peak resident " << peakLoad << " MB\nsave " << save << " s, "
              << savedMb / save << " MB/s (processor " << c3 - c2 << " s, " << savedMb / (c3 - c2)
              << " MB/s), peak resident " << peakSave << " MB\n";
    if (argc == 3) {
        std::ofstream out(argv[2], std::ios::binary);
        out.write(saved.data(), static_cast<std::streamsize>(saved.size()));
        if (!out) {
            std::cerr << argv[2] << ": cannot write\n";
            return 3;
        }
    }
    return 0;
}
