#include "db/EffectiveProperties.h"

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"

namespace pavo::db {

EffectiveProperties outsideBlocks(const OxDbDatabase* db) {
    EffectiveProperties p;
    p.color = OxCmColor::fromIndex(7);
    if (db) p.linetype = db->continuousLinetype();
    p.plotStyleByBlock = true;
    return p;
}

EffectiveProperties layerProperties(const OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId) {
    EffectiveProperties p;
    bool overridden = false;
    if (viewportId.isNull()) {
        p.color = layer.color();
        p.linetype = layer.linetypeObjectId();
        p.lineWeight = layer.lineWeight();
        p.transparency = layer.transparency();
        p.plotStyle = layer.plotStyleNameId();
    } else {
        p.color = layer.color(viewportId, overridden);
        p.linetype = layer.linetypeObjectId(viewportId, overridden);
        p.lineWeight = layer.lineWeight(viewportId, overridden);
        p.transparency = layer.transparency(viewportId, overridden);
        p.plotStyle = layer.plotStyleNameId(viewportId, overridden);
    }
    p.material = layer.materialId();
    return p;
}

EffectiveProperties effectiveProperties(const OxDbEntity& entity, const EffectiveProperties& layer,
                                        const EffectiveProperties& block) {
    const OxDbDatabase* db = entity.database();
    EffectiveProperties out;
    const OxCmColor color = entity.color();
    out.color = color.isByLayer() ? layer.color : color.isByBlock() ? block.color : color;
    const OxDbObjectId linetype = entity.linetypeId();
    out.linetype = db && linetype == db->byLayerLinetype()   ? layer.linetype
                   : db && linetype == db->byBlockLinetype() ? block.linetype
                                                             : linetype;
    const OxDb::LineWeight weight = entity.lineWeight();
    out.lineWeight = weight == OxDb::kLnWtByLayer ? layer.lineWeight : weight == OxDb::kLnWtByBlock ? block.lineWeight
                                                                                                      : weight;
    const OxCmTransparency t = entity.transparency();
    out.transparency = t.isByLayer() ? layer.transparency : t.isByBlock() ? block.transparency : t;
    OxDbObjectId styleId;
    switch (entity.getPlotStyleNameId(styleId)) {
    case OxDb::kPlotStyleNameByLayer:
        out.plotStyle = layer.plotStyle;
        out.plotStyleByBlock = layer.plotStyleByBlock;
        break;
    case OxDb::kPlotStyleNameByBlock:
        out.plotStyle = block.plotStyle;
        out.plotStyleByBlock = block.plotStyleByBlock;
        break;
    case OxDb::kPlotStyleNameIsDictDefault: break;
    case OxDb::kPlotStyleNameById: out.plotStyle = styleId; break;
    }
    const OxDbObjectId material = entity.materialId();
    out.material = db && material == db->byLayerMaterial()   ? layer.material
                   : db && material == db->byBlockMaterial() ? block.material
                                                             : material;
    return out;
}

EffectiveProperties effectiveProperties(const OxDbEntity& entity, const EffectiveProperties* enclosing,
                                        const OxDbObjectId& viewportId) {
    const EffectiveProperties outside = outsideBlocks(entity.database());
    EffectiveProperties layer = outside;
    OxDbLayerTableRecord* record = nullptr;
    if (oxdbOpenObject(record, entity.layerId(), OxDb::kForRead) == Ox::eOk) {
        layer = layerProperties(*record, viewportId);
        record->close();
    }
    return effectiveProperties(entity, layer, enclosing ? *enclosing : outside);
}

} // namespace pavo::db
