// MVIEW: a new rectangular viewport on the current layout's sheet, showing
// the whole model; the layers marked "frozen in new viewports" start frozen
// in it.
#include <algorithm>
#include <optional>

#include "HostCommandSets.h"
#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "db/PaperSpace.h"
#include "db/SpaceExtents.h"
#include "editor/Editor.h"
#include "editor/PointInput.h"
#include "oxed.h"

namespace pavo::app {
namespace {

struct Frame {
    OxGePoint3d lo, hi;
    double width() const { return hi.x - lo.x; }
    double height() const { return hi.y - lo.y; }
    OxGePoint3d center() const { return OxGePoint3d((lo.x + hi.x) / 2, (lo.y + hi.y) / 2); }
};

Frame frameOf(const OxGePoint3d& a, const OxGePoint3d& b) {
    return {OxGePoint3d(std::min(a.x, b.x), std::min(a.y, b.y)), OxGePoint3d(std::max(a.x, b.x), std::max(a.y, b.y))};
}

Frame frameOf(const db::geom::Box& box) { return {OxGePoint3d(box.minX, box.minY), OxGePoint3d(box.maxX, box.maxY)}; }

// The layers frozen in new viewports.
OxDbObjectIdArray layersFrozenInNewViewports(OxDbDatabase* db) {
    OxDbObjectIdArray ids;
    OxDbLayerTable* table = nullptr;
    if (db->getLayerTable(table, OxDb::kForRead) != Ox::eOk) return ids;
    OxDbSymbolTableIterator* it = nullptr;
    if (table->newIterator(it) == Ox::eOk) {
        for (; !it->done(); it->step()) {
            OxDbLayerTableRecord* layer = nullptr;
            if (it->getRecord(layer, OxDb::kForRead) != Ox::eOk) continue;
            if (layer->VPDFLT()) ids.append(layer->objectId());
            layer->close();
        }
        delete it;
    }
    table->close();
    return ids;
}

// Points the view at the whole model: its extents fill the viewport in the
// direction that runs out first; an empty model is shown at full size.
void showWholeModel(OxDbViewport& viewport, OxDbDatabase* db) {
    const std::optional<db::geom::Box> box = db::blockExtents(db->modelSpaceId());
    if (!box) {
        viewport.setViewCenter(OxGePoint2d(0, 0));
        viewport.setViewHeight(viewport.height());
        return;
    }
    const Frame extents = frameOf(*box);
    const OxGePoint3d c = extents.center();
    viewport.setViewCenter(OxGePoint2d(c.x, c.y));
    const double aspect = viewport.width() / viewport.height();
    const double height = std::max(extents.height(), extents.width() / aspect);
    viewport.setViewHeight(height > 0 ? height : viewport.height());
}

int mview() {
    OxDbDatabase* db = oxdbHostApplicationServices()->workingDatabase();
    OxDbLayout* layout = db && !db->tilemode() ? db::currentPaperLayout(db) : nullptr;
    if (!layout) {
        oxutPrintf(L"\nViewports are made on a layout's sheet: go to a layout first (LAYOUT, CTAB or TILEMODE 0).");
        return STATUS_ERROR;
    }
    // Viewports are drawn on the sheet, so the corners are sheet points.
    db::enterPaperSpace(db);
    editor::Editor& editor = *editor::Editor::current();
    const editor::PointAnswer first = editor::askPoint(editor, L"\nSpecify corner of viewport or [Fit] <Fit>: ",
                                                       editor::KeywordList(L"Fit _Fit"));
    if (first.kind == editor::PointAnswer::Cancel) return STATUS_CANCEL;
    Frame frame = frameOf(db::sheetBox(*layout));
    if (first.kind == editor::PointAnswer::Point) {
        const editor::PointAnswer second = editor::askPoint(editor, L"\nSpecify opposite corner: ");
        if (second.kind != editor::PointAnswer::Point) return STATUS_CANCEL;
        frame = frameOf(first.point, second.point);
    }
    if (!(frame.width() > 0) || !(frame.height() > 0)) {
        oxutPrintf(L"\nA viewport needs a width and a height: the corners must differ in X and in Y.");
        return STATUS_ERROR;
    }

    OxDbBlockTableRecord* sheet = nullptr;
    if (oxdbOpenObject(sheet, layout->getBlockTableRecordId(), OxDb::kForWrite) != Ox::eOk) {
        oxutPrintf(L"\nThe layout cannot be changed now.");
        return STATUS_ERROR;
    }
    auto* viewport = new OxDbViewport();
    viewport->setLayer(db->clayer());
    viewport->setCenterPoint(frame.center());
    viewport->setWidth(frame.width());
    viewport->setHeight(frame.height());
    viewport->setNumber(db::nextViewportNumber(*layout));
    showWholeModel(*viewport, db);
    const OxDbObjectIdArray frozen = layersFrozenInNewViewports(db);
    viewport->freezeLayersInViewport(frozen);
    const Ox::ErrorStatus es = sheet->appendOxDbEntity(viewport);
    sheet->close();
    if (es != Ox::eOk) {
        delete viewport;
        oxutPrintf(L"\nThe viewport cannot be added to the layout (error %d).", static_cast<int>(es));
        return STATUS_ERROR;
    }
    const int number = viewport->number();
    viewport->close();
    oxutPrintf(L"\nViewport %d made; %d layer(s) frozen in new viewports start frozen in it.", number,
               frozen.length());
    return STATUS_NORMAL;
}

} // namespace

void registerMviewCommand(const AddHostCommand& add) {
    add(L"MVIEW", L"makes a viewport on the current layout's sheet", [] { return mview(); });
}

} // namespace pavo::app
