#include "DbInternal.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "RxDefine.h"

OX_RX_DEFINE_MEMBERS(OxDbEntity, OxDbObject)

using namespace pavo::db;

OxDbEntity::OxDbEntity() = default;
OxDbEntity::~OxDbEntity() = default;

Ox::ErrorStatus OxDbEntity::setLayer(const OxDbObjectId& layerId, bool) {
    if (layerId.isNull()) return Ox::eNullObjectId;
    if (layerId.isErased()) return Ox::eWasErased;
    // An id whose object is not read yet (a drawing being loaded) is taken
    // as it is; anything else must be a layer.
    const OxDbCell* target = layerId.cell();
    if (target->object && !holdsKindOf(target, OxDbLayerTableRecord::desc())) return Ox::eInvalidLayer;
    return assignIf(writeCheck(), m_layer, layerId);
}

Ox::ErrorStatus OxDbEntity::setLayer(const wchar_t* layerName, bool doSubents) {
    if (!layerName) return Ox::eInvalidInput;
    OxDbDatabase* db = databaseOrWorking(this);
    auto* layers = db ? OxDbLayerTable::cast(objectOf(db->layerTableId())) : nullptr;
    if (!layers) return Ox::eNoDatabase;
    OxDbObjectId id;
    if (layers->getIdAt(layerName, id) != Ox::eOk) return Ox::eKeyNotFound;
    return setLayer(id, doSubents);
}

Ox::ErrorStatus OxDbEntity::layer(OxString& name) const {
    const auto* record = OxDbLayerTableRecord::cast(objectOf(m_layer));
    if (!record) {
        name.setEmpty();
        return Ox::eKeyNotFound;
    }
    name = record->name();
    return Ox::eOk;
}

OxString OxDbEntity::layer() const {
    OxString name;
    layer(name);
    return name;
}

Ox::ErrorStatus OxDbEntity::setColor(const OxCmColor& color, bool) { return assignIf(writeCheck(), m_color, color); }

Ox::ErrorStatus OxDbEntity::setColorIndex(std::uint16_t index, bool doSubents) {
    return setColor(OxCmColor::fromIndex(index), doSubents);
}

Ox::ErrorStatus OxDbEntity::setLinetype(const OxDbObjectId& id, bool) { return assignIf(writeCheck(), m_linetype, id); }

Ox::ErrorStatus OxDbEntity::setLinetypeScale(double scale, bool) {
    if (!(scale > 0)) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_linetypeScale, scale);
}

Ox::ErrorStatus OxDbEntity::setLineWeight(OxDb::LineWeight weight, bool) {
    return assignIf(writeCheck(), m_lineWeight, weight);
}

OxDb::PlotStyleNameType OxDbEntity::getPlotStyleNameId(OxDbObjectId& id) const {
    id = m_plotStyleType == OxDb::kPlotStyleNameById ? m_plotStyle : OxDbObjectId();
    return static_cast<OxDb::PlotStyleNameType>(m_plotStyleType);
}

Ox::ErrorStatus OxDbEntity::setPlotStyleName(OxDb::PlotStyleNameType type, const OxDbObjectId& id, bool) {
    if (type == OxDb::kPlotStyleNameById && id.isNull()) return Ox::eNullObjectId;
    if (type < OxDb::kPlotStyleNameByLayer || type > OxDb::kPlotStyleNameIsDictDefault) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_plotStyleType = static_cast<std::uint8_t>(type);
    m_plotStyle = type == OxDb::kPlotStyleNameById ? id : OxDbObjectId();
    return Ox::eOk;
}

Ox::ErrorStatus OxDbEntity::setTransparency(const OxCmTransparency& t, bool) {
    return assignIf(writeCheck(), m_transparency, t);
}

Ox::ErrorStatus OxDbEntity::setMaterial(const OxDbObjectId& id, bool) { return assignIf(writeCheck(), m_material, id); }

Ox::ErrorStatus OxDbEntity::setVisibility(bool visible, bool) { return assignIf(writeCheck(), m_visible, visible); }

void OxDbEntity::copyEntityProperties(const OxDbEntity& from) {
    m_layer = from.m_layer;
    m_linetype = from.m_linetype;
    m_material = from.m_material;
    m_plotStyle = from.m_plotStyle;
    m_color = from.m_color;
    m_transparency = from.m_transparency;
    m_lineWeight = from.m_lineWeight;
    m_linetypeScale = from.m_linetypeScale;
    m_plotStyleType = from.m_plotStyleType;
    m_visible = from.m_visible;
}
