#include "db/SpaceExtents.h"

#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbSymbolTable.h"
#include "db/PaperSpace.h"

namespace pavo::db {

std::optional<geom::Box> blockExtents(const OxDbObjectId& blockId) {
    OxDbBlockTableRecord* block = nullptr;
    if (oxdbOpenObject(block, blockId, OxDb::kForRead) != Ox::eOk) return std::nullopt;
    OxDbBlockTableRecordIterator* it = nullptr;
    const bool made = block->newIterator(it) == Ox::eOk;
    block->close();
    if (!made) return std::nullopt;
    geom::Box extents;
    for (it->start(); !it->done(); it->step()) {
        OxDbEntity* entity = nullptr;
        if (it->getEntity(entity, OxDb::kForRead) != Ox::eOk) continue;
        OxGePoint3d lo, hi;
        if (entity->getExtents(lo, hi)) {
            extents.add(lo.x, lo.y);
            extents.add(hi.x, hi.y);
        }
        entity->close();
    }
    delete it;
    if (extents.empty) return std::nullopt;
    return extents;
}

geom::Box sheetBox(const OxDbLayout& layout) {
    geom::Box box;
    OxDbViewport* sheet = nullptr;
    if (oxdbOpenObject(sheet, viewportNumbered(layout, 1), OxDb::kForRead) == Ox::eOk) {
        OxGePoint3d lo, hi;
        if (sheet->getExtents(lo, hi)) {
            box.add(lo.x, lo.y);
            box.add(hi.x, hi.y);
        }
        sheet->close();
    }
    if (box.empty) {
        box.add(0, 0);
        box.add(420, 297);
    }
    return box;
}

} // namespace pavo::db
