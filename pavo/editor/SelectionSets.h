// Selection sets handed out by name, and the selection state of the session:
// the pre-selection (objects picked at "Command: "), the previous set and
// the keyword callback of selection prompts.
#pragma once

#include <string_view>
#include <vector>

#include "OxDbObjectId.h"
#include "oxedSelection.h"
#include "resbuf.h"

namespace pavo::editor::selection {

using IdList = std::vector<OxDbObjectId>;

// A new host-owned set named in `name`; counted in
// hostAllocations().selectionSets until freeSet.
void newSet(IdList ids, ox_name name);
// The set named, or null when the name is not a live set.
IdList* findSet(const ox_name name);
bool freeSet(const ox_name name);

struct SelectionState {
    IdList preselection;
    IdList previous; // the last set a selection prompt made ("P")
    OxedSSKwordCallback keywordCallback = nullptr;
};
SelectionState& state();

// Drops the pre-selection and the previous set: their ids belong to a
// drawing that is going away.
void forgetDrawing();

// "Command: " answers: a point adds the entity there to the pre-selection
// (quietly); true when `text` was a point.
bool pickAtCommandPrompt(std::wstring_view text);
void clearPreselection();

// The pre-selection as commands see it: empty when PICKFIRST is 0; erased
// and no longer pickable entities left out.
IdList usablePreselection();

} // namespace pavo::editor::selection
