// The object store of a database: one record (stub) per object, addressed
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
#include "OxDbDatabase.h"
#include "OxDbLayerStateManager.h" // complete types for the Impl's unique_ptr members
#include "OxDbObject.h"
#include "OxDbObjectId.h"
#include "OxDbServices.h"
#include "OxRx.h"

class OxDbLayoutManager;

class OxDbStub : public OxDbStubHeader {
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
};

namespace pavo::db {

// Whether `stub` holds an object of class `cls` or of a class derived from it.
inline bool holdsKindOf(const OxDbStub* stub, const OxRxClass* cls) {
    if (!stub || !stub->object) return false;
    for (const OxRxClass* c = stub->cls; c; c = c->myParent())
        if (c == cls) return true;
    return false;
}

// A misuse of the database by a caller (a setter on an object not open for
// write, an open never closed); collected and reported after each command.
struct Misuse {
    std::wstring what;
};

// The stubs that are open, as a set without allocation per open: each stub
// knows its slot in the vector, so insert and erase are O(1).
class OpenSet {
public:
    void insert(OxDbStub* stub);
    void erase(OxDbStub* stub);
    bool contains(const OxDbStub* stub) const { return stub->openSlot != kNoSlot; }
    std::size_t count(const OxDbStub* stub) const { return contains(stub) ? 1 : 0; }
    bool empty() const { return m_stubs.empty(); }
    std::size_t size() const { return m_stubs.size(); }
    auto begin() const { return m_stubs.begin(); }
    auto end() const { return m_stubs.end(); }
    // Forgets every open (the stubs' counts are left alone).
    void clear();

private:
    static constexpr std::uint32_t kNoSlot = 0xFFFFFFFFu;
    std::vector<OxDbStub*> m_stubs;
};

struct Store {
    explicit Store(OxDbDatabase* db) : database(db) {}
    OxDbDatabase* database;
    StablePool<OxDbStub> stubs;
    HandleIndex byHandle;
    std::uint64_t nextHandle = 1;

    // Open bookkeeping: every stub with readers or a writer.
    OpenSet open;
    std::vector<Misuse> misuses;

    // The stub of `handle`, made (without an object) when missing.
    OxDbStub* stubForHandle(std::uint64_t handle);
    // A new stub with the next free handle.
    OxDbStub* newStub();
    // Makes `obj` resident under `stub` (or the pending stub, or a new
    // handle), owned by `owner`, not open. The handle seed moves past it.
    OxDbObjectId attach(OxDbObject* obj, const OxDbObjectId& owner, OxDbStub* stub = nullptr);

    // The drawing reader gives objects their saved handles: the next object
    // made resident through the public API (table add, dictionary setAt,
    // block append, attribute append) takes this stub instead of a new one.
    void setPendingStub(OxDbStub* stub) { pendingStub = stub; }
    OxDbStub* pendingStub = nullptr;
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

    // Regeneration requests since the last reset, for tests and the editor.
    std::vector<OxDbObjectId> regenQueue;
    int regenerateRequests = 0;

    // Called on every first write open of an object in a command (undo hook).
    std::function<void(OxDbObject*)> onFirstWriteOpen;
};
