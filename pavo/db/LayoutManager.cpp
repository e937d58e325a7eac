// The layout manager: which layout is current, and making, renaming and
// deleting paper-space layouts.
#include <string>

#include "DbBuild.h"
#include "DbInternal.h"
#include "DictionaryImpl.h"
#include "ErasedReferences.h"
#include "LayoutManagerImpl.h"
#include "PaperSpace.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "SymbolTableImpl.h"
#include "base/CaseFold.h"

using namespace pavo::db;

OxDbLayoutManager::~OxDbLayoutManager() = default;

namespace {

OxDbDictionary* layoutsOf(const OxDbDatabase* db) {
    return db ? OxDbDictionary::cast(objectOf(db->layoutDictionaryId())) : nullptr;
}

std::wstring freePaperSpaceName(OxDbSymbolTable* blocks) {
    if (!blocks->impl()->find(L"*Paper_Space")) return L"*Paper_Space";
    for (int n = 0;; ++n) {
        std::wstring name = L"*Paper_Space" + std::to_wstring(n);
        if (!blocks->impl()->find(name)) return name;
    }
}

} // namespace

namespace pavo::db {

Ox::ErrorStatus createPaperLayout(OxDbDatabase* db, const wchar_t* name, OxDbObjectId& layoutId,
                                  OxDbObjectId& blockId) {
    auto* blocks = OxDbBlockTable::cast(objectOf(db->blockTableId()));
    OxDbDictionary* layouts = layoutsOf(db);
    if (!blocks || !layouts) return Ox::eNoDatabase;
    auto* block = new OxDbBlockTableRecord();
    block->setName(freePaperSpaceName(blocks).c_str());
    blockId = addRecordDirect(blocks, block);

    auto* layout = new OxDbLayout();
    layout->setLayoutName(name);
    layout->setTabOrder(layouts->numEntries());
    layout->setBlockTableRecordId(blockId);
    layoutId = dictionaryAddDirect(layouts, name, layout);
    changeDirect(block, [&](OxDbBlockTableRecord& b) { b.setLayoutId(layoutId); });

    // The layout's own paper-space view: a sheet of 420 x 297.
    auto* viewport = new OxDbViewport();
    viewport->setCenterPoint(OxGePoint3d(210, 148.5, 0));
    viewport->setWidth(420);
    viewport->setHeight(297);
    viewport->setViewCenter(OxGePoint2d(210, 148.5));
    viewport->setViewHeight(297);
    OxDbObjectId viewportId = appendEntityDirect(block, viewport);
    changeDirect(layout, [&](OxDbLayout& l) { l.setActiveViewportId(viewportId); });
    return Ox::eOk;
}

} // namespace pavo::db

