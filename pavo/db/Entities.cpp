// Lines, circles, arcs, polylines, points.
#include <cmath>

#include "DbInternal.h"
#include "Geometry.h"
#include "OxDbEntity.h"
#include "RxDefine.h"

OX_RX_DEFINE_MEMBERS(OxDbLine, OxDbEntity)
OX_RX_DEFINE_MEMBERS(OxDbCircle, OxDbEntity)
OX_RX_DEFINE_MEMBERS(OxDbArc, OxDbEntity)
OX_RX_DEFINE_MEMBERS(OxDbPolyline, OxDbEntity)
OX_RX_DEFINE_MEMBERS(OxDbPoint, OxDbEntity)

using namespace pavo::db;
namespace geom = pavo::db::geom;

// ------------------------------------------------------------ line

OxDbObject* OxDbLine::cloneState() const {
    auto* copy = new OxDbLine(m_start, m_end);
    copy->copyEntityProperties(*this);
    return copy;
}

Ox::ErrorStatus OxDbLine::setStartPoint(const OxGePoint3d& p) { return assignIf(writeCheck(), m_start, p); }
Ox::ErrorStatus OxDbLine::setEndPoint(const OxGePoint3d& p) { return assignIf(writeCheck(), m_end, p); }

double OxDbLine::distanceTo(const OxGePoint3d& p) const {
    return geom::distanceToSegment(p.x, p.y, m_start.x, m_start.y, m_end.x, m_end.y);
}

bool OxDbLine::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    geom::Box box;
    box.add(m_start.x, m_start.y);
    box.add(m_end.x, m_end.y);
    return box.store(lo, hi);
}

// ------------------------------------------------------------ circle

OxDbObject* OxDbCircle::cloneState() const {
    auto* copy = new OxDbCircle(m_center, m_radius);
    copy->copyEntityProperties(*this);
    return copy;
}

Ox::ErrorStatus OxDbCircle::setCenter(const OxGePoint3d& p) { return assignIf(writeCheck(), m_center, p); }

Ox::ErrorStatus OxDbCircle::setRadius(double r) {
    if (!(r > 0)) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_radius, r);
}

double OxDbCircle::distanceTo(const OxGePoint3d& p) const {
    return std::fabs(std::hypot(p.x - m_center.x, p.y - m_center.y) - m_radius);
}

bool OxDbCircle::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    geom::Box box;
    box.add(m_center.x - m_radius, m_center.y - m_radius);
    box.add(m_center.x + m_radius, m_center.y + m_radius);
    return box.store(lo, hi);
}

// ------------------------------------------------------------ arc

OxDbObject* OxDbArc::cloneState() const {
    auto* copy = new OxDbArc(m_center, m_radius, m_start, m_end);
    copy->copyEntityProperties(*this);
    return copy;
}

Ox::ErrorStatus OxDbArc::setCenter(const OxGePoint3d& p) { return assignIf(writeCheck(), m_center, p); }

Ox::ErrorStatus OxDbArc::setRadius(double r) {
    if (!(r > 0)) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_radius, r);
}

Ox::ErrorStatus OxDbArc::setStartAngle(double a) { return assignIf(writeCheck(), m_start, a); }
Ox::ErrorStatus OxDbArc::setEndAngle(double a) { return assignIf(writeCheck(), m_end, a); }

double OxDbArc::distanceTo(const OxGePoint3d& p) const {
    return geom::distanceToArc(p.x, p.y, m_center.x, m_center.y, m_radius, m_start, m_end);
}

bool OxDbArc::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    return geom::arcBox(m_center.x, m_center.y, m_radius, m_start, m_end).store(lo, hi);
}

// ------------------------------------------------------------ polyline

OxDbObject* OxDbPolyline::cloneState() const {
    auto* copy = new OxDbPolyline();
    copy->copyEntityProperties(*this);
    copy->m_vertices = m_vertices;
    copy->m_closed = m_closed;
    copy->m_elevation = m_elevation;
    copy->m_width = m_width;
    return copy;
}

Ox::ErrorStatus OxDbPolyline::addVertexAt(int index, const OxGePoint2d& p, double bulge) {
    if (index < 0 || index > numVerts()) return Ox::eOutOfRange;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_vertices.insert(m_vertices.begin() + index, Vertex{p, bulge});
    return Ox::eOk;
}

Ox::ErrorStatus OxDbPolyline::setVertices(std::vector<Vertex> vertices) {
    return assignIf(writeCheck(), m_vertices, std::move(vertices));
}

Ox::ErrorStatus OxDbPolyline::setClosed(bool closed) { return assignIf(writeCheck(), m_closed, closed); }
Ox::ErrorStatus OxDbPolyline::setElevation(double z) { return assignIf(writeCheck(), m_elevation, z); }

Ox::ErrorStatus OxDbPolyline::setConstantWidth(double w) {
    if (w < 0) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_width, w);
}

namespace {

// Calls `segment(a, b, bulge)` for each segment, the closing one included.
template <class F> void forEachSegment(const std::vector<OxDbPolyline::Vertex>& v, bool closed, F segment) {
    const size_t n = v.size();
    const size_t count = closed ? n : (n > 0 ? n - 1 : 0);
    for (size_t i = 0; i < count; ++i)
        segment(v[i].point, v[(i + 1) % n].point, v[i].bulge);
}

} // namespace

double OxDbPolyline::distanceTo(const OxGePoint3d& p) const {
    if (m_vertices.empty()) return HUGE_VAL;
    if (m_vertices.size() == 1) return std::hypot(p.x - m_vertices[0].point.x, p.y - m_vertices[0].point.y);
    double best = HUGE_VAL;
    forEachSegment(m_vertices, m_closed, [&](const OxGePoint2d& a, const OxGePoint2d& b, double bulge) {
        double cx, cy, r, start, end;
        const double d = geom::bulgeArc(a, b, bulge, cx, cy, r, start, end)
                             ? geom::distanceToArc(p.x, p.y, cx, cy, r, start, end)
                             : geom::distanceToSegment(p.x, p.y, a.x, a.y, b.x, b.y);
        best = std::min(best, d);
    });
    return best;
}

bool OxDbPolyline::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    geom::Box box;
    for (const Vertex& v : m_vertices)
        box.add(v.point.x, v.point.y);
    forEachSegment(m_vertices, m_closed, [&](const OxGePoint2d& a, const OxGePoint2d& b, double bulge) {
        double cx, cy, r, start, end;
        if (geom::bulgeArc(a, b, bulge, cx, cy, r, start, end)) box.add(geom::arcBox(cx, cy, r, start, end));
    });
    if (!box.store(lo, hi)) return false;
    lo.z = hi.z = m_elevation;
    return true;
}

// ------------------------------------------------------------ point

OxDbObject* OxDbPoint::cloneState() const {
    auto* copy = new OxDbPoint(m_position);
    copy->copyEntityProperties(*this);
    return copy;
}

Ox::ErrorStatus OxDbPoint::setPosition(const OxGePoint3d& p) { return assignIf(writeCheck(), m_position, p); }

double OxDbPoint::distanceTo(const OxGePoint3d& p) const { return std::hypot(p.x - m_position.x, p.y - m_position.y); }

bool OxDbPoint::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    lo = hi = m_position;
    return true;
}
