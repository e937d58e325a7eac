// "VPLAYER": the option loop. In a layout every option is offered; in model
// space only the two that concern viewports made later (Newfrz and
// Vpvisdflt). The drawing is regenerated once, when the loop ends.
#include "Pavo6831Command.h"

#include "OxDbDatabase.h"
#include "OxDbServices.h"
#include "PavoUndoController.h"
#include "layerhelper/HostVariables.h"
#include "module/ResourceScope.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

constexpr const wchar_t* kLayoutKeywords =
    L"List Color LType LWeight TRansparency PStyle Freeze Thaw Reset reMoveoverrides Newfrz ? Vpvisdflt _List Color "
    L"LType LWeight TRansparency PStyle Freeze Thaw Reset reMoveoverrides Newfrz ? Vpvisdflt";
constexpr const wchar_t* kModelKeywords = L"Newfrz Vpvisdflt";

// The document's command-active byte, set while the command runs and
// cleared on every way out.
class CommandActive {
public:
    CommandActive() : m_data(GetPavoAppCtxActiveDocData()) {
        if (m_data) m_data->commandActive = 1;
    }
    ~CommandActive() {
        if (m_data) m_data->commandActive = 0;
    }
    CommandActive(const CommandActive&) = delete;
    CommandActive& operator=(const CommandActive&) = delete;

private:
    PavoDocumentData* m_data;
};

} // namespace

Pavo6831Command::Pavo6831Command() {
    layerIds.setLogicalLength(0);
    targetLayerIds.setLogicalLength(0);
    viewportIds.setLogicalLength(0);
    newLayerNames.setLogicalLength(0);
}

Pavo6831Command::~Pavo6831Command() {
    layerIds.setLogicalLength(0).setPhysicalLength(0);
    targetLayerIds.setLogicalLength(0).setPhysicalLength(0);
    viewportIds.setLogicalLength(0).setPhysicalLength(0);
    newLayerNames.setLogicalLength(0).setPhysicalLength(0);
}

int Pavo6831Command::execute(IPavoBuildInCommandContext* ctx) {
    vxlayer::ContextResourceScope resources(ctx);
    context = ctx;
    CommandActive active;

    database = ctx ? ctx->database() : nullptr;
    if (!database) return STATUS_ERROR;
    int tilemode = 0, pstylemode = 0;
    if (!vxlayer::readIntVariable(L"TILEMODE", tilemode) || !vxlayer::readIntVariable(L"PSTYLEMODE", pstylemode))
        return STATUS_ERROR;

    OxString keywords, prompt;
    if (tilemode == 0) {
        keywords = oxmdOxResourceString(10556, kLayoutKeywords);
        prompt = pstylemode == 1
                     ? oxmdOxResourceString(10558, L"\nEnter an option [List/Color/LType/LWeight/TRansparency/Freeze/"
                                                   L"Thaw/Reset/reMoveoverrides/New frozen layers/default Visibility "
                                                   L"settings]: ")
                     : oxmdOxResourceString(10585, L"\nEnter an option [List/Color/LType/LWeight/TRansparency/PStyle/"
                                                   L"Freeze/Thaw/Reset/reMoveoverrides/New frozen layers/default "
                                                   L"Visibility settings]: ");
    } else if (tilemode == 1) {
        keywords = kModelKeywords;
        prompt = oxmdOxResourceString(10584, L"\nEnter an option [New frozen layers/default Visibility settings]: ");
    }

    int status = STATUS_NORMAL;
    while (status == STATUS_NORMAL) {
        while (oxedInitGet(0, keywords) != STATUS_NORMAL) {
        }
        OxString keyword;
        status = oxedGetKword(prompt, keyword);
        if (status != STATUS_NORMAL) break;
        status = dispatch(keyword, tilemode == 0, pstylemode != 1);
        targetLayerIds.setLogicalLength(0);
        viewportIds.setLogicalLength(0);
        newLayerNames.setLogicalLength(0);
    }

    if (status == STATUS_CANCEL || status == STATUS_NONE) {
        if (needRegen) {
            if (PavoUndoController* undo = database->undoController()) undo->setNeedRegenAllMark();
            ctx->regenerate();
        }
        // Setting the current layer again makes the host show its new state.
        if (resetCurrentLayer) database->setClayer(database->clayer());
    }
    return STATUS_NORMAL;
}

int Pavo6831Command::dispatch(const OxString& keyword, bool inLayout, bool namedPlotStyles) {
    if (inLayout) {
        if (keyword.compareNoCase(L"List") == 0 || keyword.compareNoCase(L"?") == 0) return VPLayerList();
        if (keyword.compareNoCase(L"Color") == 0) return VPLayerColor();
        if (keyword.compareNoCase(L"LType") == 0) return VPLayerLineType();
        if (keyword.compareNoCase(L"LWeight") == 0) return VPLayerLIneWeight();
        if (keyword.compareNoCase(L"TRansparency") == 0) return VPLayerTRansparency();
        // Accepted under colour-dependent plot styles too, though not offered.
        if (keyword.compareNoCase(L"PStyle") == 0) return namedPlotStyles ? VPLayerPlotStyle() : STATUS_NORMAL;
        if (keyword.compareNoCase(L"Freeze") == 0) return VPLayerFreeze();
        if (keyword.compareNoCase(L"Thaw") == 0) return VPLayerThaw();
        if (keyword.compareNoCase(L"Reset") == 0) return VPLayerReset();
        if (keyword.compareNoCase(L"reMoveoverrides") == 0) return VPLayerReMoveoverrides();
    }
    if (keyword.compareNoCase(L"Newfrz") == 0) return VPLayerNewfrz();
    if (keyword.compareNoCase(L"Vpvisdflt") == 0) return VPLayerVpvisdflt();
    return STATUS_NORMAL;
}
