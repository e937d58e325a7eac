// The walk of a drawing for a picture: which objects show, where, and in
// which look. Model space, or a layout's sheet whose viewports each show
// model space through their own view, cut to their rectangle, with their
// own frozen layers and layer overrides. The walk only decides; the canvas
// paints.
//
// What shows follows the layers: objects on off or frozen layers are
// hidden, and in a viewport those on layers frozen there; a plot also
// leaves out layers that are not plotted. A block reference on a frozen
// layer hides everything it shows; on an off layer only what lies on that
// layer. ByLayer and ByBlock resolve as LIST shows them, ByLayer with the
// viewport's overrides.
#pragma once

#include <unordered_map>

#include "db/EffectiveProperties.h"
#include "render/Affine.h"
#include "render/Canvas.h"
#include "render/Looks.h"
#include "render/PictureRequest.h"

class OxDbEntity;
class OxDbViewport;
class OxDbBlockReference;
class OxDbText;

namespace pavo::render {

class DrawingWalk {
public:
    // `finest`: page millimetres of one device dot.
    DrawingWalk(const PictureRequest& request, Canvas& canvas, double finest);
    // Draws the request's space; false when its layout or model space does
    // not open.
    bool run();

private:
    // One space drawn on the page: model space, the sheet, or model space
    // in one viewport.
    struct View {
        Affine toPage;
        double patternUnit = 1; // page millimetres of one linetype unit
        const OxDbViewport* viewport = nullptr;
        PageRect clip;          // on the page
        double cullLeft = 0, cullBottom = 0, cullRight = 0, cullTop = 0; // the clip in the space's units
    };
    struct LayerLook {
        bool shows = true;
        bool hidesReferences = false;
        db::EffectiveProperties properties;
    };

    void beginView(View view);
    const LayerLook& layerLook(const OxDbObjectId& layer);
    bool outsideView(const OxDbEntity& entity) const;
    void drawBlock(const OxDbObjectId& block, const Affine& toPage, const db::EffectiveProperties* enclosing,
                   int depth);
    void drawEntity(const OxDbEntity& entity, const Affine& toPage, const db::EffectiveProperties* enclosing,
                    int depth);
    void drawReference(const OxDbBlockReference& reference, const Affine& toPage,
                       const db::EffectiveProperties* enclosing, int depth);
    void drawShape(const OxDbEntity& entity, const Affine& toPage, const Look& look);
    void drawText(const OxDbText& text, const wchar_t* string, const Affine& toPage, const Look& look);
    // `sheet` is a copy: the viewport's own view replaces the current one.
    void drawViewport(const OxDbViewport& viewport, View sheet);
    std::size_t arcSegments(double radiusOnPage, double sweep) const;

    const PictureRequest& m_request;
    Canvas& m_canvas;
    double m_finest;
    Looks m_looks;
    db::EffectiveProperties m_outside;
    View m_view;
    std::unordered_map<OxDbObjectId, LayerLook> m_layers;
    std::vector<PagePoint> m_points;
};

} // namespace pavo::render
