// pavo-drawing-stat: loads and saves one drawing file and reports the rates
// and the peak resident memory of the whole run.
#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <sstream>

#include "files/DrawingFile.h"
#include "pavo_host.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: pavo-drawing-stat FILE.pvd\n";
        return 1;
    }
    std::ifstream in(argv[1], std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    const std::string text = content.str();
    using clock = std::chrono::steady_clock;
    const auto t0 = clock::now();
    pavo::files::LoadError error;
    auto db = pavo::files::readDrawing(text, argv[1], error);
    const auto t1 = clock::now();
    if (!db) {
        std::cerr << error.message() << "\n";
        return 2;
    }
    const std::string saved = pavo::files::writeDrawing(*db);
    const auto t2 = clock::now();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const double mb = static_cast<double>(text.size()) / 1e6;
    const double load = std::chrono::duration<double>(t1 - t0).count();
    const double save = std::chrono::duration<double>(t2 - t1).count();
    std::cout << "file " << mb << " MB\nload " << load << " s, " << mb / load << " MB/s\nsave " << save << " s, "
              << static_cast<double>(saved.size()) / 1e6 / save << " MB/s\npeak resident "
              << static_cast<double>(usage.ru_maxrss) / 1024.0 << " MB\n";
    return 0;
}
