// What the drawing's walk draws on: strokes, dots and texts in paper
// millimetres (origin at the page's lower left corner, y up). The walk
// decides what shows and how (DrawingWalk); a canvas only paints, so one
// walk serves every kind of output (QtCanvas paints PNG, SVG and PDF).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pavo::render {

struct PagePoint {
    double x = 0, y = 0;
};

struct PageRect {
    double left = 0, bottom = 0, right = 0, top = 0;
};

struct Rgba {
    std::uint8_t r = 0, g = 0, b = 0, a = 255;
    bool operator==(const Rgba&) const = default;
};

struct Stroke {
    Rgba color;
    double width = 0; // page millimetres; 0 is the thinnest line the output draws
    bool operator==(const Stroke&) const = default;
};

class Canvas {
public:
    virtual ~Canvas() = default;
    // What is drawn next is cut to `rect`; null: to the page only.
    virtual void setClip(const PageRect* rect) = 0;
    // `flatEnds`: dashes end square at their points, so that gaps keep
    // their length; other lines end round.
    virtual void polyline(const Stroke& stroke, const PagePoint* points, std::size_t count, bool closed,
                          bool flatEnds) = 0;
    virtual void dot(const Stroke& stroke, PagePoint at) = 0;
    // A line of text from `at` on its baseline; `height` is the height of
    // capitals, `angle` counter-clockwise in radians.
    virtual void text(const Stroke& stroke, PagePoint at, double height, double angle, std::wstring_view text) = 0;
};

} // namespace pavo::render
