// The single-pick selector of the host API: one point from the user, then
// the objects there under the request's exclusions.
#include <algorithm>

#include "OxDbServices.h"
#include "PavoEntSelector.h"
#include "editor/Editor.h"
#include "editor/PointInput.h"
#include "editor/SelectionSets.h"
#include "editor/SelectionSpace.h"
#include "editor/SelectionVariables.h"
#include "oxed.h"
#include "oxstatus.h"

namespace selection = pavo::editor::selection;

namespace {

constexpr int kErrnoNothingPicked = 7;
constexpr int kErrnoEnter = 52;

} // namespace

bool PavoSelectSet::getAt(int index, OxDbObjectId& id) const {
    if (index < 0 || index >= m_ids.length()) {
        id.setNull();
        return false;
    }
    id = m_ids[index];
    return true;
}

PavoEntSelectorRequest::PavoEntSelectorRequest(const wchar_t* prompt, const wchar_t* keywords, int /*maxObjects*/,
                                               int /*pickMode*/, const PavoSelectorParamsEx* /*params*/,
                                               bool usePreselection)
    : m_prompt(prompt ? prompt : L"\nSelect object: "), m_keywords(keywords ? keywords : L""),
      m_usePreselection(usePreselection) {}

void PavoEntSelectorRequest::updateQueryExcludeOption(int option, int value) {
    if (option == kEntityExclusions) m_exclusions = value;
}

int PavoEntSelectorRequest::queryExcludeOption(int option) const {
    return option == kEntityExclusions ? m_exclusions : 0;
}

PavoEntSelector::PavoEntSelector() = default;
PavoEntSelector::~PavoEntSelector() = default;

// pavo draws nothing, so no object is ever shown highlighted.
void PavoEntSelector::dehlSelected(int) {}

int PavoEntSelector::doAcquireUserInput(const PavoEntSelectorRequest& request, bool) {
    m_cancelled = m_nullInput = m_hasPoint = false;
    m_keyword.setEmpty();
    pavo::editor::Editor* editor = pavo::editor::Editor::current();
    if (!editor) {
        m_cancelled = true;
        return kInputEnded;
    }
    if (request.usesPreselection()) {
        const selection::IdList preselected = selection::usablePreselection();
        if (!preselected.empty()) {
            grabSelectionSet().clear();
            grabSelectionSet().append(preselected.front());
            return kPointGiven;
        }
    }
    const int flags = editor->takeInitGet().first;
    const pavo::editor::KeywordList keywords(request.keywords().view());
    for (;;) {
        const pavo::editor::PointAnswer answer = pavo::editor::askPoint(*editor, request.prompt().str(), keywords);
        switch (answer.kind) {
        case pavo::editor::PointAnswer::Point:
            m_point = answer.point;
            m_hasPoint = true;
            return kPointGiven;
        case pavo::editor::PointAnswer::Keyword:
            m_keyword = answer.keyword.c_str();
            editor->setLastInput(m_keyword);
            return kKeywordGiven;
        case pavo::editor::PointAnswer::None:
            if (flags & OX_INP_NONULL) continue;
            editor->setLastInput(OxString(L""));
            selection::setErrno(kErrnoEnter);
            m_nullInput = true;
            return kInputEnded;
        case pavo::editor::PointAnswer::Cancel:
            m_cancelled = true;
            return kInputEnded;
        }
    }
}

int PavoEntSelector::doQuerySelectSet(PavoSelectSet* found, const PavoEntSelectorRequest& request) {
    if (!m_hasPoint) {
        // A pre-selection already answered the request.
        if (found) *found = m_set;
        return m_set.length() > 0 ? 1 : -1;
    }
    const selection::PickableSpace space(oxdbHostApplicationServices()->workingDatabase(),
                                         request.queryExcludeOption(PavoEntSelectorRequest::kEntityExclusions),
                                         (m_queryFlags & kQueryLockedLayers) != 0);
    std::vector<OxDbObjectId> ids = space.allAt(m_point, selection::pickBox());
    if ((m_queryFlags & kQueryTopmostOnly) && ids.size() > 1) ids.resize(1);
    grabSelectionSet().clear();
    for (const OxDbObjectId& id : ids)
        grabSelectionSet().append(id);
    if (found) *found = m_set;
    if (ids.empty()) {
        selection::setErrno(kErrnoNothingPicked);
        return 0;
    }
    return 1;
}
