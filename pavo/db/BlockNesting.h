// Blocks inserted in blocks. A block never inserts itself, directly or
// through other blocks: picking and measuring a reference walk what it
// inserts. The drawing reader checks a whole drawing once it is read (one
// pass); the database refuses a reference that would close a loop.
#pragma once

#include <string>
#include <vector>

#include "Geometry.h"
#include "OxDbObjectId.h"

class OxDbDatabase;

namespace pavo::db {

// The loop that a reference to `inserted` appended to `owner` would close:
// `owner`, `inserted`, the blocks through which `inserted` inserts `owner`,
// and `owner` again. Empty when there would be none.
std::vector<OxDbObjectId> loopIfInserted(const OxDbObjectId& owner, const OxDbObjectId& inserted);

// A loop of blocks inserting one another, its first block again at its end
// (A, B, A); empty when the drawing has none. Linear in the drawing's size.
std::vector<OxDbObjectId> findInsertionLoop(const OxDbDatabase& db);

// The names of a chain of blocks: A -> B -> A.
std::wstring blockChainText(const std::vector<OxDbObjectId>& chain);

// The extents of a block's entities (not erased) in the block's own
// coordinates, the blocks it inserts included. Each block met is measured
// once, without recursion, however deep the nesting.
geom::Box blockContentBox(const OxDbObjectId& block);

// `content` (a block's box) placed as a reference places its block.
geom::Box placedBox(const geom::Box& content, const OxGePoint3d& base, const OxGeScale3d& scale, double rotation,
                    const OxGePoint3d& at);

} // namespace pavo::db
