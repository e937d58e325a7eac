#include "Geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavo::db::geom {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

double normalized(double angle) {
    angle = std::fmod(angle, kTwoPi);
    return angle < 0 ? angle + kTwoPi : angle;
}

bool angleOnArc(double angle, double start, double end) {
    const double sweep = normalized(end - start);
    return normalized(angle - start) <= (sweep == 0 ? kTwoPi : sweep);
}

} // namespace

void Box::add(double x, double y) {
    if (empty) {
        minX = maxX = x;
        minY = maxY = y;
        empty = false;
        return;
    }
    minX = std::min(minX, x);
    maxX = std::max(maxX, x);
    minY = std::min(minY, y);
    maxY = std::max(maxY, y);
}

void Box::add(const Box& other) {
    if (other.empty) return;
    add(other.minX, other.minY);
    add(other.maxX, other.maxY);
}

bool Box::store(OxGePoint3d& lo, OxGePoint3d& hi) const {
    if (empty) return false;
    lo = OxGePoint3d(minX, minY, 0);
    hi = OxGePoint3d(maxX, maxY, 0);
    return true;
}

double Box::distanceTo(double x, double y) const {
    if (empty) return HUGE_VAL;
    const double dx = std::max({minX - x, 0.0, x - maxX});
    const double dy = std::max({minY - y, 0.0, y - maxY});
    return std::hypot(dx, dy);
}

double distanceToSegment(double px, double py, double ax, double ay, double bx, double by) {
    const double dx = bx - ax, dy = by - ay;
    const double len2 = dx * dx + dy * dy;
    double t = len2 > 0 ? ((px - ax) * dx + (py - ay) * dy) / len2 : 0;
    t = std::clamp(t, 0.0, 1.0);
    return std::hypot(px - (ax + t * dx), py - (ay + t * dy));
}

double distanceToArc(double px, double py, double cx, double cy, double r, double start, double end) {
    const double angle = std::atan2(py - cy, px - cx);
    if (angleOnArc(angle, start, end)) return std::fabs(std::hypot(px - cx, py - cy) - r);
    const double d1 = std::hypot(px - (cx + r * std::cos(start)), py - (cy + r * std::sin(start)));
    const double d2 = std::hypot(px - (cx + r * std::cos(end)), py - (cy + r * std::sin(end)));
    return std::min(d1, d2);
}

Box arcBox(double cx, double cy, double r, double start, double end) {
    Box box;
    box.add(cx + r * std::cos(start), cy + r * std::sin(start));
    box.add(cx + r * std::cos(end), cy + r * std::sin(end));
    for (int quadrant = 0; quadrant < 4; ++quadrant) {
        const double angle = quadrant * std::numbers::pi / 2;
        if (angleOnArc(angle, start, end)) box.add(cx + r * std::cos(angle), cy + r * std::sin(angle));
    }
    return box;
}

bool bulgeArc(const OxGePoint2d& a, const OxGePoint2d& b, double bulge, double& cx, double& cy, double& r,
              double& start, double& end) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double chord = std::hypot(dx, dy);
    if (bulge == 0 || chord == 0) return false;
    // The centre lies on the chord's perpendicular, to the left for a
    // counter-clockwise (positive) bulge.
    const double offset = (1 - bulge * bulge) / (4 * bulge);
    cx = (a.x + b.x) / 2 - dy * offset;
    cy = (a.y + b.y) / 2 + dx * offset;
    r = std::hypot(a.x - cx, a.y - cy);
    start = std::atan2(a.y - cy, a.x - cx);
    end = std::atan2(b.y - cy, b.x - cx);
    if (bulge < 0) std::swap(start, end);
    return true;
}

} // namespace pavo::db::geom
