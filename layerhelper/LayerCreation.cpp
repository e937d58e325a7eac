// New layers with the module's defaults, and making a layer current.
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "PavoLayerHelper.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

// The "NORMAL" entry of the plot style name dictionary (null when missing).
OxDbObjectId normalPlotStyle(const OxDbObjectId& dictionaryId) {
    OxDbObjectId entry;
    OxDbDictionary* dictionary = nullptr;
    if (oxdbOpenObject(dictionary, dictionaryId, OxDb::kForRead) != Ox::eOk) return entry;
    dictionary->getAt(L"NORMAL", entry);
    dictionary->close();
    return entry;
}

} // namespace

OxDbObjectId PavoLayerHelper::createNewLayer(OxDbDatabase* db, OxDbLayerTable* table, OxString& name) {
    if (!db || !table) return OxDbObjectId();
    auto* layer = new OxDbLayerTableRecord();
    layer->setName(name);
    layer->setIsOff(false);
    layer->setIsFrozen(false);
    layer->setIsLocked(false);
    layer->setIsPlottable(true);
    layer->setLinetypeObjectId(OxDbSymbolUtilities::servicesPtr()->getLinetypeIdContinuous(db));
    layer->setLineWeight(OxDb::kLnWtByLwDefault);
    const OxDbObjectId plotStyleNames = db->getPlotStyleNameDictionaryId(true);
    if (!plotStyleNames.isNull()) layer->setPlotStyleName(normalPlotStyle(plotStyleNames));
    layer->setColor(OxCmColor::fromIndex(7));
    layer->setVPDFLT(false);
    layer->setDescription(L"");

    OxDbObjectId id;
    if (table->add(id, layer) != Ox::eOk) {
        delete layer; // never resident
        return OxDbObjectId();
    }
    layer->close();
    return id;
}

bool PavoLayerHelper::setCurrentLayer(OxDbDatabase* db, const OxDbObjectId& id) {
    if (!db) return false;
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) {
        // The database's own check decides.
        db->setClayer(id);
        return true;
    }
    if (layer->isDependent()) {
        oxutPrintf(oxmdOxResourceString(10106));
        layer->close();
        return false;
    }
    if (layer->isFrozen()) {
        oxutPrintf(oxmdOxResourceString(10107));
        layer->close();
        return false;
    }
    if (layer->isOff()) layer->setIsOff(false);
    layer->close();
    db->setClayer(id);
    return true;
}
