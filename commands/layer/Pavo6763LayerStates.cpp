// "-LAYER" option stAte: lists, saves, renames and deletes the drawing's
// named layer states. Every sub-option ends with STATUS_REJECT so that the
// option is asked again; refusals say nothing.
#include "LayerPrompts.h"
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbLayerStateManager.h"
#include "Pavo6763Command.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layerhelper/WorkingDatabase.h"
#include "module/LayerStateKeywords.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

constexpr int kSaveEverything = 0x7FF;

// Mask bits the user can switch, with their keywords, in bit order.
constexpr const wchar_t* kPropertyKeywords[vxlayer::kLayerStatePropertyCount] = {
    L"On", L"Frozen", L"Lock", L"Plot", L"Newvpfreeze", L"Color", L"lineType", L"lineWeight", L"plotStyle",
};

bool stateExists(OxDbLayerStateManager* states, const OxString& name) {
    OxDbDictionary* dictionary = nullptr;
    if (oxdbOpenObject(dictionary, states->layerStatesDictionaryId(true), OxDb::kForRead) != Ox::eOk) return false;
    OxDbObjectId id;
    const bool found = dictionary->getAt(name, id) == Ox::eOk;
    dictionary->close();
    return found;
}

// Asks `prompt` for a layer state name, blanks around it dropped. False
// when cancelled, empty or holding a forbidden character.
bool askStateName(const wchar_t* prompt, OxString& name) {
    oxedInitGet(OX_INP_NONULL, nullptr);
    if (oxedGetString(1, prompt, name) != STATUS_NORMAL) return false;
    name.trim();
    return !name.isEmpty() && !PavoLayerHelper::haveInvalidCharacters(name);
}

OxString newNamePrompt() { return oxmdOxResourceString(10133, L"\nEnter new layer state name: "); }
OxString oldNamePrompt() { return oxmdOxResourceString(10134, L"\nEnter old layer state name: "); }

void listStates(OxDbLayerStateManager* states) {
    vxlayer::TextScreenListing listing;
    oxutPrintf(oxmdOxResourceString(10132, L"\nLayer state name \n-------------------------------"));
    OxDbDictionary* dictionary = nullptr;
    if (oxdbOpenObject(dictionary, states->layerStatesDictionaryId(true), OxDb::kForRead) != Ox::eOk) return;
    if (OxDbDictionaryIterator* it = dictionary->newIterator()) {
        for (; !it->done(); it->next()) {
            const wchar_t* name = it->name();
            if (!name || !*name) continue;
            oxutPrintf(L"\n");
            // The name is the format itself; the host prints a directive
            // without an argument as text.
            oxutPrintf(name);
        }
        delete it;
    }
    dictionary->close();
}

void renameState(OxDbLayerStateManager* states) {
    OxString oldName;
    if (!askStateName(oldNamePrompt(), oldName) || !stateExists(states, oldName)) return;
    OxString newName;
    if (!askStateName(newNamePrompt(), newName) || stateExists(states, newName)) return;
    states->renameLayerState(oldName, newName);
}

void deleteState(OxDbLayerStateManager* states) {
    OxString name;
    if (askStateName(oldNamePrompt(), name) && stateExists(states, name)) states->deleteLayerState(name);
}

} // namespace

void Pavo6763Command::display_layerstate(int mask) {
    oxutPrintf(L"\nSTATE");
    for (int bit = 0; bit < vxlayer::kLayerStatePropertyCount; ++bit)
        oxutPrintf(L"\n%-12.12s %-3.3s", vxlayer::g_layerStateNames[bit], (mask >> bit) & 1 ? L"YES" : L"NO");
}

int Pavo6763Command::saveLayerStateAsked(OxDbLayerStateManager* states) {
    OxString name;
    if (!askStateName(newNamePrompt(), name) || stateExists(states, name)) return STATUS_REJECT;

    vxlayer::TextScreenListing listing;
    int mask = kSaveEverything;
    const OxString keywords = oxmdOxResourceString(
        10138, L"On Frozen Lock Plot Newvpfreeze Color lineType lineWeight plotStyle _On Frozen Lock Plot Newvpfreeze "
               L"Color lineType lineWeight plotStyle");
    const OxString prompt = oxmdOxResourceString(
        10137, L"\nEnter an option to change [On/Frozen/Lock/Print/Newvpfreeze/Color/lineType/lineWeight/plotStyle]: ");
    for (;;) {
        display_layerstate(mask);
        oxedInitGet(0, keywords);
        OxString keyword;
        const int status = oxedGetKword(prompt, keyword);
        if (status == STATUS_NONE) {
            states->saveLayerState(name, static_cast<OxDbLayerStateManager::LayerStateMask>(mask));
            return STATUS_REJECT;
        }
        if (status != STATUS_NORMAL || keyword.isEmpty()) return STATUS_REJECT;
        int bit = 0;
        while (bit < vxlayer::kLayerStatePropertyCount && keyword.compareNoCase(kPropertyKeywords[bit]) != 0)
            ++bit;
        if (bit == vxlayer::kLayerStatePropertyCount) return STATUS_ERROR;
        mask ^= 1 << bit;
    }
}

int Pavo6763Command::_branch_state() {
    OxDbDatabase* db = vxlayer::workingDatabase();
    OxDbLayerStateManager* states = db ? db->getLayerStateManager() : nullptr;
    if (!states) return STATUS_ERROR;

    oxedInitGet(0, oxmdOxResourceString(10130, L"? Save Name Delete _? Save Name Delete"));
    OxString option;
    const int status = oxedGetKword(oxmdOxResourceString(10131, L"\nEnter an option [?/Save/Name/Delete]: "), option);
    if (status != STATUS_NORMAL) return status;
    if (option.isEmpty()) return STATUS_ERROR;
    if (option.compareNoCase(L"?") == 0) {
        listStates(states);
        return STATUS_REJECT;
    }
    if (option.compareNoCase(L"Save") == 0) return saveLayerStateAsked(states);
    if (option.compareNoCase(L"Name") == 0) {
        renameState(states);
        return STATUS_REJECT;
    }
    if (option.compareNoCase(L"Delete") == 0) {
        deleteState(states);
        return STATUS_REJECT;
    }
    return STATUS_ERROR;
}
