#include "editor/SelectionSpace.h"

#include <algorithm>
#include <cmath>

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "db/PaperSpace.h"
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

OxDbObjectId currentModelViewport(OxDbDatabase& db) {
    return db.cvport() > 1 && !db.tilemode() ? pavo::db::currentViewport(&db) : OxDbObjectId();
}

bool ViewWindow::contains(const OxGePoint3d& p) const {
    // Into the window's own axes: turned back by the twist.
    const double dx = p.x - center.x, dy = p.y - center.y;
    const double c = std::cos(twist), s = std::sin(twist);
    const double u = dx * c + dy * s, v = -dx * s + dy * c;
    return std::abs(u) <= halfWidth && std::abs(v) <= halfHeight;
}

bool ViewWindow::touches(const OxGePoint3d& lo, const OxGePoint3d& hi) const {
    // Against the axis-aligned box around the (possibly turned) window.
    const double c = std::abs(std::cos(twist)), s = std::abs(std::sin(twist));
    const double rx = halfWidth * c + halfHeight * s, ry = halfWidth * s + halfHeight * c;
    return lo.x <= center.x + rx && hi.x >= center.x - rx && lo.y <= center.y + ry && hi.y >= center.y - ry;
}

std::optional<ViewWindow> viewWindowOf(const OxDbObjectId& viewportId) {
    OxDbViewport* viewport = nullptr;
    if (oxdbOpenObject(viewport, viewportId, OxDb::kForRead) != Ox::eOk) return std::nullopt;
    ViewWindow w;
    w.center = viewport->viewCenter();
    w.halfHeight = viewport->viewHeight() / 2;
    w.halfWidth = w.halfHeight * viewport->width() / viewport->height();
    w.twist = viewport->twistAngle();
    w.modelPerSheet = viewport->viewHeight() / viewport->height();
    viewport->close();
    return w;
}

PickableSpace::PickableSpace() : PickableSpace(oxdbHostApplicationServices()->workingDatabase()) {}

PickableSpace::PickableSpace(OxDbDatabase* db, Exclusions exclusions, bool lockedLayers)
    : m_db(db), m_exclusions(exclusions), m_lockedLayers(lockedLayers) {
    if (!m_db) return;
    m_space = m_db->currentSpaceId();
    m_viewport = currentModelViewport(*m_db);
    m_window = viewWindowOf(m_viewport);
}

bool PickableSpace::frozenInViewport(const OxDbObjectId& layerId) const {
    OxDbViewport* viewport = nullptr;
    if (oxdbOpenObject(viewport, m_viewport, OxDb::kForRead) != Ox::eOk) return false;
    const bool frozen = viewport->isLayerFrozenInViewport(layerId);
    viewport->close();
    return frozen;
}

bool PickableSpace::layerPickable(const OxDbObjectId& layerId) const {
    if (const auto found = m_layerCache.find(layerId); found != m_layerCache.end()) return found->second;
    bool pickable = false;
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, layerId, OxDb::kForRead) == Ox::eOk) {
        pickable = !((m_exclusions & PavoEntSelectorRequest::kExcludeOffLayers) && layer->isOff()) &&
                   !((m_exclusions & PavoEntSelectorRequest::kExcludeFrozenLayers) && layer->isFrozen()) &&
                   (m_lockedLayers || !layer->isLocked());
        layer->close();
    }
    if (pickable && (m_exclusions & PavoEntSelectorRequest::kExcludeFrozenInViewport)) pickable = !frozenInViewport(layerId);
    m_layerCache[layerId] = pickable;
    return pickable;
}

bool PickableSpace::entityPickable(const OxDbEntity& entity) const {
    if (!entity.visibility() || entity.blockId() != m_space || !layerPickable(entity.layerId())) return false;
    if (m_window) {
        OxGePoint3d lo, hi;
        if (!entity.getExtents(lo, hi) || !m_window->touches(lo, hi)) return false;
    }
    const OxDbViewport* viewport = OxDbViewport::cast(&entity);
    if (!viewport) return true;
    // A layout's own viewport is the sheet itself, not an object on it.
    if (viewport->number() == 1) return !(m_exclusions & PavoEntSelectorRequest::kExcludeSheet);
    return !(m_exclusions & PavoEntSelectorRequest::kExcludeViewports);
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

std::vector<OxDbObjectId> PickableSpace::allAt(const OxGePoint3d& point, double pickbox,
                                               const TypeFilter& filter) const {
    std::vector<OxDbObjectId> ids;
    // Outside the viewport's window the user points at the sheet, not into
    // the viewport.
    if (m_window && !m_window->contains(point)) return ids;
    const double reach = m_window ? pickbox * m_window->modelPerSheet : pickbox;
    forEach(filter, [&](const OxDbEntity& e) {
        if (e.distanceTo(point) <= reach) ids.push_back(e.objectId());
    });
    std::reverse(ids.begin(), ids.end());
    return ids;
}

std::optional<OxDbObjectId> PickableSpace::at(const OxGePoint3d& point, double pickbox,
                                              const TypeFilter& filter) const {
    const std::vector<OxDbObjectId> ids = allAt(point, pickbox, filter);
    if (ids.empty()) return std::nullopt;
    return ids.front();
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
