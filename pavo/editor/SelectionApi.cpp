// The pick and selection-set functions of the host API.
#include <algorithm>
#include <string>

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "base/Utf8.h"
#include "db/PaperSpace.h"
#include "editor/Editor.h"
#include "editor/NumberText.h"
#include "editor/PointText.h"
#include "editor/SelectionPrompt.h"
#include "editor/SelectionSets.h"
#include "editor/SelectionSpace.h"
#include "editor/SelectionVariables.h"
#include "oxed.h"
#include "oxedSelection.h"
#include "oxut.h"

using pavo::editor::Editor;
using pavo::editor::InputLine;
namespace selection = pavo::editor::selection;

namespace {

constexpr int kErrnoNothingPicked = 7;
constexpr int kErrnoEnter = 52;

// The modes of oxedSSGet: "_" (global keywords) aside, options are ":$",
// ":K" and the implied selection "I".
struct SSGetMode {
    bool implied = false, prompts = false, keywords = false;
    explicit SSGetMode(const wchar_t* mode) {
        std::wstring m = mode ? mode : L"";
        std::erase(m, L'_');
        implied = m == L"I";
        prompts = m.find(L":$") != std::wstring::npos;
        keywords = m.find(L":K") != std::wstring::npos || m.find(L":k") != std::wstring::npos;
    }
};

// Hands the ids to the caller as a new set, and remembers them as the
// previous set.
int giveSet(selection::IdList ids, ox_name set) {
    if (ids.empty()) return STATUS_ERROR;
    selection::state().previous = ids;
    selection::newSet(std::move(ids), set);
    return STATUS_NORMAL;
}

} // namespace

int oxedEntSel(const wchar_t* prompt, ox_name entity, ox_point point) {
    Editor* editor = Editor::current();
    if (!editor || !entity) return STATUS_ERROR;
    const auto [flags, keywords] = editor->takeInitGet();
    const std::wstring text = prompt ? prompt : L"\nSelect object: ";
    for (;;) {
        const InputLine line = editor->ask(text, keywords.local());
        if (line.kind != InputLine::Text) return STATUS_CANCEL;
        const std::wstring answer = pavo::fromUtf8(line.text);
        const std::wstring_view word = pavo::editor::trimBlanks(answer);
        if (word.empty()) {
            if (flags & OX_INP_NONULL) continue;
            editor->setLastInput(L"");
            selection::setErrno(kErrnoEnter);
            return STATUS_ERROR;
        }
        if (const std::optional<OxGePoint3d> p = pavo::editor::parsePoint(word)) {
            editor->setLastInput(OxString(word));
            if (point) {
                point[0] = p->x;
                point[1] = p->y;
                point[2] = p->z;
            }
            const std::optional<OxDbObjectId> id = selection::PickableSpace().at(*p, selection::pickBox());
            if (!id) {
                selection::setErrno(kErrnoNothingPicked);
                return STATUS_ERROR;
            }
            oxdbGetOxDbName(entity, *id);
            return STATUS_NORMAL;
        }
        if (const std::optional<size_t> i = keywords.match(word)) {
            editor->setLastInput(keywords.globalAt(*i));
            return STATUS_KEYWORD;
        }
        if (flags & OX_INP_ARBITRARY) {
            editor->setLastInput(answer);
            return STATUS_KEYWORD;
        }
        editor->output().write(L"\nInvalid point.");
    }
}

