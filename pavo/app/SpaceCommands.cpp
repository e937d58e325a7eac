// MSPACE and PSPACE: working inside a layout's viewport, or on its sheet.
#include "HostCommandSets.h"
#include "OxDbDatabase.h"
#include "OxDbServices.h"
#include "db/PaperSpace.h"
#include "oxed.h"

namespace pavo::app {
namespace {

int mspace() {
    OxDbDatabase* db = oxdbHostApplicationServices()->workingDatabase();
    if (!db) return STATUS_ERROR;
    if (db->tilemode()) {
        oxutPrintf(L"\nAlready in model space.");
        return STATUS_NORMAL;
    }
    if (db::enterModelSpace(db) != Ox::eOk) {
        oxutPrintf(L"\nThe layout has no viewport that is on; make one with MVIEW.");
        return STATUS_ERROR;
    }
    oxutPrintf(L"\nWorking in viewport %d.", db->cvport());
    return STATUS_NORMAL;
}

int pspace() {
    OxDbDatabase* db = oxdbHostApplicationServices()->workingDatabase();
    if (!db) return STATUS_ERROR;
    if (db->tilemode()) {
        oxutPrintf(L"\nModel space has no sheet: go to a layout first (LAYOUT, CTAB or TILEMODE 0).");
        return STATUS_ERROR;
    }
    if (db->cvport() == 1) {
        oxutPrintf(L"\nAlready in paper space.");
        return STATUS_NORMAL;
    }
    if (db::enterPaperSpace(db) != Ox::eOk) return STATUS_ERROR;
    oxutPrintf(L"\nWorking on the sheet (paper space).");
    return STATUS_NORMAL;
}

} // namespace

void registerSpaceCommands(const AddHostCommand& add) {
    add(L"MSPACE", L"works inside a viewport of the current layout", [] { return mspace(); });
    add(L"PSPACE", L"works on the sheet of the current layout", [] { return pspace(); });
}

} // namespace pavo::app
