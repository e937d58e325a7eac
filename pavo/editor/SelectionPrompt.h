// The "Select objects: " prompt of oxedSSGet: points, ALL, W and C windows,
// L, P, R and A, the caller's keywords; Enter ends.
#pragma once

#include <string>

#include "Keywords.h"
#include "editor/SelectionSets.h"
#include "editor/SelectionSpace.h"

namespace pavo::editor {
class Editor;
}

namespace pavo::editor::selection {

struct PromptOptions {
    std::wstring selectPrompt = L"\nSelect objects: ";
    std::wstring removePrompt = L"\nRemove objects: ";
    // Mode ":K": the caller's keywords (may be empty: then every word that is
    // not a selection keyword goes to the callback).
    bool passKeywords = false;
    KeywordList callerKeywords;
    TypeFilter filter;
};

// STATUS_NORMAL with the selected ids (possibly none), or STATUS_CANCEL.
int runSelectionPrompt(Editor& editor, const PromptOptions& options, IdList& ids);

} // namespace pavo::editor::selection
