#include "editor/SelectionSets.h"

#include <algorithm>
#include <unordered_set>

#include "base/HostAllocations.h"
#include "editor/Editor.h"
#include "editor/PointText.h"
#include "editor/SelectionSpace.h"
#include "editor/SelectionVariables.h"

namespace pavo::editor::selection {
namespace {

// Tells a set name from an entity name (whose second word is a database).
constexpr long kSetTag = 0x55E7;

std::unordered_set<IdList*>& liveSets() {
    static std::unordered_set<IdList*> sets;
    return sets;
}

} // namespace

void newSet(IdList ids, ox_name name) {
    auto* set = new IdList(std::move(ids));
    liveSets().insert(set);
    ++hostAllocations().selectionSets;
    name[0] = reinterpret_cast<long>(set);
    name[1] = kSetTag;
}

IdList* findSet(const ox_name name) {
    if (!name || name[1] != kSetTag) return nullptr;
    auto* set = reinterpret_cast<IdList*>(name[0]);
    return liveSets().count(set) ? set : nullptr;
}

bool freeSet(const ox_name name) {
    IdList* set = findSet(name);
    if (!set) return false;
    liveSets().erase(set);
    delete set;
    --hostAllocations().selectionSets;
    return true;
}

SelectionState& state() {
    static SelectionState s;
    return s;
}

void forgetDrawing() {
    state().preselection.clear();
    state().previous.clear();
}

bool pickAtCommandPrompt(std::wstring_view text) {
    const std::optional<OxGePoint3d> point = parsePoint(text);
    if (!point) return false;
    if (const std::optional<OxDbObjectId> id = PickableSpace().at(*point, pickBox())) {
        IdList& pre = state().preselection;
        if (std::find(pre.begin(), pre.end(), *id) == pre.end()) pre.push_back(*id);
    }
    return true;
}

void clearPreselection() { state().preselection.clear(); }

IdList usablePreselection() {
    if (!pickFirst()) return {};
    const PickableSpace space;
    IdList ids;
    for (const OxDbObjectId& id : state().preselection)
        if (space.isPickable(id)) ids.push_back(id);
    return ids;
}

} // namespace pavo::editor::selection
