#include "UndoHistory.h"

#include <malloc.h>

#include <algorithm>

#include "DbInternal.h"
#include "DictionaryImpl.h"
#include "OxDbDictionary.h"
#include "OxDbSymbolTable.h"
#include "SymbolTableImpl.h"

namespace pavo::db {

// ------------------------------------------------------------ variables

DrawingVariables DrawingVariables::of(const OxDbDatabase* db) {
    const OxDbDatabase::Impl& h = *db->impl();
    DrawingVariables v;
    v.clayer = h.clayer;
    v.celtype = h.celtype;
    v.currentLayout = h.currentLayout;
    v.cecolor = h.cecolor;
    v.celweight = h.celweight;
    v.cetransparency = h.cetransparency;
    v.cepstyle = h.cepstyle;
    v.tilemode = h.tilemode;
    v.pstylemode = h.pstylemode;
    v.measurement = h.measurement;
    v.extnames = h.extnames;
    v.insunits = h.insunits;
    v.cvport = h.cvport;
    v.ltscale = h.ltscale;
    v.handseed = h.store.nextHandle;
    return v;
}

void DrawingVariables::applyTo(OxDbDatabase* db) const {
    OxDbDatabase::Impl& h = *db->impl();
    h.clayer = clayer;
    h.celtype = celtype;
    h.currentLayout = currentLayout;
    h.cecolor = cecolor;
    h.celweight = static_cast<OxDb::LineWeight>(celweight);
    h.cetransparency = cetransparency;
    h.cepstyle = cepstyle;
    h.tilemode = tilemode;
    h.pstylemode = pstylemode;
    h.measurement = measurement;
    h.extnames = extnames;
    h.insunits = insunits;
    h.cvport = cvport;
    h.ltscale = ltscale;
    h.store.nextHandle = handseed;
}

bool DrawingVariables::operator==(const DrawingVariables& o) const {
    return clayer == o.clayer && celtype == o.celtype && currentLayout == o.currentLayout && cecolor == o.cecolor &&
           celweight == o.celweight && cetransparency == o.cetransparency && cepstyle == o.cepstyle &&
           tilemode == o.tilemode && pstylemode == o.pstylemode && measurement == o.measurement &&
           extnames == o.extnames && insunits == o.insunits && cvport == o.cvport && ltscale == o.ltscale &&
           handseed == o.handseed;
}

namespace {

const OxDbLayerTableRecord* layerIn(const OxDbObject* obj) { return OxDbLayerTableRecord::cast(obj); }

// What a recorded state takes: its own allocation and the lists a
// container holds (names and small parts are left out: an estimate).
std::size_t recordedBytes(const OxDbObject* state) {
    std::size_t bytes = sizeof(ObjectChange);
    if (!state) return bytes;
    bytes += malloc_usable_size(const_cast<OxDbObject*>(state));
    if (const auto* table = OxDbSymbolTable::cast(state))
        bytes += table->impl()->records.capacity() * sizeof(OxDbCell*) + table->impl()->byName.size() * 32;
    else if (const auto* block = OxDbBlockTableRecord::cast(state))
        bytes += block->impl()->entities.capacity() * sizeof(OxDbCell*);
    else if (const auto* dict = OxDbDictionary::cast(state))
        bytes += dict->impl()->entries.capacity() * (sizeof(OxDbDictionary::Impl::Entry) + 64);
    return bytes;
}

// The symbol table that lists `cell` by name now, or null.
OxDbSymbolTable::Impl* listingTable(const OxDbCell* cell) {
    if (!cell->object || cell->erased || !OxDbSymbolTableRecord::cast(cell->object.get())) return nullptr;
    auto* table = OxDbSymbolTable::cast(objectOf(cell->owner));
    if (!table || table->impl()->find(recordName(cell)) != cell) return nullptr;
    return table->impl();
}

// Whether swapping `change` leaves what symbol tables list as it is: the
// same record name, owner and erased flag on both sides (or no record).
bool listedAlike(const ObjectChange& change) {
    const OxDbCell* cell = change.cell;
    const auto* live = OxDbSymbolTableRecord::cast(cell->object.get());
    const auto* saved = OxDbSymbolTableRecord::cast(change.state.get());
    if (!live || !saved) return !live && !saved;
    return cell->erased == change.erased && cell->owner == change.owner && live->name() == saved->name();
}

// A block recorded by its entity list's length: the list that the block
// becoming live has is the part both have in common and the tail that the
// state holds; the tail that goes is kept in the state.
void swapEntityTails(ObjectChange& change) {
    auto* live = OxDbBlockTableRecord::cast(change.cell->object.get());
    auto* saved = OxDbBlockTableRecord::cast(change.state.get());
    if (!live || !saved) return;
    std::vector<OxDbCell*>& list = live->impl()->entities;
    std::vector<OxDbCell*>& tail = saved->impl()->entities;
    const std::size_t shared = std::min<std::size_t>(change.sharedEntities, list.size());
    std::vector<OxDbCell*> goingTail(list.begin() + static_cast<std::ptrdiff_t>(shared), list.end());
    list.resize(shared);
    list.insert(list.end(), tail.begin(), tail.end());
    tail = std::move(goingTail);
    list.swap(tail); // the whole list goes with the block that becomes live
}

// Puts `change`'s state in place of the live object and keeps the other
// way round in `change`; a symbol table's name index follows the record's
// name and erased flag (the table itself may not have been changed).
void swapState(ObjectChange& change) {
    OxDbCell* cell = change.cell;
    if (change.sharedEntities != ObjectChange::kWholeState) swapEntityTails(change);
    const bool relist = !listedAlike(change);
    if (OxDbSymbolTable::Impl* table = relist ? listingTable(cell) : nullptr) {
        table->byName.erase(recordName(cell), cell);
        --table->live;
    }
    std::swap(cell->object, change.state);
    std::swap(cell->owner, change.owner);
    std::swap(cell->erased, change.erased);
    if (change.state) change.state->attachCell(nullptr);
    if (!cell->object) return;
    cell->object->attachCell(cell);
    cell->cls = cell->object->isA();
    cell->modified = true;
    if (!relist || cell->erased || !OxDbSymbolTableRecord::cast(cell->object.get())) return;
    if (auto* table = OxDbSymbolTable::cast(objectOf(cell->owner)); table && table->impl()->byName.insert(recordName(cell), cell))
        ++table->impl()->live;
}

} // namespace

bool UndoStep::changesLayers() const {
    if (!(before.clayer == after.clayer)) return true;
    return std::any_of(changes.begin(), changes.end(), [](const ObjectChange& c) {
        return layerIn(c.state.get()) || layerIn(c.cell->object.get());
    });
}

// ------------------------------------------------------------ history

UndoHistory::UndoHistory(OxDbDatabase* db) : m_db(db) {}

UndoHistory::~UndoHistory() = default;

UndoHistory& undoHistory(OxDbDatabase* db) {
    OxDbDatabase::Impl& impl = *db->impl();
    if (!impl.history) impl.history = std::make_unique<UndoHistory>(db);
    return *impl.history;
}

void UndoHistory::beginCommand(const std::wstring& name) {
    if (m_depth++ == 0 && !m_open && m_control != Control::None) openStep(name, UndoStep::Command);
}

void UndoHistory::endCommand() {
    if (m_depth > 0) --m_depth;
    if (m_depth == 0 && m_open && m_open->kind != UndoStep::Group) closeStep();
}

void UndoHistory::openStep(std::wstring name, UndoStep::Kind kind) {
    m_open = std::make_unique<UndoStep>();
    m_open->kind = kind;
    m_open->name = std::move(name);
    // Stamps run from 1 (0 is a cell never recorded); four thousand million
    // commands in one session are out of reach.
    if (m_nextStamp == 0) m_nextStamp = 1;
    m_open->stamp = m_nextStamp++;
    m_open->before = DrawingVariables::of(m_db);
    m_db->impl()->recording = this;
}

void UndoHistory::closeStep() {
    std::unique_ptr<UndoStep> step = std::move(m_open);
    m_db->impl()->recording = nullptr;
    if (!step) return;
    step->after = DrawingVariables::of(m_db);
    if (step->changes.empty() && step->after == step->before) return; // it only read
    step->layerPrevious = m_layerPrevious && !step->madeByLayerPrevious && step->changesLayers();
    m_undone.clear();
    m_bytes += step->bytes;
    m_done.push_back(std::move(*step));
    trim();
}

void UndoHistory::record(OxDbCell* cell) {
    if (!m_open || cell->undoStamp == m_open->stamp) return;
    cell->undoStamp = m_open->stamp;
    std::uint32_t sharedEntities = ObjectChange::kWholeState;
    std::unique_ptr<OxDbObject> state;
    if (auto* block = OxDbBlockTableRecord::cast(cell->object.get())) {
        // Its entity list is kept as its length: a command only adds to it.
        std::vector<OxDbCell*> entities;
        entities.swap(block->impl()->entities);
        sharedEntities = static_cast<std::uint32_t>(entities.size());
        state.reset(block->cloneState());
        entities.swap(block->impl()->entities);
    } else if (cell->object) {
        state.reset(cell->object->cloneState());
    }
    if (cell->object && !state) {
        recordMisuse(cell, L"an object that cannot be recorded for undo was changed");
        return;
    }
    m_open->bytes += recordedBytes(state.get());
    m_open->changes.push_back(ObjectChange{cell, std::move(state), cell->owner, sharedEntities, cell->erased});
}

void UndoHistory::recordCreation(OxDbCell* cell) {
    if (!m_open || cell->undoStamp == m_open->stamp) return;
    cell->undoStamp = m_open->stamp;
    m_open->bytes += recordedBytes(nullptr);
    m_open->changes.push_back(ObjectChange{cell, nullptr, cell->owner, ObjectChange::kWholeState, cell->erased});
}

void UndoHistory::trim() {
    const std::size_t limit = m_control == Control::One ? 1 : m_limit;
    std::size_t steps = 0;
    for (const UndoStep& step : m_done)
        if (step.kind != UndoStep::Mark) ++steps;
    while (!m_done.empty() && (steps > limit || (m_bytes > kMemoryCap && steps > 1) || m_done.front().kind == UndoStep::Mark)) {
        if (m_done.front().kind != UndoStep::Mark) {
            --steps;
            m_dropped = true;
        }
        m_bytes -= m_done.front().bytes;
        m_done.pop_front();
    }
}

std::size_t UndoHistory::changedObjects() const {
    std::size_t n = 0;
    for (const UndoStep& step : m_done)
        n += step.changes.size();
    return n;
}

bool UndoHistory::takeDropNotice() {
    if (!m_dropped || m_dropNoticeGiven) return false;
    m_dropNoticeGiven = true;
    return true;
}

void UndoHistory::setStepLimit(std::size_t limit) {
    m_limit = std::max<std::size_t>(limit, 1);
    trim();
}

void UndoHistory::swapStates(UndoStep& step, bool forward) {
    if (forward) {
        for (ObjectChange& change : step.changes)
            swapState(change);
    } else {
        for (auto it = step.changes.rbegin(); it != step.changes.rend(); ++it)
            swapState(*it);
    }
    (forward ? step.after : step.before).applyTo(m_db);
    m_db->impl()->store.referencesChanged();
    m_db->setModified(true);
}

std::size_t UndoHistory::undoableCount() const {
    std::size_t n = 0;
    for (const UndoStep& step : m_done)
        if (step.kind != UndoStep::Mark) ++n;
    return n + (m_open && m_open->kind == UndoStep::Group && !m_open->changes.empty() ? 1 : 0);
}

std::vector<std::wstring> UndoHistory::undo(std::size_t count) {
    closeStep();
    std::vector<std::wstring> names;
    while (count > 0 && !m_done.empty()) {
        UndoStep step = std::move(m_done.back());
        m_done.pop_back();
        m_bytes -= step.bytes;
        if (step.kind == UndoStep::Mark) continue; // passed over, and gone
        swapStates(step, false);
        names.push_back(step.name);
        m_undone.push_back(std::move(step));
        --count;
    }
    return names;
}

bool UndoHistory::hasMark() const {
    return std::any_of(m_done.begin(), m_done.end(), [](const UndoStep& s) { return s.kind == UndoStep::Mark; });
}

std::vector<std::wstring> UndoHistory::undoToMark(bool& foundMark) {
    closeStep();
    foundMark = false;
    std::vector<std::wstring> names;
    while (!m_done.empty()) {
        if (m_done.back().kind == UndoStep::Mark) {
            m_done.pop_back();
            foundMark = true;
            break;
        }
        std::vector<std::wstring> one = undo(1);
        names.insert(names.end(), one.begin(), one.end());
    }
    return names;
}

std::vector<std::wstring> UndoHistory::redo(std::size_t count) {
    closeStep();
    std::vector<std::wstring> names;
    while (count-- > 0 && !m_undone.empty()) {
        UndoStep step = std::move(m_undone.back());
        m_undone.pop_back();
        swapStates(step, true);
        names.push_back(step.name);
        m_bytes += step.bytes;
        m_done.push_back(std::move(step));
    }
    trim();
    return names;
}

void UndoHistory::addMark() {
    closeStep();
    UndoStep mark;
    mark.kind = UndoStep::Mark;
    m_done.push_back(std::move(mark));
}

void UndoHistory::beginGroup() {
    closeStep();
    if (m_control != Control::None) openStep(L"GROUP", UndoStep::Group);
}

void UndoHistory::endGroup() {
    if (groupOpen()) closeStep();
}

bool UndoHistory::groupOpen() const { return m_open && m_open->kind == UndoStep::Group; }

void UndoHistory::setControl(Control control) {
    m_control = control;
    if (control == Control::None) {
        m_open.reset();
        m_db->impl()->recording = nullptr;
        m_done.clear();
        m_undone.clear();
        m_bytes = 0;
    }
    trim();
}

// ------------------------------------------------------------ layer previous

void UndoHistory::setLayerPreviousTracking(bool on) {
    m_layerPrevious = on;
    if (on) return;
    for (UndoStep& step : m_done)
        step.layerPrevious = false;
    for (UndoStep& step : m_undone)
        step.layerPrevious = false;
}

bool UndoHistory::restoreLayerPrevious() {
    // The newest step done that LAYERP has not gone back from: its states
    // are the layers as they were before it.
    auto found = std::find_if(m_done.rbegin(), m_done.rend(), [](const UndoStep& s) { return s.layerPrevious; });
    if (found == m_done.rend()) return false;
    UndoStep& previous = *found;
    previous.layerPrevious = false;
    if (m_open) m_open->madeByLayerPrevious = true;
    const OxDbObjectId clayer = previous.before.clayer;
    const auto* layer = layerIn(objectOf(clayer));
    if (layer && !clayer.isErased()) {
        // Thawed first when it was frozen since: it was current, so thawed, then.
        if (layer->isFrozen()) {
            record(clayer.cell());
            changeDirect(const_cast<OxDbLayerTableRecord*>(layer), [](OxDbLayerTableRecord& l) { l.setIsFrozen(false); });
        }
        m_db->setClayer(clayer);
    }
    for (const ObjectChange& change : previous.changes) {
        const OxDbLayerTableRecord* before = layerIn(change.state.get());
        OxDbCell* cell = change.cell;
        auto* live = OxDbLayerTableRecord::cast(cell->object.get());
        // New layers have no settings to go back to; LAYERP does not bring
        // back erased ones.
        if (!before || change.erased || !live || cell->erased) continue;
        record(cell);
        auto* restored = static_cast<OxDbLayerTableRecord*>(before->cloneState());
        restored->setName(live->getName()); // renames stay
        // The database never has a frozen current layer.
        if (OxDbObjectId(cell) == m_db->clayer()) restored->setIsFrozen(false);
        cell->object.reset(restored);
        restored->attachCell(cell);
        cell->modified = true;
    }
    m_db->setModified(true);
    return true;
}

} // namespace pavo::db
