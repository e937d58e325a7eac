// Reads the entities of a block's "entities" array.
#pragma once

#include <memory>

#include "files/ReadContext.h"

namespace pavo::files {

class EntityReader {
public:
    explicit EntityReader(ReadContext& ctx);
    ~EntityReader();
    // Reads one entity and appends it (with its attributes) to `block`.
    bool read(sj::value& v, OxDbBlockTableRecord& block);

private:
    struct Impl; // keeps its field buffers from one entity to the next
    std::unique_ptr<Impl> m_impl;
};

} // namespace pavo::files
