#include "PavoSetByLayerCmdProcess.h"

#include <cwchar>
#include <memory>

#include "IPavoCommand.h"
#include "commands/setbylayer/SetByLayerMode.h"
#include "commands/setbylayer/SettingsDialogLauncher.h"
#include "layerhelper/HostVariables.h"
#include "module/ResourceScope.h"
#include "OxDbServices.h"
#include "oxed.h"
#include "oxedSelection.h"
#include "oxmd.h"

using namespace vxlayer::setbylayer;

std::uint16_t PavoSetByLayerCmdProcess::m_iSetByLayerMode = kAllModeBits;
bool PavoSetByLayerCmdProcess::m_bColorPStyleMode = true;

namespace {

// The pre-selection's result buffer, released on every way out.
struct PreselectionBuffer {
    resbuf* rb = nullptr;
    ~PreselectionBuffer() {
        if (rb) oxutRelRb(rb);
    }
};

// The selection prompt's keyword callback, put back on every way out.
class KeywordCallbackScope {
public:
    explicit KeywordCallbackScope(OxedSSKwordCallback callback) {
        oxedSSGetKwordCallbackPtr(&m_previous);
        oxedSSSetKwordCallbackPtr(callback);
    }
    ~KeywordCallbackScope() { oxedSSSetKwordCallbackPtr(m_previous); }
    KeywordCallbackScope(const KeywordCallbackScope&) = delete;
    KeywordCallbackScope& operator=(const KeywordCallbackScope&) = delete;

private:
    OxedSSKwordCallback m_previous = nullptr;
};

// Appends the ids of the entities of `set`, skipping those that cannot be had.
void appendSetIds(const ox_name set, int length, OxArray<OxDbObjectId>& ids) {
    for (int i = 0; i < length; ++i) {
        ox_name entity = {0, 0};
        OxDbObjectId id;
        if (oxedSSName(set, i, entity) != STATUS_NORMAL || oxdbGetObjectId(id, entity) != Ox::eOk) continue;
        ids.append(id);
    }
}

// Asks one of the two Yes/No questions about `bit`, whose current state is
// the default. false when the question was cancelled.
bool askModeBit(std::uint16_t& mode, std::uint16_t bit, unsigned int yesPromptId, const wchar_t* yesPrompt,
                unsigned int noPromptId, const wchar_t* noPrompt) {
    oxedInitGet(0, oxmdOxResourceString(29028, L"Yes No _ Yes No"));
    const OxString prompt =
        (mode & bit) ? oxmdOxResourceString(yesPromptId, yesPrompt) : oxmdOxResourceString(noPromptId, noPrompt);
    OxString answer;
    const int status = oxedGetKword(prompt, answer);
    if (status == STATUS_NONE) return true;
    if (status != STATUS_NORMAL) return false;
    if (answer.compareNoCase(L"YES") == 0)
        mode = static_cast<std::uint16_t>(mode | bit);
    else if (answer.compareNoCase(L"NO") == 0)
        mode = static_cast<std::uint16_t>(mode & ~bit);
    return true;
}

} // namespace

int PavoSetByLayerCmdProcess::ExecuteCommand() {
    int value = 0;
    if (vxlayer::readIntVariable(L"SETBYLAYERMODE", value)) m_iSetByLayerMode = static_cast<std::uint16_t>(value);
    if (vxlayer::readIntVariable(L"PSTYLEMODE", value)) m_bColorPStyleMode = value != 0;
    PrintCurrentProps();

    OxArray<OxDbObjectId> ids(0, 8);
    PreselectionBuffer preselection;
    if (oxedSSGetFirst(nullptr, &preselection.rb) == STATUS_NORMAL) {
        int length = 0;
        if (preselection.rb) oxedSSLength(preselection.rb->resval.rlname, &length);
        if (length > 0) {
            appendSetIds(preselection.rb->resval.rlname, length, ids);
            oxutPrintf(oxmdOxResourceString(29027, L"\n%d found"), ids.length());
            oxedSSFree(preselection.rb->resval.rlname);
        } else {
            const OxString prompt = oxmdOxResourceString(29000, L"\nSelect Objects or [Setting(S)]:");
            const OxString keywords = oxmdOxResourceString(29032, L"Settings _Settings");
            const wchar_t* prompts[2] = {prompt.kwszPtr(), nullptr};
            ox_name set = {0, 0};
            int status = STATUS_ERROR;
            {
                KeywordCallbackScope callback(KWordsCallBack);
                status = oxedSSGet(L"_:$:K", prompts, keywords.kwszPtr(), nullptr, set);
            }
            if (status != STATUS_NORMAL) {
                oxedSSFree(set);
                return STATUS_FAIL;
            }
            oxedGetCurrentSelectionSet(ids);
            oxedSSFree(set);
        }
    }

    if (m_iSetByLayerMode == 0 || (m_iSetByLayerMode == kPlotStyle && m_bColorPStyleMode)) {
        oxutPrintf(oxmdOxResourceString(29026, L"No properties selected to change."));
        return STATUS_NONE;
    }
    // The two questions have no leading line break, and only the second
    // "<No>" prompt ends with a blank.
    if (!askModeBit(m_iSetByLayerMode, kByBlockToByLayer, 29022, L"Change ByBlock to ByLayer? [Yes/No] <Yes>:",
                    29023, L"Change ByBlock to ByLayer? [Yes/No] <No>:"))
        return STATUS_NORMAL;
    if (!askModeBit(m_iSetByLayerMode, kIncludeBlocks, 29024, L"Include blocks? [Yes/No] <Yes>:", 29025,
                    L"Include blocks? [Yes/No] <No>: "))
        return STATUS_NORMAL;

    if (!ids.isEmpty()) ChangeEntitySetProps(ids);

    resbuf mode{};
    mode.restype = RTSHORT;
    mode.resval.rint = static_cast<short>(m_iSetByLayerMode);
    oxedSetVar(L"SETBYLAYERMODE", &mode);
    return STATUS_NORMAL;
}

void PavoSetByLayerCmdProcess::PrintCurrentProps() {
    struct Property {
        std::uint16_t bit;
        unsigned int id;
        const wchar_t* name;
    };
    static const Property kProperties[] = {
        {kColor, 29004, L"Color"},           {kLinetype, 29006, L"Linetype"},  {kLineweight, 29008, L"Lineweight"},
        {kTransparency, 29009, L"Transparency"}, {kMaterial, 29031, L"Material"}, {kPlotStyle, 29007, L"Plot style"},
    };
    OxString line = oxmdOxResourceString(29001, L"Current active settings:");
    for (const Property& p : kProperties) {
        if (!(m_iSetByLayerMode & p.bit)) continue;
        if (p.bit == kPlotStyle && m_bColorPStyleMode) continue;
        line += L" ";
        line += oxmdOxResourceString(p.id, p.name);
    }
    oxutPrintf(line.kwszPtr());
}

resbuf* PavoSetByLayerCmdProcess::KWordsCallBack(const wchar_t* keyword) {
    if (!keyword || std::wcscmp(keyword, L"Settings") != 0) return nullptr;
    vxlayer::ContextResourceScope resources(GetPavoAppCtxActiveCommandContext());
    std::uint16_t mode = m_iSetByLayerMode;
    if (showSettingsDialog(mode, m_bColorPStyleMode) == kDialogOk) {
        m_iSetByLayerMode = mode;
        PrintCurrentProps();
    }
    return nullptr;
}
