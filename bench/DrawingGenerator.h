// Makes large drawings for benchmarks: many layers, entities spread over
// model space, block definitions with references, layouts with viewports.
#pragma once

#include <cstddef>
#include <memory>

class OxDbDatabase;

namespace pavobench {

struct DrawingSize {
    std::size_t layers = 1000;
    std::size_t entities = 10000;
    std::size_t blocks = 20;
    std::size_t layouts = 4;
    std::size_t viewportsPerLayout = 3;
};

// Deterministic: the same size gives the same drawing.
std::unique_ptr<OxDbDatabase> generateDrawing(const DrawingSize& size);

} // namespace pavobench
