#include "render/DisplayList.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavo::render {
namespace {

// How far a text may reach from its start, in text heights a character:
// more than the widest letter of the text font, so that a text is never
// left out of a band it touches.
constexpr double kTextReachPerCharacter = 1.5;
// Larger runs of points or characters are not kept.
constexpr std::size_t kMostInOneItem = std::numeric_limits<std::uint32_t>::max();

// Reach heights rounded outwards to floats.
float below(double y) { return std::nextafter(static_cast<float>(y), -std::numeric_limits<float>::infinity()); }
float above(double y) { return std::nextafter(static_cast<float>(y), std::numeric_limits<float>::infinity()); }

} // namespace

DisplayList::Item DisplayList::drawn(Kind kind, const Stroke& stroke) {
    Item item;
    item.kind = kind;
    item.stroke = stroke;
    return item;
}

void DisplayList::add(Item item, const PagePoint* points, std::size_t count, double low, double high) {
    item.low = below(low);
    item.high = above(high);
    if (count > kMostInOneItem) {
        m_incomplete = true;
        return;
    }
    item.pointCount = static_cast<std::uint32_t>(count);
    if (count > 0) item.points = m_points.append(points, count);
    if ((count > 0 && !item.points) || !m_items.append(&item, 1)) m_incomplete = true;
}

void DisplayList::setClip(const PageRect* rect) {
    if (!rect) {
        add(drawn(Kind::NoClip, {}), nullptr, 0, 0, 0);
        return;
    }
    const PagePoint corners[2] = {{rect->left, rect->bottom}, {rect->right, rect->top}};
    add(drawn(Kind::Clip, {}), corners, 2, rect->bottom, rect->top);
}

void DisplayList::polyline(const Stroke& stroke, const PagePoint* points, std::size_t count, bool closed,
                           bool flatEnds) {
    if (count < 2) return;
    double low = points[0].y, high = points[0].y;
    for (std::size_t i = 1; i < count; ++i) {
        low = std::min(low, points[i].y);
        high = std::max(high, points[i].y);
    }
    Item item = drawn(closed ? Kind::ClosedPolyline : Kind::Polyline, stroke);
    item.flatEnds = flatEnds;
    // Square ends and joins reach out by less than the width.
    add(item, points, count, low - stroke.width, high + stroke.width);
}

void DisplayList::dot(const Stroke& stroke, PagePoint at) {
    add(drawn(Kind::Dot, stroke), &at, 1, at.y - stroke.width, at.y + stroke.width);
}

void DisplayList::text(const Stroke& stroke, PagePoint at, double height, double angle, std::wstring_view text) {
    if (text.empty()) return;
    if (text.size() > kMostInOneItem) {
        m_incomplete = true;
        return;
    }
    Item item = drawn(Kind::Text, stroke);
    item.characters = m_characters.append(text.data(), text.size());
    item.characterCount = static_cast<std::uint32_t>(text.size());
    if (!item.characters) {
        m_incomplete = true;
        return;
    }
    const double reach = height * (kTextReachPerCharacter * static_cast<double>(text.size()) + 1);
    const PagePoint place[2] = {at, {height, angle}};
    add(item, place, 2, at.y - reach, at.y + reach);
}

void DisplayList::replay(Canvas& canvas, double bottom, double top) const {
    m_items.forEach([&](const Item& item) {
        switch (item.kind) {
        case Kind::Clip: {
            const PageRect rect{item.points[0].x, item.points[0].y, item.points[1].x, item.points[1].y};
            canvas.setClip(&rect);
            return;
        }
        case Kind::NoClip: canvas.setClip(nullptr); return;
        default: break;
        }
        if (item.high < bottom || item.low > top) return;
        switch (item.kind) {
        case Kind::Polyline:
        case Kind::ClosedPolyline:
            canvas.polyline(item.stroke, item.points, item.pointCount, item.kind == Kind::ClosedPolyline,
                            item.flatEnds);
            break;
        case Kind::Dot: canvas.dot(item.stroke, item.points[0]); break;
        case Kind::Text:
            canvas.text(item.stroke, item.points[0], item.points[1].x, item.points[1].y,
                        std::wstring_view(item.characters, item.characterCount));
            break;
        default: break;
        }
    });
}

} // namespace pavo::render
