// The base of every database object, and opening objects by id.
#pragma once

#include "OxDb.h"
#include "OxDbObjectId.h"
#include "OxRx.h"
#include "PavoExport.h"
#include "oxstatus.h"

class OxDbDatabase;
class OxDbDwgFiler;
class OxDbCell;

// Objects live in their database once added; a resident object is reached
// only through oxdbOpenObject and given back with close(). An object made
// with new and not yet added is non-resident: it may be changed freely and
// deleted by its maker.
class PAVO_HOST_API OxDbObject : public OxRxObject {
    OX_RX_DECLARE_MEMBERS(OxDbObject)
public:
    OxDbObject();
    ~OxDbObject() override;
    OxDbObject(const OxDbObject&) = delete;
    OxDbObject& operator=(const OxDbObject&) = delete;

    OxDbObjectId objectId() const;
    OxDbObjectId ownerId() const;
    OxDbHandle getDbHandle() const { return objectId().handle(); }
    OxDbDatabase* database() const;
    bool isDatabaseResident() const { return m_cell != nullptr; }

    // Ends one open (read or write).
    Ox::ErrorStatus close();
    // Erases (true) or unerases (false); needs a write open.
    Ox::ErrorStatus erase(bool erasing = true);
    bool isErased() const;

    // Read open held by the caller alone -> write open.
    Ox::ErrorStatus upgradeOpen();
    // Write open -> read open.
    Ox::ErrorStatus downgradeOpen();
    // Marks the object changed; fails unless it is open for write.
    Ox::ErrorStatus assertWriteEnabled(bool autoUndo = true, bool recordModified = true);
    bool isWriteEnabled() const;
    bool isReadEnabled() const;
    bool isNewObject() const { return m_cell == nullptr; }
    bool isModified() const;

    // Host internals.
    OxDbCell* cell() const { return m_cell; }
    void attachCell(OxDbCell* cell) { m_cell = cell; }

    // A copy of this object's state, non-resident (used by undo and tests).
    virtual OxDbObject* cloneState() const;

protected:
    // Called by setters: true when the object may be changed (non-resident,
    // or open for write); otherwise records a misuse of the database.
    bool writeCheck() const;

private:
    OxDbCell* m_cell = nullptr;
};

// Opens the object `id` as a `cls`; the core of oxdbOpenObject.
PAVO_HOST_API Ox::ErrorStatus oxdbOpenObjectAs(OxDbObject*& obj, const OxDbObjectId& id, const OxRxClass* cls,
                                               OxDb::OpenMode mode, bool openErased);

// Opens `id` for `mode` as a T (or a class derived from it).
// eNullObjectId, eWasErased (unless openErased), eNotThatKindOfClass,
// eWasOpenForWrite (read or write asked while it is open for write),
// eWasOpenForRead (write asked while it is open for read), eOnLockedLayer
// (write asked for an entity on a locked layer).
template <class T>
Ox::ErrorStatus oxdbOpenObject(T*& obj, const OxDbObjectId& id, OxDb::OpenMode mode, bool openErased = false) {
    OxDbObject* p = nullptr;
    Ox::ErrorStatus es = oxdbOpenObjectAs(p, id, T::desc(), mode, openErased);
    obj = es == Ox::eOk ? static_cast<T*>(p) : nullptr;
    return es;
}

// A placeholder object: the entries of the plot style name dictionary.
class PAVO_HOST_API OxDbPlaceHolder : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbPlaceHolder)
public:
    OxDbObject* cloneState() const override;
};
