// The active view as commands see it: model space or paper space.
#include "OxDbDatabase.h"
#include "OxDbServices.h"
#include "PavoGraphics.h"

namespace {

OxDbDatabase* workingDatabase() {
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

} // namespace

int PavoGsView::viewingSpace() const {
    const OxDbDatabase* db = workingDatabase();
    return !db || db->tilemode() || db->cvport() > 1 ? kModelSpace : kPaperSpace;
}

PavoGsView* PavoGraphics::activeGsView() { return workingDatabase() ? &m_view : nullptr; }

PavoGraphics* GetActiveGraphics() {
    static PavoGraphics graphics;
    return workingDatabase() ? &graphics : nullptr;
}
