#include "PaperSpace.h"

#include <algorithm>

#include "DbInternal.h"
#include "DictionaryImpl.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbSymbolTable.h"
#include "SymbolTableImpl.h"

namespace pavo::db {

namespace {

OxDbDictionary* layoutsOf(const OxDbDatabase* db) {
    return db ? OxDbDictionary::cast(objectOf(db->layoutDictionaryId())) : nullptr;
}

const OxDbViewport* viewportOf(const OxDbObjectId& id) {
    const OxDbCell* cell = id.cell();
    return cell && !cell->erased ? OxDbViewport::cast(cell->object.get()) : nullptr;
}

// Switching viewports is where the user works, not a change of the drawing:
// the layout keeps it (and it is saved), but the drawing is not marked
// changed, so that looking into a viewport never asks for a save.
void setActive(OxDbLayout* layout, const OxDbObjectId& viewportId) {
    OxDbDatabase* db = layout->database();
    const bool modified = db->isModified();
    changeDirect(layout, [&](OxDbLayout& l) { l.setActiveViewportId(viewportId); });
    const OxDbViewport* viewport = viewportOf(viewportId);
    if (viewport && viewport->number() > 1) layout->setLastModelViewportId(viewportId);
    db->setModified(modified);
}

template <class Visit> void forEachViewport(const OxDbLayout& layout, Visit visit) {
    const auto* block = OxDbBlockTableRecord::cast(objectOf(layout.getBlockTableRecordId()));
    if (!block || layout.isModelLayout()) return;
    for (OxDbCell* cell : block->impl()->entities)
        if (const OxDbViewport* viewport = viewportOf(OxDbObjectId(cell))) visit(OxDbObjectId(cell), *viewport);
}

} // namespace

std::vector<OxDbLayout*> paperLayouts(const OxDbDatabase* db) {
    std::vector<OxDbLayout*> out;
    OxDbDictionary* layouts = layoutsOf(db);
    if (!layouts) return out;
    for (const auto& entry : layouts->impl()->entries) {
        auto* layout = OxDbLayout::cast(entry.cell->object.get());
        if (layout && !entry.cell->erased && !layout->isModelLayout()) out.push_back(layout);
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const OxDbLayout* a, const OxDbLayout* b) { return a->getTabOrder() < b->getTabOrder(); });
    return out;
}

OxDbLayout* currentPaperLayout(const OxDbDatabase* db) {
    auto* current = OxDbLayout::cast(objectOf(db->impl()->currentLayout));
    if (current && !current->isErased()) return current;
    auto all = paperLayouts(db);
    return all.empty() ? nullptr : all.front();
}

OxDbObjectId viewportNumbered(const OxDbLayout& layout, int number) {
    OxDbObjectId found;
    forEachViewport(layout, [&](const OxDbObjectId& id, const OxDbViewport& viewport) {
        if (found.isNull() && viewport.number() == number) found = id;
    });
    return found;
}

OxDbObjectId currentViewport(const OxDbDatabase* db) {
    if (!db || db->tilemode()) return OxDbObjectId();
    const OxDbLayout* layout = currentPaperLayout(db);
    if (!layout) return OxDbObjectId();
    // A file may name a viewport of another layout: that one is not here.
    const OxDbObjectId active = layout->activeViewportId();
    const OxDbViewport* viewport = viewportOf(active);
    if (viewport && viewport->ownerId() == layout->getBlockTableRecordId()) return active;
    return viewportNumbered(*layout, 1);
}

int currentViewportNumber(const OxDbDatabase* db) {
    if (!db || db->tilemode()) return 0;
    const OxDbViewport* viewport = viewportOf(currentViewport(db));
    return viewport ? viewport->number() : 1;
}

Ox::ErrorStatus makeViewportCurrent(OxDbDatabase* db, int number) {
    OxDbLayout* layout = db && !db->tilemode() ? currentPaperLayout(db) : nullptr;
    if (!layout) return Ox::eNotApplicable;
    const OxDbObjectId id = viewportNumbered(*layout, number);
    const OxDbViewport* viewport = viewportOf(id);
    if (!viewport) return Ox::eKeyNotFound;
    if (number > 1 && !viewport->isOn()) return Ox::eInvalidInput;
    setActive(layout, id);
    return Ox::eOk;
}

Ox::ErrorStatus enterPaperSpace(OxDbDatabase* db) { return makeViewportCurrent(db, 1); }

Ox::ErrorStatus enterModelSpace(OxDbDatabase* db) {
    OxDbLayout* layout = db && !db->tilemode() ? currentPaperLayout(db) : nullptr;
    if (!layout) return Ox::eNotApplicable;
    const auto usable = [](const OxDbViewport* v) { return v && v->number() > 1 && v->isOn(); };
    if (usable(viewportOf(currentViewport(db)))) return Ox::eOk;
    OxDbObjectId chosen = layout->lastModelViewportId();
    if (!usable(viewportOf(chosen))) {
        chosen.setNull();
        forEachViewport(*layout, [&](const OxDbObjectId& id, const OxDbViewport& viewport) {
            if (chosen.isNull() && usable(&viewport)) chosen = id;
        });
    }
    if (chosen.isNull()) return Ox::eKeyNotFound;
    setActive(layout, chosen);
    return Ox::eOk;
}

short nextViewportNumber(const OxDbLayout& layout) {
    int highest = 1;
    forEachViewport(layout, [&](const OxDbObjectId&, const OxDbViewport& viewport) {
        highest = std::max<int>(highest, viewport.number());
    });
    return static_cast<short>(std::min(highest + 1, 32767));
}

} // namespace pavo::db
