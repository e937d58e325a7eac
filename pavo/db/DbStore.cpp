#include "DbStore.h"

#include <algorithm>

#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "SymbolTableImpl.h"
#include "UndoHistory.h"

void pavo::db::OpenSet::insert(OxDbCell* cell) {
    if (cell->openSlot != kNoSlot) return;
    cell->openSlot = static_cast<std::uint32_t>(m_cells.size());
    m_cells.push_back(cell);
}

void pavo::db::OpenSet::erase(OxDbCell* cell) {
    const std::uint32_t slot = cell->openSlot;
    if (slot == kNoSlot || slot >= m_cells.size() || m_cells[slot] != cell) return;
    OxDbCell* last = m_cells.back();
    m_cells[slot] = last;
    last->openSlot = slot;
    m_cells.pop_back();
    cell->openSlot = kNoSlot;
}

void pavo::db::OpenSet::clear() {
    for (OxDbCell* cell : m_cells)
        cell->openSlot = kNoSlot;
    m_cells.clear();
}

namespace pavo::db {

OxDbCell* Store::cellForHandle(std::uint64_t handle) {
    if (handle == 0) return nullptr;
    if (OxDbCell* found = byHandle.find(handle)) return found;
    OxDbCell& cell = cells.emplace_back();
    cell.handle = handle;
    cell.database = database;
    byHandle.insert(handle, &cell, cells.size());
    nextHandle = std::max(nextHandle, handle + 1); // the last handle (+1 is 0) leaves it alone
    return &cell;
}

OxDbCell* Store::newCell() {
    // Past the last handle (a drawing may set the seed anywhere) the search
    // goes on from 1 for one that is free: handles never run out or wrap to 0.
    while (nextHandle == 0 || byHandle.contains(nextHandle))
        ++nextHandle;
    return cellForHandle(nextHandle);
}

OxDbObjectId Store::attach(OxDbObject* obj, const OxDbObjectId& owner, OxDbCell* cell) {
    if (!cell && pendingCell && !pendingCell->object) cell = pendingCell;
    pendingCell = nullptr;
    if (!cell || cell->object) cell = newCell();
    if (UndoHistory* history = database->impl()->recording) history->recordCreation(cell);
    cell->object.reset(obj);
    cell->cls = obj->isA();
    if (holdsKindOf(cell, OxDbBlockReference::desc())) referencesChanged();
    cell->owner = owner;
    obj->attachCell(cell);
    return OxDbObjectId(cell);
}

const std::vector<OxDbCell*>& Store::referencesTo(const OxDbCell* block) {
    if (!referenceIndexValid) {
        referenceIndex.clear();
        const OxDbCell* tableCell = database->blockTableId().cell();
        const auto* blocks = tableCell ? OxDbBlockTable::cast(tableCell->object.get()) : nullptr;
        for (const OxDbCell* blockCell : blocks ? blocks->impl()->records : std::vector<OxDbCell*>{}) {
            const auto* owner = OxDbBlockTableRecord::cast(blockCell->object.get());
            if (!owner) continue;
            // The cell says its object's class: the other entities, most of
            // a large drawing, are not touched.
            for (OxDbCell* cell : owner->impl()->entities)
                if (holdsKindOf(cell, OxDbBlockReference::desc()))
                    referenceIndex[static_cast<const OxDbBlockReference*>(cell->object.get())->blockTableRecord().cell()]
                        .push_back(cell);
        }
        referenceIndexValid = true;
    }
    static const std::vector<OxDbCell*> kNone;
    const auto found = referenceIndex.find(block);
    return found == referenceIndex.end() ? kNone : found->second;
}

} // namespace pavo::db
