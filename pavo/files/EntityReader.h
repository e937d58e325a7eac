// The "layers" and "blocks" sections in two halves that may run on two
// threads: the readers walk the JSON and fill batches (layers and entities
// made, not resident), the builder makes them resident in file order. Only
// the builder touches the database until it has finished.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "files/EntityPipeline.h"
#include "files/ReadContext.h"

namespace pavo::files {

class EntityReader {
public:
    EntityReader(JsonIn& json, EntityPipeline& pipeline);
    ~EntityReader();
    // Reads item `index` of "blocks", with its entities, into the pipeline.
    bool readBlock(sj::value& v, std::uint32_t index);

private:
    struct Impl; // keeps its field buffers from one entity to the next
    std::unique_ptr<Impl> m_impl;
};

// Builds the layers and the blocks with their entities.
class EntityBuilder : public BatchBuilder {
public:
    // `ctx` is the builder's own: its errors and JSON pointers are its own.
    explicit EntityBuilder(ReadContext& ctx);
    ~EntityBuilder() override; // closes the tables and the last block
    bool build(EntityBatch& batch) override;
    // The layers to lock once the whole drawing is in.
    std::vector<OxDbObjectId> takeLockedLayers();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace pavo::files
