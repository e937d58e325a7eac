// The plot style names a drawing can use, and entries of its plot style
// name dictionary.
#include "HostVariables.h"
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "PavoLayerHelper.h"
#include "PavoPlotStyles.h"
#include "oxstatus.h"

namespace {

// The plot style table file named by the active layout; empty when the
// layout or its block cannot be opened.
OxString activeStyleSheet(OxDbLayoutManager* layouts) {
    OxDbObjectId layoutId;
    OxDbBlockTableRecord* block = nullptr;
    if (oxdbOpenObject(block, layouts->getActiveLayoutBTRId(nullptr), OxDb::kForRead) == Ox::eOk) {
        layoutId = block->getLayoutId();
        block->close();
    }
    OxString sheet;
    OxDbLayout* layout = nullptr;
    if (oxdbOpenObject(layout, layoutId, OxDb::kForRead) == Ox::eOk) {
        layout->getCurrentStyleSheet(sheet);
        layout->close();
    }
    return sheet;
}

bool containsExactly(const OxArray<OxString>& names, const wchar_t* name) {
    for (const OxString& existing : names)
        if (existing == name) return true;
    return false;
}

// Appends the styles of the table file `sheet`; a missing or unreadable
// table adds nothing.
void appendTableStyles(const OxString& sheet, OxDbDatabase* db, OxArray<OxString>& names) {
    const OxString path = searchPrintstylePath(sheet.kwszPtr(), db);
    PavoPlotStyleTable* table = nullptr;
    if (!PavoPlotManager::LoadPlotStyleTable(path.kwszPtr(), table) || !table) return;
    for (int i = 0; i < table->count(); ++i) {
        const PavoPlotStyle* style = table->getPlotStyleAt(i);
        if (!style) continue;
        // Names differing only in letter case are distinct table entries.
        if (!containsExactly(names, style->getName())) names.append(OxString(style->getName()));
    }
    delete table;
}

} // namespace

int PavoLayerHelper::getAllPlotStyleName(OxArray<OxString>& names) {
    int pstylemode = 0;
    if (!vxlayer::readIntVariable(L"PSTYLEMODE", pstylemode) || pstylemode == 1) return STATUS_ERROR;
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    OxDbDatabase* db = services ? services->workingDatabase() : nullptr;
    OxDbLayoutManager* layouts = services ? services->layoutManager() : nullptr;
    if (!db || !layouts) return STATUS_ERROR;

    const OxString sheet = activeStyleSheet(layouts);
    OxDbDictionary* dictionary = nullptr;
    if (db->getPlotStyleNameDictionary(dictionary, OxDb::kForRead) != Ox::eOk || !dictionary) return STATUS_ERROR;
    // Only the dictionary's first entry is usable on its own; the others
    // count when the table holds them.
    if (OxDbDictionaryIterator* it = dictionary->newIterator()) {
        if (!it->done() && it->name()) names.append(OxString(it->name()));
        delete it;
    }
    appendTableStyles(sheet, db, names);
    dictionary->close();
    return STATUS_NORMAL;
}

bool PavoLayerHelper::isValidPlotStyleName(const wchar_t* name) {
    OxArray<OxString> names;
    getAllPlotStyleName(names);
    for (const OxString& usable : names)
        if (usable.compareNoCase(name) == 0) return true;
    return false;
}

OxDbObjectId PavoLayerHelper::createPlotStye(const wchar_t* name, OxDbDatabase* db) {
    OxDbObjectId id;
    OxDbDictionary* dictionary = nullptr;
    if (!db || db->getPlotStyleNameDictionary(dictionary, OxDb::kForWrite) != Ox::eOk || !dictionary) return id;
    if (dictionary->getAt(name, id) != Ox::eOk) {
        auto* placeHolder = new OxDbPlaceHolder();
        if (dictionary->setAt(name, placeHolder, id) == Ox::eOk)
            placeHolder->close();
        else
            delete placeHolder; // never resident
    }
    dictionary->close();
    return id;
}
