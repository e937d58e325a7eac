// The drawing reader's state shared by its sections and its entity reader:
// the database being built, and references by handle.
#pragma once

#include <string>
#include <vector>

#include "DbBuild.h"
#include "OxDbSymbolTable.h"
#include "files/JsonIn.h"

namespace pavo::files {

// The class a reference must lead to, and its name for messages.
struct RefKind {
    const OxRxClass* cls;
    const char* name;
};

class ReadContext : public JsonIn {
public:
    ReadContext(OxDbDatabase& db, std::string_view text, const std::string& fileName, LoadError& error);

    OxDbDatabase& db;
    OxDbDatabase::Impl& impl;
    pavo::db::Store& store;

    const RefKind layer, linetype, block, viewport, layout, plotStyle, material;

    // The "h" of a new object: a cell without an object yet.
    bool define(sj::value& v, OxDbCell*& cell);
    bool defineHandle(std::uint64_t handle, const char* at, OxDbCell*& cell);
    // A reference; null allowed when `nullable`. References to objects not
    // read yet are checked by checkForwardReferences().
    bool reference(sj::value& v, const RefKind& kind, OxDbObjectId& id, bool nullable = true);
    bool resolve(std::uint64_t handle, const RefKind& kind, const char* at, OxDbObjectId& id);
    bool checkForwardReferences();
    // Takes the references to objects not read yet met by `other` (which
    // read the text after this one's so far).
    void adoptForwards(ReadContext& other);

    // Adds a named record (made with new, owned from here on) under `cell`,
    // refusing an invalid or duplicate name at `nameAt`; the record is left
    // closed. `what` names its kind in messages.
    bool addRecord(OxDbSymbolTable& table, OxDbSymbolTableRecord* record, OxDbCell* cell, const OxString& name,
                   const char* nameAt, const char* what, OxDbObjectId* idOut = nullptr);

    // A status of the database: false with a message unless eOk.
    bool accepted(Ox::ErrorStatus es, const char* at, std::string_view what);
    // The next object made resident takes `cell`; cleared after a failure.
    void expectCell(OxDbCell* cell) { store.setPendingCell(cell); }
    void dropCell() { store.setPendingCell(nullptr); }

private:
    // A reference to an object not read yet, checked at the end; its JSON
    // Pointer is found from `at` if it is refused.
    struct Forward {
        OxDbCell* cell;
        const RefKind* kind;
        const char* at;
    };
    std::vector<Forward> m_forwards;
    std::uint64_t m_lastHandle = 0;
    const RefKind* m_lastKind = nullptr;
    OxDbCell* m_lastCell = nullptr;
};

// Opens a resident object for write for the length of a scope.
template <class T> class WriteOpen {
public:
    explicit WriteOpen(const OxDbObjectId& id) {
        if (oxdbOpenObject(m_obj, id, OxDb::kForWrite) != Ox::eOk) m_obj = nullptr;
    }
    ~WriteOpen() {
        if (m_obj) m_obj->close();
    }
    WriteOpen(const WriteOpen&) = delete;
    WriteOpen& operator=(const WriteOpen&) = delete;
    T* get() const { return m_obj; }
    T* operator->() const { return m_obj; }
    explicit operator bool() const { return m_obj != nullptr; }

private:
    T* m_obj = nullptr;
};

} // namespace pavo::files
