#include "PlotStyleChoices.h"

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbSymbolTable.h"
#include "PavoLayerHelper.h"
#include "TextScreenListing.h"
#include "oxed.h"

namespace vxlayer {

bool currentLayerPlotStyle(OxDbDatabase* db, OxString& name) {
    name.setEmpty();
    OxDbLayerTableRecord* layer = nullptr;
    if (!db || oxdbOpenObject(layer, db->clayer(), OxDb::kForRead) != Ox::eOk) return false;
    if (layer->plotStyleName(name) != Ox::eOk) name.setEmpty();
    layer->close();
    return true;
}

void listPlotStyleNames(const OxString& header) {
    TextScreenListing listing;
    oxutPrintf(header);
    OxArray<OxString> names;
    PavoLayerHelper::getAllPlotStyleName(names); // with none usable only the header shows
    for (const OxString& name : names)
        oxutPrintf(L"\n %ls", name);
}

void ensurePlotStyleEntry(OxDbDatabase* db, const OxString& name) {
    OxDbDictionary* dictionary = nullptr;
    if (!db || db->getPlotStyleNameDictionary(dictionary, OxDb::kForRead) != Ox::eOk || !dictionary) return;
    const bool present = dictionary->has(name);
    // Closed first: the entry is added through a write open.
    dictionary->close();
    if (!present) PavoLayerHelper::createPlotStye(name, db);
}

} // namespace vxlayer
