// pavo-generate: writes a large generated drawing, for benchmarks and for
// trying pavo on big files.
#include <cstdlib>
#include <iostream>
#include <string>

#include "DrawingGenerator.h"
#include "files/DrawingFile.h"
#include "pavo_host.h"

int main(int argc, char** argv) {
    // "--help" is a request, not a file to write.
    if (argc < 2 || argv[1][0] == '-') {
        std::cerr << "usage: pavo-generate OUTPUT.pvd [ENTITIES [LAYERS [LAYOUTS [VIEWPORTS [FROZEN [OVERRIDES]]]]]]\n";
        return 1;
    }
    pavobench::DrawingSize size;
    if (argc > 2) size.entities = std::strtoull(argv[2], nullptr, 10);
    size.layers = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : size.entities / 10 + 1;
    if (argc > 4) size.layouts = std::strtoull(argv[4], nullptr, 10);
    if (argc > 5) size.viewportsPerLayout = std::strtoull(argv[5], nullptr, 10);
    // Layers frozen in each viewport, and layers overridden there.
    if (argc > 6) size.frozenLayersPerViewport = std::strtoull(argv[6], nullptr, 10);
    if (argc > 7) size.overridesPerViewport = std::strtoull(argv[7], nullptr, 10);
    auto db = pavobench::generateDrawing(size);
    std::string error;
    if (!pavo::files::writeDrawingFile(*db, argv[1], error)) {
        std::cerr << "pavo-generate: " << error << "\n";
        return 1;
    }
    return 0;
}