OxDbDatabase* PavoLayoutManager::resolve(const OxDbDatabase* db) const {
    if (db) return const_cast<OxDbDatabase*>(db);
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

Ox::ErrorStatus PavoLayoutManager::getActiveLayoutName(OxString& name, bool allowModel, const OxDbDatabase* db) {
    name.setEmpty();
    OxDbDatabase* d = resolve(db);
    if (!d) return Ox::eNoDatabase;
    if (d->tilemode() && allowModel) {
        name = L"Model";
        return Ox::eOk;
    }
    OxDbLayout* layout = currentPaperLayout(d);
    if (!layout) return Ox::eKeyNotFound;
    return layout->getLayoutName(name);
}

OxDbObjectId PavoLayoutManager::getActiveLayoutBTRId(const OxDbDatabase* db) {
    OxDbDatabase* d = resolve(db);
    if (!d) return OxDbObjectId();
    if (d->tilemode()) return d->modelSpaceId();
    OxDbLayout* layout = currentPaperLayout(d);
    return layout ? layout->getBlockTableRecordId() : d->modelSpaceId();
}

Ox::ErrorStatus PavoLayoutManager::setCurrentLayout(const wchar_t* name, OxDbDatabase* db) {
    OxDbDatabase* d = resolve(db);
    if (!d) return Ox::eNoDatabase;
    if (!name) return Ox::eInvalidInput;
    auto* layout = OxDbLayout::cast(objectOf(findLayoutNamed(name, d)));
    if (!layout) return Ox::eKeyNotFound;
    if (layout->isModelLayout()) return d->setTilemode(true);
    d->impl()->currentLayout = layout->objectId();
    return d->setTilemode(false);
}

OxDbObjectId PavoLayoutManager::findLayoutNamed(const wchar_t* name, const OxDbDatabase* db) {
    OxDbDictionary* layouts = layoutsOf(resolve(db));
    OxDbObjectId id;
    if (layouts && name) layouts->getAt(name, id);
    return id;
}

bool PavoLayoutManager::layoutExists(const wchar_t* name, const OxDbDatabase* db) {
    return !findLayoutNamed(name, db).isNull();
}

int PavoLayoutManager::countLayouts(const OxDbDatabase* db) {
    OxDbDictionary* layouts = layoutsOf(resolve(db));
    return layouts ? layouts->numEntries() : 0;
}

Ox::ErrorStatus PavoLayoutManager::createLayout(const wchar_t* name, OxDbObjectId& layoutId, OxDbObjectId& blockId,
                                                OxDbDatabase* db) {
    layoutId.setNull();
    blockId.setNull();
    OxDbDatabase* d = resolve(db);
    if (!d) return Ox::eNoDatabase;
    if (!name || oxdbGetSymbolSvc()->checkSymbolName(name, false) != Ox::eOk) return Ox::eInvalidInput;
    if (layoutExists(name, d)) return Ox::eDuplicateKey;
    return createPaperLayout(d, name, layoutId, blockId);
}

Ox::ErrorStatus PavoLayoutManager::renameLayout(const wchar_t* oldName, const wchar_t* newName, OxDbDatabase* db) {
    OxDbDatabase* d = resolve(db);
    if (!d) return Ox::eNoDatabase;
    if (!newName || oxdbGetSymbolSvc()->checkSymbolName(newName, false) != Ox::eOk) return Ox::eInvalidInput;
    auto* layout = OxDbLayout::cast(objectOf(findLayoutNamed(oldName, d)));
    if (!layout) return Ox::eKeyNotFound;
    if (layout->isModelLayout()) return Ox::eNotApplicable;
    OxDbObjectId other = findLayoutNamed(newName, d);
    if (!other.isNull() && other != layout->objectId()) return Ox::eDuplicateKey;
    OxDbDictionary* layouts = layoutsOf(d);
    recordChange(layouts->cell());
    auto& entries = layouts->impl()->entries;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].cell != layout->cell()) continue;
        layouts->impl()->byKey.erase(pavo::foldCase(entries[i].key.view()));
        entries[i].key = newName;
        layouts->impl()->byKey[pavo::foldCase(entries[i].key.view())] = i;
    }
    changeDirect(layout, [&](OxDbLayout& l) { l.setLayoutName(newName); });
    d->setModified(true);
    return Ox::eOk;
}

Ox::ErrorStatus PavoLayoutManager::deleteLayout(const wchar_t* name, OxDbDatabase* db) {
    OxDbDatabase* d = resolve(db);
    if (!d) return Ox::eNoDatabase;
    auto* layout = OxDbLayout::cast(objectOf(findLayoutNamed(name, d)));
    if (!layout) return Ox::eKeyNotFound;
    if (layout->isModelLayout() || paperLayouts(d).size() < 2) return Ox::eNotApplicable;
    OxDbDictionary* layouts = layoutsOf(d);
    recordChange(layouts->cell());
    auto& entries = layouts->impl()->entries;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].cell != layout->cell()) continue;
        layouts->impl()->byKey.erase(pavo::foldCase(entries[i].key.view()));
        entries.erase(entries.begin() + static_cast<long>(i));
        layouts->impl()->reindexFrom(i);
        break;
    }
    if (auto* block = OxDbBlockTableRecord::cast(objectOf(layout->getBlockTableRecordId()))) {
        for (OxDbCell* cell : block->impl()->entities) {
            if (cell->erased) continue;
            setErasedDirect(OxDbObjectId(cell), true);
            dropReferencesTo(cell);
        }
        setErasedDirect(block->objectId(), true);
    }
    setErasedDirect(layout->objectId(), true);
    // The remaining tabs close the gap.
    int order = 1;
    for (OxDbLayout* other : paperLayouts(d)) {
        changeDirect(other, [&](OxDbLayout& l) { l.setTabOrder(order++); });
    }
    if (d->impl()->currentLayout == layout->objectId()) d->impl()->currentLayout = OxDbObjectId();
    d->setModified(true);
    return Ox::eOk;
}
