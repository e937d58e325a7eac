// Per-viewport overrides of layer properties.
#include <algorithm>

#include "DbInternal.h"
#include "OxDbSymbolTable.h"

using namespace pavo::db;

OxDbLayerViewportOverrides* OxDbLayerTableRecord::findOverrides(const OxDbObjectId& viewportId, bool create) {
    for (auto& o : m_overrides)
        if (o.viewportId == viewportId) return &o;
    if (!create) return nullptr;
    m_overrides.push_back(OxDbLayerViewportOverrides{});
    m_overrides.back().viewportId = viewportId;
    return &m_overrides.back();
}

const OxDbLayerViewportOverrides* OxDbLayerTableRecord::findOverrides(const OxDbObjectId& viewportId) const {
    for (const auto& o : m_overrides)
        if (o.viewportId == viewportId) return &o;
    return nullptr;
}

void OxDbLayerTableRecord::dropIfEmpty(const OxDbObjectId& viewportId) {
    std::erase_if(m_overrides,
                  [&](const OxDbLayerViewportOverrides& o) { return o.viewportId == viewportId && o.isEmpty(); });
}

void OxDbLayerTableRecord::setColor(const OxCmColor& color, const OxDbObjectId& viewportId) {
    if (viewportId.isNull() || !writeCheck()) return;
    auto* o = findOverrides(viewportId, true);
    o->hasColor = true;
    o->color = color;
}

OxCmColor OxDbLayerTableRecord::color(const OxDbObjectId& viewportId, bool& isOverride) const {
    const auto* o = findOverrides(viewportId);
    isOverride = o && o->hasColor;
    return isOverride ? o->color : m_color;
}

void OxDbLayerTableRecord::setLinetypeObjectId(const OxDbObjectId& id, const OxDbObjectId& viewportId) {
    if (viewportId.isNull() || !writeCheck()) return;
    auto* o = findOverrides(viewportId, true);
    o->hasLinetype = true;
    o->linetypeId = id;
}

OxDbObjectId OxDbLayerTableRecord::linetypeObjectId(const OxDbObjectId& viewportId, bool& isOverride) const {
    const auto* o = findOverrides(viewportId);
    isOverride = o && o->hasLinetype;
    return isOverride ? o->linetypeId : m_linetype;
}

Ox::ErrorStatus OxDbLayerTableRecord::setLineWeight(OxDb::LineWeight weight, const OxDbObjectId& viewportId) {
    if (viewportId.isNull()) return Ox::eNullObjectId;
    if (weight == OxDb::kLnWtByLayer || weight == OxDb::kLnWtByBlock) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    auto* o = findOverrides(viewportId, true);
    o->hasLineWeight = true;
    o->lineWeight = weight;
    return Ox::eOk;
}

OxDb::LineWeight OxDbLayerTableRecord::lineWeight(const OxDbObjectId& viewportId, bool& isOverride) const {
    const auto* o = findOverrides(viewportId);
    isOverride = o && o->hasLineWeight;
    return isOverride ? o->lineWeight : m_lineWeight;
}

Ox::ErrorStatus OxDbLayerTableRecord::setTransparency(const OxCmTransparency& t, const OxDbObjectId& viewportId) {
    if (viewportId.isNull()) return Ox::eNullObjectId;
    if (!t.isByAlpha()) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    auto* o = findOverrides(viewportId, true);
    o->hasTransparency = true;
    o->transparency = t;
    return Ox::eOk;
}

OxCmTransparency OxDbLayerTableRecord::transparency(const OxDbObjectId& viewportId, bool& isOverride) const {
    const auto* o = findOverrides(viewportId);
    isOverride = o && o->hasTransparency;
    return isOverride ? o->transparency : m_transparency;
}

Ox::ErrorStatus OxDbLayerTableRecord::setPlotStyleName(const OxDbObjectId& id, const OxDbObjectId& viewportId) {
    if (viewportId.isNull()) return Ox::eNullObjectId;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    auto* o = findOverrides(viewportId, true);
    o->hasPlotStyle = true;
    o->plotStyleNameId = id;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayerTableRecord::setPlotStyleName(const wchar_t* name, const OxDbObjectId& viewportId) {
    if (viewportId.isNull()) return Ox::eNullObjectId;
    if (!name || !*name) return Ox::eInvalidInput;
    if (!isWriteEnabled()) {
        writeCheck();
        return Ox::eNotOpenForWrite;
    }
    OxDbObjectId id;
    Ox::ErrorStatus es = plotStyleEntry(databaseOrWorking(this), name, id);
    return es == Ox::eOk ? setPlotStyleName(id, viewportId) : es;
}

OxDbObjectId OxDbLayerTableRecord::plotStyleNameId(const OxDbObjectId& viewportId, bool& isOverride) const {
    const auto* o = findOverrides(viewportId);
    isOverride = o && o->hasPlotStyle;
    return isOverride ? o->plotStyleNameId : m_plotStyle;
}

namespace {
template <class Clear> void removeOverride(OxDbLayerViewportOverrides* o, Clear clear) {
    if (o) clear(*o);
}
} // namespace

void OxDbLayerTableRecord::removeColorOverride(const OxDbObjectId& viewportId) {
    if (!writeCheck()) return;
    removeOverride(findOverrides(viewportId, false), [](auto& o) { o.hasColor = false; });
    dropIfEmpty(viewportId);
}

void OxDbLayerTableRecord::removeLinetypeOverride(const OxDbObjectId& viewportId) {
    if (!writeCheck()) return;
    removeOverride(findOverrides(viewportId, false), [](auto& o) { o.hasLinetype = false; });
    dropIfEmpty(viewportId);
}

void OxDbLayerTableRecord::removeLineWeightOverride(const OxDbObjectId& viewportId) {
    if (!writeCheck()) return;
    removeOverride(findOverrides(viewportId, false), [](auto& o) { o.hasLineWeight = false; });
    dropIfEmpty(viewportId);
}

void OxDbLayerTableRecord::removeTransparencyOverride(const OxDbObjectId& viewportId) {
    if (!writeCheck()) return;
    removeOverride(findOverrides(viewportId, false), [](auto& o) { o.hasTransparency = false; });
    dropIfEmpty(viewportId);
}

void OxDbLayerTableRecord::removePlotStyleOverride(const OxDbObjectId& viewportId) {
    if (!writeCheck()) return;
    removeOverride(findOverrides(viewportId, false), [](auto& o) { o.hasPlotStyle = false; });
    dropIfEmpty(viewportId);
}

void OxDbLayerTableRecord::removeViewportOverrides(const OxDbObjectId& viewportId) {
    if (!writeCheck()) return;
    std::erase_if(m_overrides, [&](const OxDbLayerViewportOverrides& o) { return o.viewportId == viewportId; });
}

void OxDbLayerTableRecord::removeAllOverrides() {
    if (writeCheck()) m_overrides.clear();
}

bool OxDbLayerTableRecord::hasOverrides(const OxDbObjectId& viewportId) const {
    const auto* o = findOverrides(viewportId);
    return o && !o->isEmpty();
}
