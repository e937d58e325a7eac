// The object store of a database: one record (cell) per object, addressed
// by id in O(1) and by handle through a hash map. Host internals, shared by
// the database, the drawing files and the command line.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "HandleIndex.h"
#include "StablePool.h"
#include "UndoHistory.h"
#include "OxDbDatabase.h"
#include "OxDbLayerStateManager.h" // complete types for the Impl's unique_ptr members
#include "OxDbObject.h"
#include "OxDbObjectId.h"
#include "OxDbServices.h"
#include "OxRx.h"

class OxDbLayoutManager;

class OxDbCell : public OxDbCellHeader {
public:
    std::unique_ptr<OxDbObject> object; // null for a handle referred to before its object exists
    OxDbObjectId owner;
    // The runtime class of `object` (set with it, never changed), so that
    // checking what a reference leads to needs no look at the object.
    const OxRxClass* cls = nullptr;
    std::uint32_t readers = 0;
    std::uint32_t openSlot = 0xFFFFFFFFu; // position in Store::open while open
    bool writer = false;
    bool erased = false;
    bool modified = false; // changed since it was made resident
    bool claimed = false;  // the drawing reader gave the handle to an object it reads
    // The undo step that last recorded this cell (pavo/db/UndoHistory.h):
    // an object changed twice in a command is recorded once.
    std::uint32_t undoStamp = 0;
};

namespace pavo::db {

// Whether `cell` holds an object of class `cls` or of a class derived from it.
inline bool holdsKindOf(const OxDbCell* cell, const OxRxClass* cls) {
    if (!cell || !cell->object) return false;
    for (const OxRxClass* c = cell->cls; c; c = c->myParent())
        if (c == cls) return true;
    return false;
}

// A misuse of the database by a caller (a setter on an object not open for
// write, an open never closed); collected and reported after each command.
struct Misuse {
    std::wstring what;
};

// The cells that are open, as a set without allocation per open: each cell
// knows its slot in the vector, so insert and erase are O(1).
class OpenSet {
public:
    void insert(OxDbCell* cell);
    void erase(OxDbCell* cell);
    bool contains(const OxDbCell* cell) const { return cell->openSlot != kNoSlot; }
    std::size_t count(const OxDbCell* cell) const { return contains(cell) ? 1 : 0; }
    bool empty() const { return m_cells.empty(); }
    std::size_t size() const { return m_cells.size(); }
    auto begin() const { return m_cells.begin(); }
    auto end() const { return m_cells.end(); }
    // Forgets every open (the cells' counts are left alone).
    void clear();

private:
    static constexpr std::uint32_t kNoSlot = 0xFFFFFFFFu;
    std::vector<OxDbCell*> m_cells;
};

struct Store {
    explicit Store(OxDbDatabase* db) : database(db) {}
    OxDbDatabase* database;
    StablePool<OxDbCell> cells;
    HandleIndex byHandle;
    std::uint64_t nextHandle = 1;

    // Open bookkeeping: every cell with readers or a writer.
    OpenSet open;
    std::vector<Misuse> misuses;

    // The cell of `handle`, made (without an object) when missing.
    OxDbCell* cellForHandle(std::uint64_t handle);
    // A new cell with the next free handle (from 1 again after the last).
    OxDbCell* newCell();
    // Makes `obj` resident under `cell` (or the pending cell, or a new
    // handle), owned by `owner`, not open. The handle seed moves past it.
    OxDbObjectId attach(OxDbObject* obj, const OxDbObjectId& owner, OxDbCell* cell = nullptr);

    // The drawing reader gives objects their saved handles: the next object
    // made resident through the public API (table add, dictionary setAt,
    // block append, attribute append) takes this cell instead of a new one.
    void setPendingCell(OxDbCell* cell) { pendingCell = cell; }
    OxDbCell* pendingCell = nullptr;

    // The block references of the drawing by the block they insert, erased
    // ones included, in block table and drawing order. Built on first use;
    // a reference made resident or pointed at another block drops it.
    const std::vector<OxDbCell*>& referencesTo(const OxDbCell* block);
    void referencesChanged() { referenceIndexValid = false; }
    std::unordered_map<const OxDbCell*, std::vector<OxDbCell*>> referenceIndex;
    bool referenceIndexValid = false;
    // True while the drawing reader builds the database: checks of the
    // whole drawing (blocks inserting themselves) run once at its end
    // rather than at every change.
    bool loading = false;
};

} // namespace pavo::db

// The database's private state.
struct OxDbDatabase::Impl {
    explicit Impl(OxDbDatabase* db) : store(db) {}
    pavo::db::Store store;

    OxDbObjectId layerTable, linetypeTable, blockTable;
    OxDbObjectId namedObjects, layoutDictionary, plotSettingsDictionary, plotStyleNameDictionary, layerStatesDictionary,
        materialDictionary;
    OxDbObjectId layerZero, byLayerLinetype, byBlockLinetype, continuousLinetype;
    OxDbObjectId byLayerMaterial, byBlockMaterial, globalMaterial;
    OxDbObjectId modelSpace;

    // Header variables.
    OxDbObjectId clayer, celtype;
    OxCmColor cecolor;
    OxDb::LineWeight celweight = OxDb::kLnWtByLayer;
    OxCmTransparency cetransparency;
    OxString cepstyle = L"ByLayer";
    bool tilemode = true;
    int pstylemode = 0;
    int measurement = 1;
    int extnames = 1;
    double ltscale = 1.0;
    int insunits = 4;
    int cvport = 2;
    OxDbObjectId currentLayout; // the layout shown when TILEMODE is 0

    OxString fileName;
    bool modified = false;

    std::unique_ptr<OxDbLayerStateManager> layerStates;
    std::unique_ptr<PavoUndoController> undo;

    // Regeneration requests of the last command, for tests and the editor:
    // the session empties it when a command starts, so that a long session
    // does not keep every object it ever regenerated.
    std::vector<OxDbObjectId> regenQueue;
    int regenerateRequests = 0;
    // Times the current layer was set: a command that changed the current
    // layer's state sets it again so that the host shows the change.
    int clayerSets = 0;

    // The undo history (made when first asked for), and the same while it
    // records a command: the one check that a change makes when nothing is
    // recorded.
    std::unique_ptr<pavo::db::UndoHistory> history;
    pavo::db::UndoHistory* recording = nullptr;
};
