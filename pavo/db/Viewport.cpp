#include <algorithm>
#include <cmath>

#include "DbInternal.h"
#include "Geometry.h"
#include "OrderedCellSet.h"
#include "OxDbEntity.h"
#include "RxDefine.h"

OX_RX_DEFINE_MEMBERS(OxDbViewport, OxDbEntity)

using namespace pavo::db;
namespace geom = pavo::db::geom;

struct OxDbViewport::FrozenLayers : OrderedCellSet {};

OxDbViewport::OxDbViewport() : m_frozen(std::make_unique<FrozenLayers>()) {}
OxDbViewport::~OxDbViewport() = default;

OxDbObject* OxDbViewport::cloneState() const {
    auto* copy = new OxDbViewport();
    copy->copyEntityProperties(*this);
    copy->m_center = m_center;
    copy->m_width = m_width;
    copy->m_height = m_height;
    copy->m_number = m_number;
    copy->m_on = m_on;
    copy->m_displayLocked = m_displayLocked;
    copy->m_viewCenter = m_viewCenter;
    copy->m_viewHeight = m_viewHeight;
    copy->m_viewTarget = m_viewTarget;
    copy->m_viewDirection = m_viewDirection;
    copy->m_twist = m_twist;
    *copy->m_frozen = *m_frozen;
    return copy;
}

Ox::ErrorStatus OxDbViewport::setCenterPoint(const OxGePoint3d& p) { return assignIf(writeCheck(), m_center, p); }

Ox::ErrorStatus OxDbViewport::setWidth(double w) {
    if (!(w > 0)) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_width, w);
}

Ox::ErrorStatus OxDbViewport::setHeight(double h) {
    if (!(h > 0)) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_height, h);
}

Ox::ErrorStatus OxDbViewport::setNumber(short n) { return assignIf(writeCheck(), m_number, n); }
Ox::ErrorStatus OxDbViewport::setOn(bool on) { return assignIf(writeCheck(), m_on, on); }
Ox::ErrorStatus OxDbViewport::setLocked(bool locked) { return assignIf(writeCheck(), m_displayLocked, locked); }
Ox::ErrorStatus OxDbViewport::setViewCenter(const OxGePoint2d& p) { return assignIf(writeCheck(), m_viewCenter, p); }

Ox::ErrorStatus OxDbViewport::setViewHeight(double h) {
    if (!(h > 0)) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_viewHeight, h);
}

Ox::ErrorStatus OxDbViewport::setViewTarget(const OxGePoint3d& p) { return assignIf(writeCheck(), m_viewTarget, p); }

Ox::ErrorStatus OxDbViewport::setViewDirection(const OxGeVector3d& v) {
    if (v.x == 0 && v.y == 0 && v.z == 0) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_viewDirection, v);
}

Ox::ErrorStatus OxDbViewport::setTwistAngle(double a) { return assignIf(writeCheck(), m_twist, a); }

Ox::ErrorStatus OxDbViewport::getFrozenLayerList(OxDbObjectIdArray& ids) const {
    ids.removeAll();
    ids.setPhysicalLength(static_cast<int>(m_frozen->size()));
    m_frozen->forEach([&](OxDbCell* cell) { ids.append(OxDbObjectId(cell)); });
    return Ox::eOk;
}

Ox::ErrorStatus OxDbViewport::freezeLayersInViewport(const OxDbObjectIdArray& ids) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_frozen->reserve(static_cast<std::size_t>(ids.length()));
    for (const OxDbObjectId& id : ids)
        m_frozen->insert(id.cell());
    return Ox::eOk;
}

Ox::ErrorStatus OxDbViewport::thawLayersInViewport(const OxDbObjectIdArray& ids) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    for (const OxDbObjectId& id : ids)
        m_frozen->erase(id.cell());
    return Ox::eOk;
}

Ox::ErrorStatus OxDbViewport::thawAllLayersInViewport() {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_frozen->clear();
    return Ox::eOk;
}

bool OxDbViewport::isLayerFrozenInViewport(const OxDbObjectId& layerId) const {
    return m_frozen->contains(layerId.cell());
}

int OxDbViewport::numFrozenLayers() const { return static_cast<int>(m_frozen->size()); }

namespace {

geom::Box frame(const OxGePoint3d& c, double w, double h) {
    geom::Box box;
    box.add(c.x - w / 2, c.y - h / 2);
    box.add(c.x + w / 2, c.y + h / 2);
    return box;
}

} // namespace

// A viewport is picked by its frame.
double OxDbViewport::distanceTo(const OxGePoint3d& p) const {
    const geom::Box b = frame(m_center, m_width, m_height);
    return std::min({geom::distanceToSegment(p.x, p.y, b.minX, b.minY, b.maxX, b.minY),
                     geom::distanceToSegment(p.x, p.y, b.maxX, b.minY, b.maxX, b.maxY),
                     geom::distanceToSegment(p.x, p.y, b.maxX, b.maxY, b.minX, b.maxY),
                     geom::distanceToSegment(p.x, p.y, b.minX, b.maxY, b.minX, b.minY)});
}

bool OxDbViewport::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    return frame(m_center, m_width, m_height).store(lo, hi);
}
