// Per-viewport overrides of layer properties.
#include "LayerOverrides.h"

#include "DbInternal.h"
#include "LineWeights.h"

using namespace pavo::db;

OxDbLayerTableRecord::OxDbLayerTableRecord() = default;
OxDbLayerTableRecord::~OxDbLayerTableRecord() = default;

OxDbLayerTableRecord::Overrides& OxDbLayerTableRecord::overridesForWrite() {
    if (!m_overrides) m_overrides = std::make_unique<Overrides>();
    return *m_overrides;
}

namespace {

// The override of `list` for `viewportId`, else the layer's own value.
template <class V>
V overrideOr(const OptionalViewportValues<V>* list, const OxDbObjectId& viewportId, const V& own, bool& isOverride) {
    const V* found = list ? list->find(viewportId) : nullptr;
    isOverride = found != nullptr;
    return found ? *found : own;
}

} // namespace

void OxDbLayerTableRecord::setColor(const OxCmColor& color, const OxDbObjectId& viewportId) {
    if (viewportId.isNull() || !writeCheck()) return;
    overridesForWrite().color.set(viewportId, color);
}

OxCmColor OxDbLayerTableRecord::color(const OxDbObjectId& viewportId, bool& isOverride) const {
    return overrideOr(m_overrides ? &m_overrides->color : nullptr, viewportId, m_color, isOverride);
}

void OxDbLayerTableRecord::setLinetypeObjectId(const OxDbObjectId& id, const OxDbObjectId& viewportId) {
    if (viewportId.isNull() || !writeCheck()) return;
    overridesForWrite().linetype.set(viewportId, id);
}

OxDbObjectId OxDbLayerTableRecord::linetypeObjectId(const OxDbObjectId& viewportId, bool& isOverride) const {
    return overrideOr(m_overrides ? &m_overrides->linetype : nullptr, viewportId, m_linetype, isOverride);
}

Ox::ErrorStatus OxDbLayerTableRecord::setLineWeight(OxDb::LineWeight weight, const OxDbObjectId& viewportId) {
    if (viewportId.isNull()) return Ox::eNullObjectId;
    if (!isLayerLineWeight(weight)) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    overridesForWrite().lineWeight.set(viewportId, weight);
    return Ox::eOk;
}

OxDb::LineWeight OxDbLayerTableRecord::lineWeight(const OxDbObjectId& viewportId, bool& isOverride) const {
    return overrideOr(m_overrides ? &m_overrides->lineWeight : nullptr, viewportId, m_lineWeight, isOverride);
}

Ox::ErrorStatus OxDbLayerTableRecord::setTransparency(const OxCmTransparency& t, const OxDbObjectId& viewportId) {
    if (viewportId.isNull()) return Ox::eNullObjectId;
    if (!t.isByAlpha()) return Ox::eInvalidInput;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    overridesForWrite().transparency.set(viewportId, t);
    return Ox::eOk;
}

OxCmTransparency OxDbLayerTableRecord::transparency(const OxDbObjectId& viewportId, bool& isOverride) const {
    return overrideOr(m_overrides ? &m_overrides->transparency : nullptr, viewportId, m_transparency, isOverride);
}

Ox::ErrorStatus OxDbLayerTableRecord::setPlotStyleName(const OxDbObjectId& id, const OxDbObjectId& viewportId) {
    if (viewportId.isNull()) return Ox::eNullObjectId;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    overridesForWrite().plotStyle.set(viewportId, id);
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
    return overrideOr(m_overrides ? &m_overrides->plotStyle : nullptr, viewportId, m_plotStyle, isOverride);
}

void OxDbLayerTableRecord::removeColorOverride(const OxDbObjectId& viewportId) {
    if (writeCheck() && m_overrides) m_overrides->color.remove(viewportId);
}
void OxDbLayerTableRecord::removeLinetypeOverride(const OxDbObjectId& viewportId) {
    if (writeCheck() && m_overrides) m_overrides->linetype.remove(viewportId);
}
void OxDbLayerTableRecord::removeLineWeightOverride(const OxDbObjectId& viewportId) {
    if (writeCheck() && m_overrides) m_overrides->lineWeight.remove(viewportId);
}
void OxDbLayerTableRecord::removeTransparencyOverride(const OxDbObjectId& viewportId) {
    if (writeCheck() && m_overrides) m_overrides->transparency.remove(viewportId);
}
void OxDbLayerTableRecord::removePlotStyleOverride(const OxDbObjectId& viewportId) {
    if (writeCheck() && m_overrides) m_overrides->plotStyle.remove(viewportId);
}

