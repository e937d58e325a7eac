#include "ActiveViewport.h"

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "VxDbUtil.h"

namespace vxlayer {

bool activeViewport(OxDbObjectId& viewportId) {
    OxDbLayoutManager* layouts = oxdbHostApplicationServices()->layoutManager();
    OxDbBlockTableRecord* block = nullptr;
    if (!layouts || oxdbOpenObject(block, layouts->getActiveLayoutBTRId(nullptr), OxDb::kForRead) != Ox::eOk)
        return false;
    const OxDbObjectId layoutId = block->getLayoutId();
    block->close();
    OxDbLayout* layout = nullptr;
    if (oxdbOpenObject(layout, layoutId, OxDb::kForRead) != Ox::eOk) return false;
    viewportId = OxDbSystemInternals::getImpObject(layout)->activeViewportId();
    layout->close();
    return true;
}

OxDbObjectId currentModelViewport(OxDbDatabase* db) {
    OxDbObjectId id;
    if (!db || db->tilemode() || !activeViewport(id)) return OxDbObjectId();
    OxDbViewport* viewport = nullptr;
    if (oxdbOpenObject(viewport, id, OxDb::kForRead) != Ox::eOk) return OxDbObjectId();
    const bool model = viewport->number() > 1;
    viewport->close();
    return model ? id : OxDbObjectId();
}

} // namespace vxlayer
