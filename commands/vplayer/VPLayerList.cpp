// "VPLAYER" option List (and ?): the layers frozen in one picked viewport.
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "Pavo6831Command.h"
#include "PavoEntSelector.h"
#include "VPLayerLayouts.h"
#include "oxed.h"
#include "oxedSelection.h"
#include "oxmd.h"

namespace {

// The pick's query flags and what it leaves out: the topmost object, on a
// locked layer or not, never the sheet; first everything but viewports is
// excluded, then viewports are let in and off layers and layers frozen in
// the viewport are left out.
constexpr int kQueryFlags = 0xB000;
constexpr int kExcludeOption = 0x2800;
constexpr int kFirstExclusions = 0x8300;
constexpr int kViewportsExcluded = 0x200;
constexpr int kOffAndFrozenInViewport = 0x401;

} // namespace

int SelForList(OxDbObjectId& picked, const wchar_t* prompt) {
    PavoEntSelectorRequest request(prompt, nullptr, 1, 1, nullptr, false);
    PavoEntSelector selector;
    selector.dehlSelected(1);
    selector.grabSelectionSet().clear();
    selector.SetSelectorQueryFlags(kQueryFlags);
    if (selector.doAcquireUserInput(request, false) == PavoEntSelector::kInputEnded) {
        if (selector.isUserInputCancel()) return STATUS_CANCEL;
        if (selector.wasNullInput()) return STATUS_NONE;
        return STATUS_NORMAL;
    }
    request.updateQueryExcludeOption(kExcludeOption, kFirstExclusions);
    const int exclusions = request.queryExcludeOption(kExcludeOption);
    request.updateQueryExcludeOption(kExcludeOption, (exclusions & ~kViewportsExcluded) | kOffAndFrozenInViewport);
    PavoSelectSet found;
    if (selector.doQuerySelectSet(&found, request) != 1) return STATUS_REJECT;
    found.getAt(0, picked);
    return STATUS_NORMAL;
}

int Pavo6831Command::VPLayerList() {
    const bool fromModelSpace = vxlayer::inViewportModelSpace();
    const OxString prompt = oxmdOxResourceString(10559, L"\nSelect a viewport : ");
    OxDbObjectId picked;
    for (;;) {
        if (fromModelSpace) oxedPspace();
        const int status = SelForList(picked, prompt);
        if (fromModelSpace) oxedMspace();
        if (status == STATUS_REJECT) {
            oxutPrintf(oxmdOxResourceString(10596, L"\nUnable to use that selection.  Please try again."));
            continue;
        }
        if (status == STATUS_NONE || status == STATUS_CANCEL) return STATUS_NORMAL;
        if (status != STATUS_NORMAL) return status;
        break;
    }

    if (picked.isNull()) return STATUS_ERROR;
    OxDbObject* object = nullptr;
    if (oxdbOpenObject(object, picked, OxDb::kForRead) != Ox::eOk) return STATUS_ERROR;
    if (object->isA() != OxDbViewport::desc()) {
        object->close();
        return STATUS_ERROR;
    }
    auto* viewport = static_cast<OxDbViewport*>(object);
    OxDbObjectIdArray frozen;
    viewport->getFrozenLayerList(frozen);
    const int number = viewport->number();
    viewport->close();

    OxString text;
    if (frozen.isEmpty()) {
        text.format(oxmdOxResourceString(10571, L"No layers are frozen in viewport %d\n"), number);
    } else {
        text.format(oxmdOxResourceString(10572, L"The following layers are frozen in viewport %d\n"), number);
        for (const OxDbObjectId& id : frozen) {
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) continue;
            text += layer->name();
            text += L"\n";
            layer->close();
        }
    }
    // The listing is the format itself: a "%" in a layer name is read as a
    // directive, which the host prints as text when its argument is missing.
    oxutPrintf(text);
    return STATUS_NORMAL;
}
