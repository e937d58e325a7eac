// The canvas on Qt's painter: PNG (QImage), SVG (QSvgGenerator) and PDF
// (QPdfWriter) alike. Consecutive two-point lines of one stroke are drawn
// in one call, which is most of a large drawing.
#pragma once

#include <QPainter>
#include <QPainterPath>
#include <QVector>
#include <string>
#include <unordered_map>

#include "render/Canvas.h"

namespace pavo::render {

class QtCanvas final : public Canvas {
public:
    // `dotsPerMm`: device units per page millimetre; `pageHeightMm` turns
    // the page's y-up millimetres into the device's y-down units.
    QtCanvas(QPainter& painter, double dotsPerMm, double pageHeightMm);
    ~QtCanvas() override;
    void setClip(const PageRect* rect) override;
    void polyline(const Stroke& stroke, const PagePoint* points, std::size_t count, bool closed,
                  bool flatEnds) override;
    void dot(const Stroke& stroke, PagePoint at) override;
    void text(const Stroke& stroke, PagePoint at, double height, double angle, std::wstring_view text) override;
    // Draws what is waiting.
    void flush();
    // Lines of a dot or less are drawn without antialiasing from now on:
    // in a picture crowded with objects no one could tell, and they cost a
    // fifth less.
    void aliasHairlines() { m_aliasHairlines = true; }

private:
    QPointF device(PagePoint p) const { return {p.x * m_scale, (m_pageHeight - p.y) * m_scale}; }
    void usePen(const Stroke& stroke, Qt::PenCapStyle cap);

    QPainter& m_painter;
    double m_scale, m_pageHeight;
    Stroke m_pen;
    Qt::PenCapStyle m_cap = Qt::RoundCap;
    bool m_penSet = false, m_aliasHairlines = false, m_antialiased = true;
    QVector<QLineF> m_lines;
    QVector<QPointF> m_polyline;
    // Outlines of texts laid out once: drawings repeat their texts (room
    // names, tags), and laying out glyphs is most of a text's cost.
    std::unordered_map<std::wstring, QPainterPath> m_outlines;
};

} // namespace pavo::render
