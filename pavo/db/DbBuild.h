// Building a database piece by piece: used by the drawing reader (which
// starts from OxDbDatabase(false)) and by the new-drawing defaults.
//
// How a reader builds a drawing:
//   OxDbDatabase* db = new OxDbDatabase(false);   // every Impl id is null
//   Store& store = db->impl()->store;
//   // Roots (tables, the named-objects dictionary) have no owner:
//   auto* layers = new OxDbLayerTable;
//   db->impl()->layerTable = createRootObject(db, layers, store.cellForHandle(savedHandle));
//   // Everything else goes through the public API; to keep a saved handle,
//   // call store.setPendingCell(store.cellForHandle(h)) right before
//   // table->add / dictionary->setAt / block->appendOxDbEntity /
//   // reference->appendAttribute. Those leave the object open for write:
//   // close it. Open the owner with oxdbOpenObject first, as any caller.
//   // Set the remaining Impl fields (clayer, layerZero, ...) directly and
//   // finish with db->setModified(false).
// References to objects not read yet: store.cellForHandle(h) gives a cell
// without an object; OxDbObjectId(cell) can be stored in other objects.
#pragma once

#include "DbStore.h"
#include "OxDbObject.h"
#include "OxDbObjectId.h"

namespace pavo::db {

// Makes `obj` (made with new, not resident) resident in `db` with no owner,
// not open. `cell` is the cell to use (for example
// store.cellForHandle(savedHandle)) or null for a new handle. Returns the
// id; null (and `obj` untouched) when `db` or `obj` is null, `obj` is
// already resident or `cell` already holds an object.
OxDbObjectId createRootObject(OxDbDatabase* db, OxDbObject* obj, OxDbCell* cell = nullptr);

// Like createRootObject, for an object owned by `owner` that no table,
// dictionary or block lists (none in the current object model; kept for
// readers of future object kinds).
OxDbObjectId createOwnedObject(OxDbDatabase* db, OxDbObject* obj, const OxDbObjectId& owner, OxDbCell* cell = nullptr);

// The object of `id` without opening it (null when there is none). For
// code that walks a whole database (saving, usage data, tests); it must
// not change what it reads: changes go through oxdbOpenObject.
OxDbObject* peekObject(const OxDbObjectId& id);
template <class T> T* peek(const OxDbObjectId& id) { return T::cast(peekObject(id)); }

// Marks a resident object erased or not without opening it (a reader
// restoring erased records). Symbol table name indexes follow.
void setErasedDirect(const OxDbObjectId& id, bool erased);

} // namespace pavo::db
