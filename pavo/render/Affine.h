// Plane affine maps: from a block's or a space's units to page millimetres.
#pragma once

#include <cmath>

#include "render/Canvas.h"

namespace pavo::render {

// x' = a x + b y + c, y' = d x + e y + f.
struct Affine {
    double a = 1, b = 0, c = 0, d = 0, e = 1, f = 0;

    static Affine translation(double x, double y) { return {1, 0, x, 0, 1, y}; }
    static Affine scaling(double sx, double sy) { return {sx, 0, 0, 0, sy, 0}; }
    static Affine rotation(double angle) {
        const double co = std::cos(angle), si = std::sin(angle);
        return {co, -si, 0, si, co, 0};
    }

    PagePoint operator()(double x, double y) const { return {a * x + b * y + c, d * x + e * y + f}; }
    // This map after `inner`.
    Affine operator*(const Affine& inner) const {
        return {a * inner.a + b * inner.d, a * inner.b + b * inner.e, a * inner.c + b * inner.f + c,
                d * inner.a + e * inner.d, d * inner.b + e * inner.e, d * inner.c + e * inner.f + f};
    }
    Affine inverse() const {
        const double det = a * e - b * d;
        if (det == 0) return {};
        const double ia = e / det, ib = -b / det, id = -d / det, ie = a / det;
        return {ia, ib, -(ia * c + ib * f), id, ie, -(id * c + ie * f)};
    }
    // How lengths grow on average (the square root of the area factor).
    double scale() const { return std::sqrt(std::abs(a * e - b * d)); }
};

} // namespace pavo::render
