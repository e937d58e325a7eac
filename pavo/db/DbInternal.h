// Helpers shared by the database's own source files.
#pragma once

#include <string>
#include <utility>

#include "DbStore.h"
#include "UndoHistory.h"
#include "OxDbDatabase.h"
#include "OxDbObject.h"

class OxDbEntity;
class OxDbSymbolTable;
class OxDbSymbolTableRecord;
class OxDbBlockTableRecord;
class OxDbLayout;

namespace pavo::db {

// A setter's body: stores `value` when the object may be changed.
template <class T, class V> Ox::ErrorStatus assignIf(bool writable, T& field, V&& value) {
    if (!writable) return Ox::eNotOpenForWrite;
    field = std::forward<V>(value);
    return Ox::eOk;
}

// Makes `entity` resident under `owner` (a block, or a block reference for
// attributes) and open for write, with the database's defaults for what its
// maker left unset. eNullObjectPointer, eAlreadyInDb, eNoDatabase,
// eNotOpenForWrite (the owner is not open for write).
Ox::ErrorStatus appendOwnedEntity(OxDbObject& owner, OxDbEntity* entity, OxDbObjectId& id);

inline Store& storeOf(const OxDbCell* cell) { return cell->database->impl()->store; }
inline OxDbDatabase::Impl& implOf(const OxDbDatabase* db) { return *db->impl(); }

// Records a misuse of `cell`'s object ("... not open for write").
void recordMisuse(const OxDbCell* cell, std::wstring_view what);

// Makes `obj` resident in `db` (the reader's pending cell if any), owned by
// `owner`, open for write for the caller, and marks the drawing modified.
OxDbObjectId makeResidentForWrite(OxDbDatabase* db, OxDbObject* obj, const OxDbObjectId& owner);

// The database that a resident object lives in, else the working database.
OxDbDatabase* databaseOrWorking(const OxDbObject* obj);

// The object of an id, whatever its open state (null when there is none).
inline OxDbObject* objectOf(const OxDbObjectId& id) {
    OxDbCell* cell = id.cell();
    return cell ? cell->object.get() : nullptr;
}

// Tells the undo history, when it records a command, that `cell`'s object
// is about to change (or be erased): every change goes through here or
// through a write open.
inline void recordChange(OxDbCell* cell) {
    if (UndoHistory* history = cell->database->impl()->recording) history->record(cell);
}

// The host changing an object it manages (a layout's tab order when
// another tab goes away), whatever the object's open state.
template <class T, class F> void changeDirect(T* obj, F change) {
    OxDbCell* cell = obj->cell();
    recordChange(cell);
    const bool wasWriter = cell->writer;
    cell->writer = true;
    change(*obj);
    cell->writer = wasWriter;
}

// Host-made records and entities, added without opening their owner and
// left closed (the caller may hold the owner open). The caller has checked
// the record's name (unique, acceptable).
OxDbObjectId addRecordDirect(OxDbSymbolTable* table, OxDbSymbolTableRecord* record);
OxDbObjectId appendEntityDirect(OxDbBlockTableRecord* block, OxDbEntity* entity);

// Makes a paper-space layout `name` (unused, valid) with its block and its
// paper-space viewport (number 1), as the last tab.
Ox::ErrorStatus createPaperLayout(OxDbDatabase* db, const wchar_t* name, OxDbObjectId& layoutId, OxDbObjectId& blockId);

// The entry of the plot style name dictionary called `name`, made (as a
// placeholder) when missing. eInvalidInput for an empty name.
Ox::ErrorStatus plotStyleEntry(OxDbDatabase* db, const wchar_t* name, OxDbObjectId& id);

} // namespace pavo::db
