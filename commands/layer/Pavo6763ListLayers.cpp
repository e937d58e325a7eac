// "-LAYER" option "?": a table of layers on the text screen.
#include "LayerPrompts.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "PavoServices.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/PavoLayerHelper.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

constexpr const wchar_t* kRowFormat = L"\n%-*.*ls %-12.12ls %-12.12ls %-7.7ls %-12.12ls";
// The name line of a long name: "%s" on purpose, the host prints it wide.
constexpr const wchar_t* kLongNameFormat = L"\n%-*.*s %-12.12ls %-12.12ls %-7.7ls %-12.12ls";
constexpr int kNameColumn = 31;

// The listing's texts, fetched once for the whole table.
struct ListingTexts {
    OxString row = oxmdOxResourceString(10077, kRowFormat);
    OxString longName = oxmdOxResourceString(10077, kLongNameFormat);
    OxString on = oxmdOxResourceString(10114, L"On");
    OxString off = oxmdOxResourceString(10115, L"Off");
    OxString frozen = oxmdOxResourceString(10116, L"Freeze");
    OxString locked = oxmdOxResourceString(10117, L"-L");
    OxString plottable = oxmdOxResourceString(10118, L"-P");
};

OxString stateText(const OxDbLayerTableRecord& layer, const ListingTexts& texts) {
    OxString state = layer.isFrozen() ? texts.frozen : layer.isOff() ? texts.off : texts.on;
    if (layer.isLocked()) state += L" " + texts.locked;
    if (layer.isPlottable()) state += L" " + texts.plottable;
    return state;
}

void printRow(const OxDbObjectId& id, const ListingTexts& texts) {
    OxDbLayerTableRecord* layer = nullptr;
    if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) return;
    OxDbLinetypeTableRecord* linetype = nullptr;
    if (oxdbOpenObject(linetype, layer->linetypeObjectId(), OxDb::kForRead) != Ox::eOk) {
        layer->close();
        return;
    }
    const OxString& name = layer->name();
    OxString lineweight;
    PavoServicesManager::lineWeightToString(layer->lineWeight(), lineweight);
    const OxString state = stateText(*layer, texts);
    const OxString colour = layer->color().colorNameForDisplay();
    if (name.length() <= kNameColumn - 1) {
        oxutPrintf(texts.row, kNameColumn, kNameColumn, name, state, linetype->name(), lineweight, colour);
    } else {
        oxutPrintf(texts.longName, kNameColumn, kNameColumn, name, L"", L"", L"", L"");
        oxutPrintf(kRowFormat, kNameColumn, kNameColumn, L"", state, linetype->name(), lineweight, colour);
    }
    linetype->close();
    layer->close();
}

} // namespace

int Pavo6763Command::_branch_list_layer() {
    OxString list;
    int status = vxlayer::askLayerNames(m_context, oxmdOxResourceString(10061, L"\nLayer(s) to list <*>: "), list);
    if (status != STATUS_NORMAL) return status;
    if (list.isEmpty()) list = L"*";
    OxArray<OxDbObjectId> ids;
    status = PavoLayerHelper::getMatchedLayerList(list, ids, false);
    if (status != STATUS_NORMAL || ids.isEmpty()) return status;

    PavoServicesManager::showTextScreen();
    const PavoConsoalCtrlTypeAutoHandle console;
    oxutPrintf(oxmdOxResourceString(
        10075, L"\n  Layer name                       State       Linetype    Lineweight   Color"));
    oxutPrintf(oxmdOxResourceString(
        10076, L"\n------------------------------- ------------ ------------ ------- ------------"));
    const ListingTexts texts;
    for (const OxDbObjectId& id : ids)
        printRow(id, texts);

    OxString currentLayer;
    if (vxlayer::readStringVariable(L"CLAYER", currentLayer))
        oxutPrintf(oxmdOxResourceString(10105, L"\nCurrent layer: %ls"), currentLayer);
    return STATUS_NORMAL;
}
