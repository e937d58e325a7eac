#include "editor/SelectionSpace.h"

#include <algorithm>

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "oxut.h"

namespace pavo::editor::selection {

std::wstring entityTypeName(const OxDbEntity& entity) {
    const OxRxClass* cls = entity.isA();
    if (cls == OxDbLine::desc()) return L"LINE";
    if (cls == OxDbCircle::desc()) return L"CIRCLE";
    if (cls == OxDbArc::desc()) return L"ARC";
    if (cls == OxDbPolyline::desc()) return L"LWPOLYLINE";
    if (cls == OxDbPoint::desc()) return L"POINT";
    if (cls == OxDbText::desc()) return L"TEXT";
    if (cls == OxDbAttributeDefinition::desc()) return L"ATTDEF";
    if (cls == OxDbAttribute::desc()) return L"ATTRIB";
    if (cls == OxDbBlockReference::desc()) return L"INSERT";
    if (cls == OxDbViewport::desc()) return L"VIEWPORT";
    return cls ? cls->name() : L"";
}

TypeFilter::TypeFilter(const resbuf* list) {
    for (const resbuf* rb = list; rb; rb = rb->rbnext)
        if (rb->restype == RTDXF0 && rb->resval.rstring) m_patterns.emplace_back(rb->resval.rstring);
}

bool TypeFilter::accepts(const OxDbEntity& entity) const {
    if (m_patterns.empty()) return true;
    const std::wstring name = entityTypeName(entity);
    return std::any_of(m_patterns.begin(), m_patterns.end(),
                       [&](const std::wstring& p) { return oxutWcMatchEx(name.c_str(), p.c_str(), true); });
}

OxDbObjectIdArray currentLayoutViewports(OxDbDatabase& db, OxDbObjectId* activeViewport) {
    if (activeViewport) activeViewport->setNull();
    if (db.tilemode()) return OxDbObjectIdArray();
    OxDbLayoutManager* layouts = oxdbHostApplicationServices()->layoutManager();
    if (!layouts) return OxDbObjectIdArray();
    OxDbBlockTableRecord* block = nullptr;
    if (oxdbOpenObject(block, layouts->getActiveLayoutBTRId(&db), OxDb::kForRead) != Ox::eOk)
        return OxDbObjectIdArray();
    const OxDbObjectId layoutId = block->getLayoutId();
    block->close();
    OxDbLayout* layout = nullptr;
    if (oxdbOpenObject(layout, layoutId, OxDb::kForRead) != Ox::eOk) return OxDbObjectIdArray();
    OxDbObjectIdArray viewports = layout->getViewportArray();
    if (activeViewport) *activeViewport = layout->activeViewportId();
    layout->close();
    return viewports;
}

OxDbObjectId currentModelViewport(OxDbDatabase& db) {
    if (db.tilemode() || db.cvport() <= 1) return OxDbObjectId();
    for (const OxDbObjectId& id : currentLayoutViewports(db)) {
        OxDbViewport* viewport = nullptr;
        if (oxdbOpenObject(viewport, id, OxDb::kForRead) != Ox::eOk) continue;
        const bool current = viewport->number() == db.cvport();
        viewport->close();
        if (current) return id;
    }
    return OxDbObjectId();
}

PickableSpace::PickableSpace() : PickableSpace(oxdbHostApplicationServices()->workingDatabase()) {}

PickableSpace::PickableSpace(OxDbDatabase* db) : m_db(db) {
    if (!m_db) return;
    m_space = m_db->currentSpaceId();
    OxDbViewport* viewport = nullptr;
    if (oxdbOpenObject(viewport, currentModelViewport(*m_db), OxDb::kForRead) == Ox::eOk) {
        viewport->getFrozenLayerList(m_frozenInViewport);
        viewport->close();
    }
}

bool PickableSpace::layerPickable(const OxDbObjectId& layerId) const {
    if (const auto found = m_layerCache.find(layerId); found != m_layerCache.end()) return found->second;
    bool pickable = false;
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, layerId, OxDb::kForRead) == Ox::eOk) {
        pickable = !layer->isOff() && !layer->isFrozen();
        layer->close();
    }
    pickable = pickable && !m_frozenInViewport.contains(layerId);
    m_layerCache[layerId] = pickable;
    return pickable;
}

bool PickableSpace::entityPickable(const OxDbEntity& entity) const {
    if (!entity.visibility() || entity.blockId() != m_space || !layerPickable(entity.layerId())) return false;
    // A layout's own viewport is the sheet itself, not an object on it.
    const OxDbViewport* viewport = OxDbViewport::cast(&entity);
    return !viewport || viewport->number() != 1;
}

void PickableSpace::forEach(const TypeFilter& filter, const std::function<void(const OxDbEntity&)>& visit) const {
    OxDbBlockTableRecord* block = nullptr;
    if (!m_db || oxdbOpenObject(block, m_space, OxDb::kForRead) != Ox::eOk) return;
    OxDbBlockTableRecordIterator* it = nullptr;
    const bool made = block->newIterator(it) == Ox::eOk;
    block->close();
    if (!made) return;
    for (it->start(); !it->done(); it->step()) {
        OxDbEntity* entity = nullptr;
        if (it->getEntity(entity, OxDb::kForRead) != Ox::eOk) continue;
        if (entityPickable(*entity) && filter.accepts(*entity)) visit(*entity);
        entity->close();
    }
    delete it;
}

bool PickableSpace::isPickable(const OxDbObjectId& id, const TypeFilter& filter) const {
    OxDbEntity* entity = nullptr;
    if (id.isNull() || id.database() != m_db || oxdbOpenObject(entity, id, OxDb::kForRead) != Ox::eOk) return false;
    const bool pickable = entityPickable(*entity) && filter.accepts(*entity);
    entity->close();
    return pickable;
}

std::vector<OxDbObjectId> PickableSpace::entities(const TypeFilter& filter) const {
    std::vector<OxDbObjectId> ids;
    forEach(filter, [&](const OxDbEntity& e) { ids.push_back(e.objectId()); });
    return ids;
}

std::optional<OxDbObjectId> PickableSpace::at(const OxGePoint3d& point, double pickbox,
                                              const TypeFilter& filter) const {
    std::optional<OxDbObjectId> topmost;
    forEach(filter, [&](const OxDbEntity& e) {
        if (e.distanceTo(point) <= pickbox) topmost = e.objectId();
    });
    return topmost;
}

std::vector<OxDbObjectId> PickableSpace::inWindow(const OxGePoint3d& corner1, const OxGePoint3d& corner2, bool crossing,
                                                  const TypeFilter& filter) const {
    const double x0 = std::min(corner1.x, corner2.x), x1 = std::max(corner1.x, corner2.x);
    const double y0 = std::min(corner1.y, corner2.y), y1 = std::max(corner1.y, corner2.y);
    std::vector<OxDbObjectId> ids;
    forEach(filter, [&](const OxDbEntity& e) {
        OxGePoint3d lo, hi;
        if (!e.getExtents(lo, hi)) return;
        const bool inside = lo.x >= x0 && hi.x <= x1 && lo.y >= y0 && hi.y <= y1;
        const bool touches = lo.x <= x1 && hi.x >= x0 && lo.y <= y1 && hi.y >= y0;
        if (inside || (crossing && touches)) ids.push_back(e.objectId());
    });
    return ids;
}

} // namespace pavo::editor::selection
