// New layers with the module's defaults, and making a layer current.
#include <new>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "LayerRecords.h"
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

OxDbLayerTableRecord* vxlayer::newLayerRecord(OxDbDatabase* db, const OxString& name) {
    // The host's heap, which the database frees objects to.
    void* memory = oxHeapAlloc(sizeof(OxDbLayerTableRecord));
    if (!memory) throw std::bad_alloc();
    auto* layer = new (memory) OxDbLayerTableRecord();
    layer->setName(name);
    layer->setIsOff(false);
    layer->setIsFrozen(false);
    layer->setIsLocked(false);
    layer->setIsPlottable(true);
    layer->setLinetypeObjectId(OxDbSymbolUtilities::servicesPtr()->getLinetypeIdContinuous(db));
    layer->setLineWeight(OxDb::kLnWtByLwDefault);
    return layer;
}

OxDbLayerTableRecord* vxlayer::newLayerWithDefaults(OxDbDatabase* db, const OxString& name, bool makePlotStyleNames) {
    OxDbLayerTableRecord* layer = newLayerRecord(db, name);
    const OxDbObjectId plotStyleNames = db->getPlotStyleNameDictionaryId(makePlotStyleNames);
    if (!plotStyleNames.isNull()) layer->setPlotStyleName(normalPlotStyle(plotStyleNames));
    layer->setColor(OxCmColor::fromIndex(7));
    layer->setVPDFLT(false);
    layer->setDescription(L"");
    return layer;
}

OxDbObjectId PavoLayerHelper::createNewLayer(OxDbDatabase* db, OxDbLayerTable* table, OxString& name) {
    if (!db || !table) return OxDbObjectId();
    OxDbLayerTableRecord* layer = vxlayer::newLayerWithDefaults(db, name);
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