void OxDbLayerTableRecord::removeViewportOverrides(const OxDbObjectId& viewportId) {
    if (!writeCheck() || !m_overrides) return;
    m_overrides->color.remove(viewportId);
    m_overrides->linetype.remove(viewportId);
    m_overrides->lineWeight.remove(viewportId);
    m_overrides->transparency.remove(viewportId);
    m_overrides->plotStyle.remove(viewportId);
}

void OxDbLayerTableRecord::removeAllOverrides() {
    if (writeCheck()) m_overrides.reset();
}

bool OxDbLayerTableRecord::hasAnyOverrides() const { return m_overrides && !m_overrides->empty(); }

bool OxDbLayerTableRecord::hasOverrides(const OxDbObjectId& viewportId) const {
    return !viewportOverrides(viewportId).isEmpty();
}

OxDbLayerViewportOverrides OxDbLayerTableRecord::viewportOverrides(const OxDbObjectId& viewportId) const {
    OxDbLayerViewportOverrides o;
    o.viewportId = viewportId;
    if (!m_overrides) return o;
    const Overrides& all = *m_overrides;
    if (const auto* v = all.color.find(viewportId)) o.hasColor = true, o.color = *v;
    if (const auto* v = all.linetype.find(viewportId)) o.hasLinetype = true, o.linetypeId = *v;
    if (const auto* v = all.lineWeight.find(viewportId)) o.hasLineWeight = true, o.lineWeight = *v;
    if (const auto* v = all.transparency.find(viewportId)) o.hasTransparency = true, o.transparency = *v;
    if (const auto* v = all.plotStyle.find(viewportId)) o.hasPlotStyle = true, o.plotStyleNameId = *v;
    return o;
}

std::vector<OxDbLayerViewportOverrides> OxDbLayerTableRecord::viewportOverrides() const {
    // Each list is in viewport order: gather one entry per override, sort,
    // and merge those of the same viewport.
    std::vector<OxDbLayerViewportOverrides> parts;
    if (!m_overrides) return parts;
    const auto part = [&](const OxDbObjectId& viewport) -> OxDbLayerViewportOverrides& {
        parts.emplace_back();
        parts.back().viewportId = viewport;
        return parts.back();
    };
    const Overrides& all = *m_overrides;
    all.color.forEach([&](const OxDbObjectId& vp, const OxCmColor& v) {
        auto& o = part(vp);
        o.hasColor = true;
        o.color = v;
    });
    all.linetype.forEach([&](const OxDbObjectId& vp, const OxDbObjectId& v) {
        auto& o = part(vp);
        o.hasLinetype = true;
        o.linetypeId = v;
    });
    all.lineWeight.forEach([&](const OxDbObjectId& vp, const OxDb::LineWeight& v) {
        auto& o = part(vp);
        o.hasLineWeight = true;
        o.lineWeight = v;
    });
    all.transparency.forEach([&](const OxDbObjectId& vp, const OxCmTransparency& v) {
        auto& o = part(vp);
        o.hasTransparency = true;
        o.transparency = v;
    });
    all.plotStyle.forEach([&](const OxDbObjectId& vp, const OxDbObjectId& v) {
        auto& o = part(vp);
        o.hasPlotStyle = true;
        o.plotStyleNameId = v;
    });
    std::stable_sort(parts.begin(), parts.end(),
                     [](const auto& a, const auto& b) { return a.viewportId < b.viewportId; });
    std::vector<OxDbLayerViewportOverrides> merged;
    for (const OxDbLayerViewportOverrides& p : parts) {
        if (merged.empty() || merged.back().viewportId != p.viewportId) {
            merged.push_back(p);
            continue;
        }
        OxDbLayerViewportOverrides& o = merged.back();
        if (p.hasColor) o.hasColor = true, o.color = p.color;
        if (p.hasLinetype) o.hasLinetype = true, o.linetypeId = p.linetypeId;
        if (p.hasLineWeight) o.hasLineWeight = true, o.lineWeight = p.lineWeight;
        if (p.hasTransparency) o.hasTransparency = true, o.transparency = p.transparency;
        if (p.hasPlotStyle) o.hasPlotStyle = true, o.plotStyleNameId = p.plotStyleNameId;
    }
    return merged;
}
