#include "render/DrawingWalk.h"

#include <algorithm>
#include <cmath>

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbSymbolTable.h"
#include "db/Geometry.h"
#include "render/DashedPath.h"

namespace pavo::render {
namespace {

constexpr double kPi = 3.14159265358979323846;
// Blocks nested deeper than this are not drawn (the database refuses a
// block that inserts itself, so only a pathological drawing gets there).
constexpr int kDeepestNesting = 256;

PageRect pageBox(const Affine& map, double left, double bottom, double right, double top) {
    PageRect box{1e300, 1e300, -1e300, -1e300};
    for (const PagePoint corner : {map(left, bottom), map(right, bottom), map(right, top), map(left, top)}) {
        box.left = std::min(box.left, corner.x);
        box.bottom = std::min(box.bottom, corner.y);
        box.right = std::max(box.right, corner.x);
        box.top = std::max(box.top, corner.y);
    }
    return box;
}

Affine windowToPage(const PictureRequest& r) {
    const double s = r.pageWidthMm / r.window.width();
    return {s, 0, -r.window.left * s, 0, s, -r.window.bottom * s};
}

Affine referencePlacement(const OxDbBlockReference& reference, const OxGePoint3d& origin) {
    const OxGeScale3d s = reference.scaleFactors();
    const OxGePoint3d at = reference.position();
    return Affine::translation(at.x, at.y) * Affine::rotation(reference.rotation()) * Affine::scaling(s.sx, s.sy) *
           Affine::translation(-origin.x, -origin.y);
}

} // namespace

DrawingWalk::DrawingWalk(const PictureRequest& request, Canvas& canvas, double finest)
    : m_request(request), m_canvas(canvas), m_finest(finest), m_looks(request),
      m_outside(db::outsideBlocks(request.database)) {}

bool DrawingWalk::run() {
    OxDbDatabase* db = m_request.database;
    if (!db || !(m_request.window.width() > 0) || !(m_request.window.height() > 0)) return false;
    View page;
    page.toPage = windowToPage(m_request);
    page.patternUnit = page.toPage.scale();
    page.clip = {0, 0, m_request.pageWidthMm, m_request.pageHeightMm};
    OxDbObjectId space = db->modelSpaceId();
    if (!m_request.layout.isNull()) {
        OxDbLayout* layout = nullptr;
        if (oxdbOpenObject(layout, m_request.layout, OxDb::kForRead) != Ox::eOk) return false;
        space = layout->getBlockTableRecordId();
        layout->close();
    }
    beginView(page);
    drawBlock(space, page.toPage, nullptr, 0);
    return true;
}

void DrawingWalk::beginView(View view) {
    const Affine back = view.toPage.inverse();
    const PageRect window = pageBox(back, view.clip.left, view.clip.bottom, view.clip.right, view.clip.top);
    view.cullLeft = window.left;
    view.cullBottom = window.bottom;
    view.cullRight = window.right;
    view.cullTop = window.top;
    m_view = view;
    m_layers.clear();
    m_canvas.setClip(&m_view.clip);
}

const DrawingWalk::LayerLook& DrawingWalk::layerLook(const OxDbObjectId& layer) {
    auto found = m_layers.find(layer);
    if (found != m_layers.end()) return found->second;
    LayerLook look;
    look.properties = m_outside;
    OxDbLayerTableRecord* record = nullptr;
    if (oxdbOpenObject(record, layer, OxDb::kForRead) == Ox::eOk) {
        const bool frozenHere = m_view.viewport && m_view.viewport->isLayerFrozenInViewport(layer);
        look.hidesReferences = record->isFrozen() || frozenHere;
        look.shows = !look.hidesReferences && !record->isOff() && !(m_request.plot && !record->isPlottable());
        look.properties = db::layerProperties(*record, m_view.viewport ? m_view.viewport->objectId() : OxDbObjectId());
        record->close();
    }
    return m_layers.emplace(layer, look).first->second;
}

bool DrawingWalk::outsideView(const OxDbEntity& entity) const {
    OxGePoint3d lo, hi;
    if (!entity.getExtents(lo, hi)) return false;
    return hi.x < m_view.cullLeft || lo.x > m_view.cullRight || hi.y < m_view.cullBottom || lo.y > m_view.cullTop;
}

void DrawingWalk::drawBlock(const OxDbObjectId& block, const Affine& toPage,
                            const db::EffectiveProperties* enclosing, int depth) {
    if (depth > kDeepestNesting) return;
    OxDbBlockTableRecord* record = nullptr;
    if (oxdbOpenObject(record, block, OxDb::kForRead) != Ox::eOk) return;
    OxDbBlockTableRecordIterator* it = nullptr;
    const bool made = record->newIterator(it) == Ox::eOk;
    record->close();
    if (!made) return;
    for (; !it->done(); it->step()) {
        OxDbEntity* entity = nullptr;
        if (it->getEntity(entity, OxDb::kForRead) != Ox::eOk) continue;
        // A top-level object wholly outside the view needs no work.
        if (depth > 0 || !outsideView(*entity)) drawEntity(*entity, toPage, enclosing, depth);
        entity->close();
    }
    delete it;
}

void DrawingWalk::drawEntity(const OxDbEntity& entity, const Affine& toPage, const db::EffectiveProperties* enclosing,
                             int depth) {
    if (!entity.visibility()) return;
    if (const auto* viewport = OxDbViewport::cast(&entity)) {
        // Viewports are the sheet's own; in model space or a block they mean nothing.
        if (depth == 0 && !m_view.viewport && !m_request.layout.isNull()) drawViewport(*viewport, m_view);
        return;
    }
    if (const auto* reference = OxDbBlockReference::cast(&entity)) {
        drawReference(*reference, toPage, enclosing, depth);
        return;
    }
    // A block's attribute definitions are the prompts of its references'
    // attributes, which the references draw.
    if (depth > 0 && OxDbAttributeDefinition::cast(&entity)) return;
    const LayerLook& layer = layerLook(entity.layerId());
    if (!layer.shows) return;
    const db::EffectiveProperties properties =
        db::effectiveProperties(entity, layer.properties, enclosing ? *enclosing : m_outside);
    drawShape(entity, toPage, m_looks.lookOf(properties, entity.linetypeScale()));
}

void DrawingWalk::drawReference(const OxDbBlockReference& reference, const Affine& toPage,
                                const db::EffectiveProperties* enclosing, int depth) {
    const LayerLook& layer = layerLook(reference.layerId());
    if (layer.hidesReferences) return;
    // What the block's ByBlock objects take.
    const db::EffectiveProperties own =
        db::effectiveProperties(reference, layer.properties, enclosing ? *enclosing : m_outside);
    OxDbBlockTableRecord* block = nullptr;
    if (oxdbOpenObject(block, reference.blockTableRecord(), OxDb::kForRead) == Ox::eOk) {
        const OxGePoint3d origin = block->origin();
        block->close();
        drawBlock(reference.blockTableRecord(), toPage * referencePlacement(reference, origin), &own, depth + 1);
    }
    // Attributes are placed in the reference's own space already.
    for (const OxDbObjectId& id : reference.attributeIds()) {
        OxDbAttribute* attribute = nullptr;
        if (oxdbOpenObject(attribute, id, OxDb::kForRead) != Ox::eOk) continue;
        const LayerLook& attributeLayer = layerLook(attribute->layerId());
        if (attribute->visibility() && attributeLayer.shows) {
            const db::EffectiveProperties p = db::effectiveProperties(*attribute, attributeLayer.properties, own);
            drawText(*attribute, attribute->textString(), toPage, m_looks.lookOf(p, attribute->linetypeScale()));
        }
        attribute->close();
    }
}

std::size_t DrawingWalk::arcSegments(double radiusOnPage, double sweep) const {
    const double tolerance = std::max(m_finest / 4, 0.002);
    if (!(radiusOnPage > tolerance)) return 4;
    const double step = 2 * std::acos(1 - tolerance / radiusOnPage);
    return std::clamp<std::size_t>(static_cast<std::size_t>(std::ceil(sweep / step)), 4, 4096);
}

void DrawingWalk::drawShape(const OxDbEntity& entity, const Affine& toPage, const Look& look) {
    std::vector<PagePoint>& points = m_points;
    points.clear();
    const auto arc = [&](double cx, double cy, double r, double start, double sweep) {
        const std::size_t n = arcSegments(r * toPage.scale(), std::abs(sweep));
        for (std::size_t i = 0; i <= n; ++i) {
            const double a = start + sweep * static_cast<double>(i) / static_cast<double>(n);
            points.push_back(toPage(cx + r * std::cos(a), cy + r * std::sin(a)));
        }
    };
    if (const auto* line = OxDbLine::cast(&entity)) {
        points = {toPage(line->startPoint().x, line->startPoint().y), toPage(line->endPoint().x, line->endPoint().y)};
        drawPath(m_canvas, look, m_view.patternUnit, points, false, m_finest);
    } else if (const auto* a = OxDbArc::cast(&entity)) {
        double sweep = a->endAngle() - a->startAngle();
        sweep = std::fmod(sweep, 2 * kPi);
        if (sweep <= 0) sweep += 2 * kPi;
        arc(a->center().x, a->center().y, a->radius(), a->startAngle(), sweep);
        drawPath(m_canvas, look, m_view.patternUnit, points, false, m_finest);
    } else if (const auto* c = OxDbCircle::cast(&entity)) {
        arc(c->center().x, c->center().y, c->radius(), 0, 2 * kPi);
        points.pop_back();
        drawPath(m_canvas, look, m_view.patternUnit, points, true, m_finest);
    } else if (const auto* polyline = OxDbPolyline::cast(&entity)) {
        const auto& vertices = polyline->vertices();
        const std::size_t count = vertices.size();
        const std::size_t segments = polyline->isClosed() ? count : count - std::min<std::size_t>(count, 1);
        for (std::size_t i = 0; i < count; ++i) {
            const OxGePoint2d& p = vertices[i].point;
            double cx, cy, r, start, end;
            if (i < segments &&
                db::geom::bulgeArc(p, vertices[(i + 1) % count].point, vertices[i].bulge, cx, cy, r, start, end)) {
                // The arc runs clockwise for a negative bulge.
                double sweep = std::fmod(end - start, 2 * kPi);
                if (sweep <= 0) sweep += 2 * kPi;
                if (vertices[i].bulge < 0) {
                    arc(cx, cy, r, end, -sweep);
                } else {
                    arc(cx, cy, r, start, sweep);
                }
                points.pop_back(); // the next vertex comes next
            } else {
                points.push_back(toPage(p.x, p.y));
            }
        }
        if (polyline->isClosed() && points.size() > 1 && vertices.size() > 0 && vertices.back().bulge != 0)
            points.push_back(points.front());
        Look wide = look;
        wide.stroke.width = std::max(look.stroke.width, polyline->constantWidth() * toPage.scale());
        drawPath(m_canvas, wide, m_view.patternUnit, points,
                 polyline->isClosed() && !(vertices.size() > 0 && vertices.back().bulge != 0), m_finest);
    } else if (const auto* point = OxDbPoint::cast(&entity)) {
        m_canvas.dot(look.stroke, toPage(point->position().x, point->position().y));
    } else if (const auto* definition = OxDbAttributeDefinition::cast(&entity)) {
        drawText(*definition, definition->tag(), toPage, look);
    } else if (const auto* text = OxDbText::cast(&entity)) {
        drawText(*text, text->textString(), toPage, look);
    }
}

void DrawingWalk::drawText(const OxDbText& text, const wchar_t* string, const Affine& toPage, const Look& look) {
    if (!string || !*string) return;
    const OxGePoint3d at = text.position();
    const double h = text.height(), r = text.rotation();
    const PagePoint base = toPage(at.x, at.y);
    const PagePoint along = toPage(at.x + std::cos(r), at.y + std::sin(r));
    const PagePoint up = toPage(at.x - h * std::sin(r), at.y + h * std::cos(r));
    const double height = std::hypot(up.x - base.x, up.y - base.y);
    if (!(height > 0)) return;
    m_canvas.text(look.stroke, base, height, std::atan2(along.y - base.y, along.x - base.x), string);
}

void DrawingWalk::drawViewport(const OxDbViewport& viewport, View sheet) {
    if (viewport.number() == 1 || !viewport.isOn() || !(viewport.height() > 0) || !(viewport.viewHeight() > 0))
        return;
    const LayerLook own = layerLook(viewport.layerId());
    const OxGePoint3d c = viewport.centerPoint();
    const double halfW = viewport.width() / 2, halfH = viewport.height() / 2;
    // A viewport on a frozen layer shows nothing; on an off or unplotted
    // layer its frame is hidden but the model still shows through it.
    if (!own.hidesReferences) {
        const double k = viewport.height() / viewport.viewHeight();
        const OxGePoint2d v = viewport.viewCenter();
        View inside;
        inside.toPage = sheet.toPage * Affine{k, 0, c.x - v.x * k, 0, k, c.y - v.y * k};
        inside.patternUnit = sheet.toPage.scale(); // linetypes count in sheet units
        inside.viewport = &viewport;
        inside.clip = pageBox(sheet.toPage, c.x - halfW, c.y - halfH, c.x + halfW, c.y + halfH);
        inside.clip = {std::max(inside.clip.left, sheet.clip.left), std::max(inside.clip.bottom, sheet.clip.bottom),
                       std::min(inside.clip.right, sheet.clip.right), std::min(inside.clip.top, sheet.clip.top)};
        if (inside.clip.left < inside.clip.right && inside.clip.bottom < inside.clip.top) {
            beginView(inside);
            drawBlock(m_request.database->modelSpaceId(), inside.toPage, nullptr, 0);
        }
        beginView(sheet);
    }
    if (!m_request.viewportBorders) return;
    // Borders asked for in a plot are plotted even on a layer that is not.
    OxDbLayerTableRecord* record = nullptr;
    bool frameShows = own.shows;
    if (m_request.plot && !own.hidesReferences && oxdbOpenObject(record, viewport.layerId(), OxDb::kForRead) == Ox::eOk) {
        frameShows = !record->isOff();
        record->close();
    }
    if (!frameShows) return;
    const Look look = m_looks.lookOf(db::effectiveProperties(viewport, own.properties, m_outside), 1);
    m_points = {sheet.toPage(c.x - halfW, c.y - halfH), sheet.toPage(c.x + halfW, c.y - halfH),
                sheet.toPage(c.x + halfW, c.y + halfH), sheet.toPage(c.x - halfW, c.y + halfH)};
    drawPath(m_canvas, look, sheet.patternUnit, m_points, true, m_finest);
}

} // namespace pavo::render
