// Plane geometry for picking and extents.
#pragma once

#include "OxGe.h"

namespace pavo::db::geom {

// Growing axis-aligned box.
struct Box {
    double minX = 0, minY = 0, maxX = 0, maxY = 0;
    bool empty = true;
    void add(double x, double y);
    void add(const Box& other);
    // Writes the box into the two points (z 0); false when empty.
    bool store(OxGePoint3d& lo, OxGePoint3d& hi) const;
    // Distance from (x, y) to the box (0 inside).
    double distanceTo(double x, double y) const;
};

double distanceToSegment(double px, double py, double ax, double ay, double bx, double by);
// An arc counter-clockwise from `start` to `end` (radians).
double distanceToArc(double px, double py, double cx, double cy, double r, double start, double end);
Box arcBox(double cx, double cy, double r, double start, double end);

// The centre, radius and counter-clockwise angles of a polyline segment with
// a bulge (the tangent of a quarter of its included angle); false when the
// segment is straight.
bool bulgeArc(const OxGePoint2d& a, const OxGePoint2d& b, double bulge, double& cx, double& cy, double& r,
              double& start, double& end);

} // namespace pavo::db::geom
