#include "Pavo6763Command.h"

#include <iterator>

#include "layerhelper/HostVariables.h"
#include "module/ResourceScope.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

constexpr const wchar_t* kKeywordsNoPlotStyles =
    L"? New Make Set Color Ltype LWeight Print ON OFf Freeze Thaw LOck Unlock Rename Description Delete stAte Plot "
    L"TRansparency _? New Make Set Color Ltype LWeight Print ON OFf Freeze Thaw LOck Unlock Rename Description "
    L"Delete stAte Plot TRansparency";
constexpr const wchar_t* kKeywordsPlotStyles =
    L"? New Make Set Color Ltype LWeight Print PStyle ON OFf Freeze Thaw LOck Unlock Rename Description Delete "
    L"stAte Plot TRansparency _? New Make Set Color Ltype LWeight Print PStyle ON OFf Freeze Thaw LOck Unlock "
    L"Rename Description Delete stAte Plot TRansparency";
constexpr const wchar_t* kPromptNoPlotStyles =
    L"\nEnter an option "
    L"[?/New/Make/Set/Color/Ltype/LWeight/Plot/ON/OFF/Freeze/Thaw/LOck/Unlock/Rename/Description/DELete/stAte/"
    L"TRansparency]: ";
constexpr const wchar_t* kPromptPlotStyles =
    L"\nEnter an option "
    L"[?/New/Make/Set/Color/Ltype/LWeight/Plot/PStyle/ON/OFF/Freeze/Thaw/LOck/Unlock/Rename/Description/DELete/"
    L"stAte/TRansparency]: ";

} // namespace

int Pavo6763Command::execute(IPavoBuildInCommandContext* ctx) {
    vxlayer::ContextResourceScope resources(ctx);
    m_context = ctx;

    OxString clayer;
    if (vxlayer::readStringVariable(L"CLAYER", clayer)) {
        OxString message;
        message.format(oxmdOxResourceString(10105, L"\nCurrent layer: %ls"), clayer);
        oxedPrompt(message);
    }

    for (;;) {
        // Decided again before every prompt: a branch may change PSTYLEMODE.
        int pstylemode = 0;
        const bool namedPlotStyles = vxlayer::readIntVariable(L"PSTYLEMODE", pstylemode) && pstylemode != 1;
        const OxString keywords = namedPlotStyles ? oxmdOxResourceString(10052, kKeywordsPlotStyles)
                                                  : oxmdOxResourceString(10051, kKeywordsNoPlotStyles);
        const OxString prompt = namedPlotStyles ? oxmdOxResourceString(10059, kPromptPlotStyles)
                                                : oxmdOxResourceString(10058, kPromptNoPlotStyles);
        oxedInitGet(0, keywords);
        OxString keyword;
        const int status = oxedGetKword(prompt, keyword);
        if (status != STATUS_NORMAL) return status;
        dispatch(keyword);
    }
}

void Pavo6763Command::dispatch(const OxString& keyword) {
    struct Branch {
        const wchar_t* keyword;
        int (*run)(Pavo6763Command&);
        bool repeatWhileRejected;
    };
    static const Branch kBranches[] = {
        {L"?", [](Pavo6763Command& c) { return c._branch_list_layer(); }, false},
        {L"New", [](Pavo6763Command& c) { return c._branch_new(); }, false},
        {L"Make", [](Pavo6763Command& c) { return c._branch_make(); }, false},
        {L"Set", [](Pavo6763Command& c) { return c._branch_set(); }, false},
        {L"Color", [](Pavo6763Command& c) { return c._branch_color(); }, false},
        {L"Ltype", [](Pavo6763Command& c) { return c._branch_ltype(); }, false},
        {L"LWeight", [](Pavo6763Command& c) { return c._branch_lweight(); }, true},
        {L"Print", [](Pavo6763Command& c) { return c._branch_plot(); }, false},
        {L"Plot", [](Pavo6763Command& c) { return c._branch_plot(); }, false},
        {L"PStyle", [](Pavo6763Command& c) { return c._branch_pstyle(); }, true},
        {L"ON", [](Pavo6763Command& c) { return c._branch_layer_on(); }, false},
        {L"OFf", [](Pavo6763Command& c) { return c._branch_layer_off(); }, false},
        {L"Freeze", [](Pavo6763Command& c) { return c._branch_layer_freeze(); }, false},
        {L"Thaw", [](Pavo6763Command& c) { return c._branch_layer_thaw(); }, false},
        {L"LOck", [](Pavo6763Command& c) { return c._branch_layer_lock(true); }, false},
        {L"Unlock", [](Pavo6763Command& c) { return c._branch_layer_lock(false); }, false},
        {L"Rename", [](Pavo6763Command& c) { return c._branch_rename(); }, true},
        {L"Description", [](Pavo6763Command& c) { return c._branch_description(); }, false},
        {L"Delete", [](Pavo6763Command& c) { return c._branch_delete(); }, false},
        {L"stAte", [](Pavo6763Command& c) { return c._branch_state(); }, true},
        {L"TRansparency", [](Pavo6763Command& c) { return c._branch_transparency(); }, true},
    };
    for (const Branch& branch : kBranches) {
        if (keyword.compareNoCase(branch.keyword) != 0) continue;
        if (branch.repeatWhileRejected) {
            while (branch.run(*this) == STATUS_REJECT) {
            }
        } else {
            branch.run(*this);
        }
        return;
    }
}