int oxedSSGet(const wchar_t* mode, const void* pt1, const void* pt2, const resbuf* filter, ox_name set) {
    Editor* editor = Editor::current();
    if (!set) return STATUS_ERROR;
    set[0] = set[1] = 0;
    if (!editor) return STATUS_ERROR;
    editor->takeInitGet(); // selection prompts have their own answers
    const SSGetMode how(mode);
    const selection::TypeFilter types(filter);
    if (how.implied) {
        selection::IdList ids;
        const selection::PickableSpace space;
        for (const OxDbObjectId& id : selection::usablePreselection())
            if (space.isPickable(id, types)) ids.push_back(id);
        return giveSet(std::move(ids), set);
    }
    selection::PromptOptions options;
    options.filter = types;
    if (how.prompts && pt1) {
        const auto* prompts = static_cast<const wchar_t* const*>(pt1);
        if (prompts[0]) options.selectPrompt = prompts[0];
        if (prompts[1]) options.removePrompt = prompts[1];
    }
    if (how.keywords) {
        options.passKeywords = true;
        if (pt2) options.callerKeywords = pavo::editor::KeywordList(static_cast<const wchar_t*>(pt2));
    }
    selection::IdList ids;
    if (selection::runSelectionPrompt(*editor, options, ids) != STATUS_NORMAL) return STATUS_CANCEL;
    if (ids.empty()) selection::setErrno(kErrnoEnter);
    return giveSet(std::move(ids), set);
}

int oxedSSLength(const ox_name set, int* length) {
    if (length) *length = 0;
    const selection::IdList* ids = selection::findSet(set);
    if (!ids || !length) return STATUS_ERROR;
    *length = static_cast<int>(ids->size());
    return STATUS_NORMAL;
}

int oxedSSName(const ox_name set, int index, ox_name entity) {
    const selection::IdList* ids = selection::findSet(set);
    if (!ids || !entity || index < 0 || index >= static_cast<int>(ids->size())) return STATUS_ERROR;
    return oxdbGetOxDbName(entity, (*ids)[static_cast<size_t>(index)]) == Ox::eOk ? STATUS_NORMAL : STATUS_ERROR;
}

int oxedSSFree(const ox_name set) { return selection::freeSet(set) ? STATUS_NORMAL : STATUS_ERROR; }

int oxedSSSetFirst(const ox_name pickSet, const ox_name) {
    if (!pickSet || (pickSet[0] == 0 && pickSet[1] == 0)) {
        selection::clearPreselection();
        return STATUS_NORMAL;
    }
    const selection::IdList* ids = selection::findSet(pickSet);
    if (!ids) return STATUS_ERROR;
    selection::state().preselection = *ids;
    return STATUS_NORMAL;
}

int oxedSSGetFirst(resbuf** gripSet, resbuf** pickSet) {
    if (gripSet) *gripSet = nullptr;
    if (!pickSet) return STATUS_ERROR;
    *pickSet = oxutNewRb(RTPICKS);
    // An empty pre-selection is a null set name: nothing for the caller to free.
    selection::IdList ids = selection::usablePreselection();
    if (!ids.empty()) selection::newSet(std::move(ids), (*pickSet)->resval.rlname);
    return STATUS_NORMAL;
}

int oxedSSGetKwordCallbackPtr(OxedSSKwordCallback* callback) {
    if (!callback) return STATUS_ERROR;
    *callback = selection::state().keywordCallback;
    return STATUS_NORMAL;
}

int oxedSSSetKwordCallbackPtr(OxedSSKwordCallback callback) {
    selection::state().keywordCallback = callback;
    return STATUS_NORMAL;
}

int oxedGetCurrentSelectionSet(OxDbObjectIdArray& ids) {
    ids.removeAll();
    const selection::IdList& previous = selection::state().previous;
    ids.setPhysicalLength(static_cast<int>(previous.size()));
    for (const OxDbObjectId& id : previous)
        ids.append(id);
    return STATUS_NORMAL;
}

int oxedPspace() {
    return pavo::db::enterPaperSpace(oxdbHostApplicationServices()->workingDatabase()) == Ox::eOk ? STATUS_NORMAL
                                                                                                  : STATUS_ERROR;
}

int oxedMspace() {
    return pavo::db::enterModelSpace(oxdbHostApplicationServices()->workingDatabase()) == Ox::eOk ? STATUS_NORMAL
                                                                                                  : STATUS_ERROR;
}
