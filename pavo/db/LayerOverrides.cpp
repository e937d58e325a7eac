// Per-viewport overrides of layer properties.
#include <algorithm>

#include "DbInternal.h"
#include "LineWeights.h"
#include "OxDbSymbolTable.h"

using namespace pavo::db;

// Entries are kept ordered by viewport id, so that a layer with overrides in
// many viewports finds one in O(log n); setting them for the viewports in
// the order of their ids (as "every viewport" gives them) appends. Removed
// overrides leave empty entries until those are the majority, so that
// removing them viewport by viewport does not shift the rest each time.
namespace {

auto byViewport(std::vector<OxDbLayerViewportOverrides>& list, const OxDbObjectId& viewportId) {
    return std::lower_bound(list.begin(), list.end(), viewportId,
                            [](const OxDbLayerViewportOverrides& o, const OxDbObjectId& id) { return o.viewportId < id; });
}

} // namespace

OxDbLayerViewportOverrides* OxDbLayerTableRecord::findOverrides(const OxDbObjectId& viewportId) {
    auto it = byViewport(m_overrides, viewportId);
    return it != m_overrides.end() && it->viewportId == viewportId ? &*it : nullptr;
}

const OxDbLayerViewportOverrides* OxDbLayerTableRecord::findOverrides(const OxDbObjectId& viewportId) const {
    return const_cast<OxDbLayerTableRecord*>(this)->findOverrides(viewportId);
}

OxDbLayerViewportOverrides* OxDbLayerTableRecord::overridesForWrite(const OxDbObjectId& viewportId) {
    auto it = byViewport(m_overrides, viewportId);
    if (it != m_overrides.end() && it->viewportId == viewportId) {
        if (it->isEmpty()) --m_emptyOverrides;
        return &*it;
    }
    it = m_overrides.insert(it, OxDbLayerViewportOverrides{});
    it->viewportId = viewportId;
    return &*it;
}

void OxDbLayerTableRecord::setColor(const OxCmColor& color, const OxDbObjectId& viewportId) {
    if (viewportId.isNull() || !writeCheck()) return;
    auto* o = overridesForWrite(viewportId);
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
    auto* o = overridesForWrite(viewportId);
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
    if (!isLayerLineWeight(weight)) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    auto* o = overridesForWrite(viewportId);
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
    auto* o = overridesForWrite(viewportId);
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
    auto* o = overridesForWrite(viewportId);
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

void OxDbLayerTableRecord::removeOverride(const OxDbObjectId& viewportId, bool OxDbLayerViewportOverrides::*flag) {
    if (!writeCheck()) return;
    OxDbLayerViewportOverrides* entry = findOverrides(viewportId);
    if (!entry || entry->isEmpty()) return;
    if (flag) {
        entry->*flag = false;
    } else {
        const OxDbObjectId viewport = entry->viewportId;
        *entry = OxDbLayerViewportOverrides();
        entry->viewportId = viewport;
    }
    if (!entry->isEmpty()) return;
    ++m_emptyOverrides;
    if (m_emptyOverrides >= 8 && 2 * m_emptyOverrides >= m_overrides.size()) {
        std::erase_if(m_overrides, [](const OxDbLayerViewportOverrides& o) { return o.isEmpty(); });
        m_emptyOverrides = 0;
    }
}

void OxDbLayerTableRecord::removeColorOverride(const OxDbObjectId& viewportId) {
    removeOverride(viewportId, &OxDbLayerViewportOverrides::hasColor);
}
void OxDbLayerTableRecord::removeLinetypeOverride(const OxDbObjectId& viewportId) {
    removeOverride(viewportId, &OxDbLayerViewportOverrides::hasLinetype);
}
void OxDbLayerTableRecord::removeLineWeightOverride(const OxDbObjectId& viewportId) {
    removeOverride(viewportId, &OxDbLayerViewportOverrides::hasLineWeight);
}
void OxDbLayerTableRecord::removeTransparencyOverride(const OxDbObjectId& viewportId) {
    removeOverride(viewportId, &OxDbLayerViewportOverrides::hasTransparency);
}
void OxDbLayerTableRecord::removePlotStyleOverride(const OxDbObjectId& viewportId) {
    removeOverride(viewportId, &OxDbLayerViewportOverrides::hasPlotStyle);
}
void OxDbLayerTableRecord::removeViewportOverrides(const OxDbObjectId& viewportId) {
    removeOverride(viewportId, nullptr);
}

void OxDbLayerTableRecord::removeAllOverrides() {
    if (!writeCheck()) return;
    m_overrides.clear();
    m_emptyOverrides = 0;
}

bool OxDbLayerTableRecord::hasOverrides(const OxDbObjectId& viewportId) const {
    const auto* o = findOverrides(viewportId);
    return o && !o->isEmpty();
}
