#include "render/QtCanvas.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainterPath>
#include <cmath>

namespace pavo::render {
namespace {

constexpr double kRadiansToDegrees = 57.29577951308232;
// Text is laid out at this size and scaled to its height.
constexpr int kLayoutPixels = 100;
// Texts smaller than this many device dots are drawn as a line along their
// baseline: no glyph could be read, and outlining them is slow.
constexpr double kSmallestReadable = 3;
// The outlines kept; a drawing of more different texts lays the rest out each time.
constexpr std::size_t kMostOutlines = 4096;
// Strokes up to this many device dots wide are drawn as separate segments
// with square ends, which Qt fills directly; wider ones go through its
// general stroker for round ends and joins, which at this width no one
// could tell from square ones.
constexpr double kThinStroke = 3;

// Each thread has its own font: Qt's fonts are not shared between threads.
const QFont& textFont() {
    thread_local const QFont font = [] {
        QFont f(QStringLiteral("DejaVu Sans"));
        f.setPixelSize(kLayoutPixels);
        f.setStyleStrategy(QFont::ForceOutline);
        return f;
    }();
    return font;
}

} // namespace

QtCanvas::QtCanvas(QPainter& painter, double dotsPerMm, double pageHeightMm)
    : m_painter(painter), m_scale(dotsPerMm), m_pageHeight(pageHeightMm) {
    m_painter.setRenderHint(QPainter::Antialiasing, true);
    m_painter.setBrush(Qt::NoBrush);
}

QtCanvas::~QtCanvas() { flush(); }

void QtCanvas::flush() {
    if (!m_lines.isEmpty()) m_painter.drawLines(m_lines);
    m_lines.clear();
}

void QtCanvas::usePen(const Stroke& stroke, Qt::PenCapStyle cap) {
    if (m_penSet && stroke == m_pen && cap == m_cap) return;
    flush();
    QPen pen(QColor(stroke.color.r, stroke.color.g, stroke.color.b, stroke.color.a));
    // Zero is the thinnest line the device draws.
    pen.setWidthF(stroke.width * m_scale);
    pen.setCapStyle(cap);
    pen.setJoinStyle(Qt::RoundJoin);
    if (const bool antialiased = !m_aliasHairlines || stroke.width * m_scale > 1; antialiased != m_antialiased) {
        m_painter.setRenderHint(QPainter::Antialiasing, antialiased);
        m_antialiased = antialiased;
    }
    m_painter.setPen(pen);
    m_pen = stroke;
    m_cap = cap;
    m_penSet = true;
}

void QtCanvas::setClip(const PageRect* rect) {
    flush();
    if (!rect) {
        m_painter.setClipping(false);
        return;
    }
    const QPointF a = device({rect->left, rect->top}), b = device({rect->right, rect->bottom});
    m_painter.setClipRect(QRectF(a, b));
}

void QtCanvas::polyline(const Stroke& stroke, const PagePoint* points, std::size_t count, bool closed,
                        bool flatEnds) {
    if (count < 2) return;
    const bool thin = stroke.width * m_scale <= kThinStroke;
    usePen(stroke, flatEnds ? Qt::FlatCap : thin ? Qt::SquareCap : Qt::RoundCap);
    // Segments of a translucent stroke would darken where they overlap.
    if ((count == 2 && !closed) || (thin && stroke.color.a == 255)) {
        QPointF from = device(points[0]);
        for (std::size_t i = 1; i < count; ++i) {
            const QPointF to = device(points[i]);
            m_lines.append(QLineF(from, to));
            from = to;
        }
        if (closed && count > 2) m_lines.append(QLineF(from, device(points[0])));
        return;
    }
    flush();
    m_polyline.resize(static_cast<int>(count));
    for (std::size_t i = 0; i < count; ++i) m_polyline[static_cast<int>(i)] = device(points[i]);
    if (closed)
        m_painter.drawPolygon(m_polyline.constData(), m_polyline.size());
    else
        m_painter.drawPolyline(m_polyline.constData(), m_polyline.size());
}

void QtCanvas::dot(const Stroke& stroke, PagePoint at) {
    flush();
    // A point is a round dot of the line's width, at least a device dot.
    const double radius = std::max(stroke.width * m_scale, 1.0) / 2;
    m_painter.save();
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(QColor(stroke.color.r, stroke.color.g, stroke.color.b, stroke.color.a));
    m_painter.drawEllipse(device(at), radius, radius);
    m_painter.restore();
}

void QtCanvas::text(const Stroke& stroke, PagePoint at, double height, double angle, std::wstring_view text) {
    const QFont& font = textFont();
    thread_local const double capHeight = QFontMetricsF(font).capHeight();
    if (!(capHeight > 0)) return;
    const double scale = height * m_scale / capHeight;
    auto known = m_outlines.find(std::wstring(text));
    QPainterPath made;
    const QPainterPath* outline = nullptr;
    if (known != m_outlines.end()) {
        outline = &known->second;
    } else {
        made.addText(0, 0, font, QString::fromWCharArray(text.data(), static_cast<int>(text.size())));
        outline = m_outlines.size() < kMostOutlines ? &m_outlines.emplace(std::wstring(text), made).first->second : &made;
    }
    if (height * m_scale < kSmallestReadable) {
        // A line as long as the text, as thick as its strokes would be.
        const double length = outline->boundingRect().right() * scale / m_scale;
        const PagePoint ends[2] = {at, {at.x + length * std::cos(angle), at.y + length * std::sin(angle)}};
        polyline({stroke.color, height / 6}, ends, 2, false, true);
        return;
    }
    flush();
    m_painter.save();
    m_painter.translate(device(at));
    m_painter.rotate(-angle * kRadiansToDegrees);
    m_painter.scale(scale, scale);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(QColor(stroke.color.r, stroke.color.g, stroke.color.b, stroke.color.a));
    m_painter.drawPath(*outline);
    m_painter.restore();
}

} // namespace pavo::render
