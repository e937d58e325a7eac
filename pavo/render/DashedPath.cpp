#include "render/DashedPath.h"

#include <cmath>

namespace pavo::render {
namespace {

// More dashes than this on one object draw it continuous: they would be
// too fine to see on any page this program makes.
constexpr double kMostRepeats = 20000;

class Dasher {
public:
    Dasher(Canvas& canvas, const Look& look, double scale)
        : m_canvas(canvas), m_stroke(look.stroke), m_pattern(*look.pattern), m_scale(scale) {
        m_left = std::abs(m_pattern[0]) * m_scale;
    }

    void walk(PagePoint from, PagePoint to) {
        double length = std::hypot(to.x - from.x, to.y - from.y);
        double done = 0;
        while (length - done > 0) {
            const double step = std::min(m_left, length - done);
            const double t0 = done / length, t1 = (done + step) / length;
            const PagePoint a{from.x + (to.x - from.x) * t0, from.y + (to.y - from.y) * t0};
            const PagePoint b{from.x + (to.x - from.x) * t1, from.y + (to.y - from.y) * t1};
            const double element = m_pattern[m_index];
            if (element > 0) {
                if (m_dash.empty()) m_dash.push_back(a);
                m_dash.push_back(b);
            } else if (element == 0) {
                m_canvas.dot(m_stroke, a);
            }
            done += step;
            m_left -= step;
            if (m_left <= 1e-12) next();
        }
    }

    void finish() { emitDash(); }

private:
    void next() {
        if (m_pattern[m_index] > 0) emitDash();
        m_index = (m_index + 1) % m_pattern.size();
        m_left = std::abs(m_pattern[m_index]) * m_scale;
    }
    void emitDash() {
        if (m_dash.size() >= 2) m_canvas.polyline(m_stroke, m_dash.data(), m_dash.size(), false, true);
        m_dash.clear();
    }

    Canvas& m_canvas;
    const Stroke& m_stroke;
    const std::vector<double>& m_pattern;
    double m_scale;
    std::size_t m_index = 0;
    double m_left = 0;
    std::vector<PagePoint> m_dash;
};

double pathLength(const std::vector<PagePoint>& points, bool closed) {
    double length = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        length += std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
    if (closed && points.size() > 2)
        length += std::hypot(points.front().x - points.back().x, points.front().y - points.back().y);
    return length;
}

} // namespace

void drawPath(Canvas& canvas, const Look& look, double patternUnit, const std::vector<PagePoint>& points,
              bool closed, double finest) {
    if (points.size() < 2) return;
    double total = 0;
    if (look.pattern)
        for (const double element : *look.pattern) total += std::abs(element);
    const double scale = patternUnit * look.patternScale;
    const double repeat = total * scale;
    if (!look.pattern || !(repeat > 4 * finest) || pathLength(points, closed) / repeat > kMostRepeats) {
        canvas.polyline(look.stroke, points.data(), points.size(), closed, false);
        return;
    }
    Dasher dasher(canvas, look, scale);
    for (std::size_t i = 1; i < points.size(); ++i) dasher.walk(points[i - 1], points[i]);
    if (closed && points.size() > 2) dasher.walk(points.back(), points.front());
    dasher.finish();
}

} // namespace pavo::render
