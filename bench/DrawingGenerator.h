// Makes large drawings for benchmarks: many layers, entities spread over
// model space, block definitions with references, layouts with viewports.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

class OxDbDatabase;

namespace pavobench {

struct DrawingSize {
    std::size_t layers = 1000;
    std::size_t entities = 10000;
    std::size_t blocks = 20;
    std::size_t layouts = 4;
    // Model viewports of each layout (numbered from 2; the sheet is 1).
    std::size_t viewportsPerLayout = 3;
    // Layers frozen in each model viewport, and layers with a colour and a
    // lineweight override there, picked at random.
    std::size_t frozenLayersPerViewport = 1;
    std::size_t overridesPerViewport = 0;
    // Every referenceEvery-th model-space entity is a block reference.
    std::size_t referenceEvery = 50;
    // Entities of each block definition; every nestedEvery-th definition
    // (0: none) holds, besides, a reference to the definition made before it.
    std::size_t blockEntities = 5;
    std::size_t nestedEvery = 0;
    // Every explicitEvery-th entity (0: none) has its own colour, linetype,
    // lineweight and transparency instead of ByLayer; inside definitions
    // they are ByBlock instead, and every other reference is red.
    std::size_t explicitEvery = 0;
    // Layer names as offices give them ("A-WALL-12", "E-LITE-40"; "DISC-3-LAYER-12"
    // otherwise), in an order that is not sorted, as a drawing that grew has
    // them; and model space of lines only.
    bool officeLayerNames = false;
    bool linesOnly = false;
};

// SETBYLAYER's drawing: 1,000,000 model-space entities of which 10,000 are
// references to 100 definitions of 100 entities, every tenth definition
// nesting another; `explicitEvery` as above.
DrawingSize setByLayerDrawingSize(std::size_t entities, std::size_t explicitEvery);

// The name of layer `i` (from 1) with officeLayerNames: discipline and major
// group, so that "A-*" names a seventh of the layers and "*WALL*" a
// seventeenth.
std::wstring officeLayerName(std::size_t i);

// Deterministic: the same size gives the same drawing.
std::unique_ptr<OxDbDatabase> generateDrawing(const DrawingSize& size);

} // namespace pavobench
