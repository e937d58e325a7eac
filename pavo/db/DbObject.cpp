#include <string>

#include "DbBuild.h"
#include "DbInternal.h"
#include "ErasedReferences.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "RxDefine.h"
#include "SymbolTableImpl.h"

OX_RX_DEFINE_MEMBERS(OxDbObject, OxRxObject)
OX_RX_DEFINE_MEMBERS(OxDbPlaceHolder, OxDbObject)

namespace pavo::db {

void recordMisuse(const OxDbCell* cell, std::wstring_view what) {
    std::wstring text(what);
    if (cell && cell->object) {
        text += L" (";
        text += cell->object->isA()->name();
        text += L" ";
        text += OxDbHandle(cell->handle).toString();
        text += L")";
    }
    if (cell && cell->database) storeOf(cell).misuses.push_back(Misuse{std::move(text)});
}

OxDbObjectId makeResidentForWrite(OxDbDatabase* db, OxDbObject* obj, const OxDbObjectId& owner) {
    Store& store = db->impl()->store;
    OxDbObjectId id = store.attach(obj, owner);
    OxDbCell* cell = id.cell();
    cell->writer = true;
    cell->modified = true;
    store.open.insert(cell);
    db->impl()->modified = true;
    return id;
}

OxDbDatabase* databaseOrWorking(const OxDbObject* obj) {
    if (obj && obj->database()) return obj->database();
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

OxDbObjectId createOwnedObject(OxDbDatabase* db, OxDbObject* obj, const OxDbObjectId& owner, OxDbCell* cell) {
    if (!db || !obj || obj->isDatabaseResident() || (cell && cell->object)) return OxDbObjectId();
    return db->impl()->store.attach(obj, owner, cell);
}

OxDbObjectId createRootObject(OxDbDatabase* db, OxDbObject* obj, OxDbCell* cell) {
    return createOwnedObject(db, obj, OxDbObjectId(), cell);
}

OxDbObject* peekObject(const OxDbObjectId& id) { return objectOf(id); }

// Keeps a symbol table's name index in step with the erased flag.
static Ox::ErrorStatus setErasedFlag(OxDbCell* cell, bool erasing) {
    recordChange(cell);
    if (auto* table = OxDbSymbolTable::cast(objectOf(cell->owner))) {
        Ox::ErrorStatus es = table->impl()->onErase(cell, erasing);
        if (es != Ox::eOk) return es;
    }
    cell->erased = erasing;
    return Ox::eOk;
}

void setErasedDirect(const OxDbObjectId& id, bool erased) {
    OxDbCell* cell = id.cell();
    if (cell && cell->object && cell->erased != erased) setErasedFlag(cell, erased);
}

} // namespace pavo::db

using namespace pavo::db;

namespace {

bool isOnLockedLayer(const OxDbObject& obj) {
    const auto* entity = OxDbEntity::cast(&obj);
    if (!entity) return false;
    const auto* layer = OxDbLayerTableRecord::cast(objectOf(entity->layerId()));
    return layer && layer->isLocked();
}

// Objects a drawing cannot do without.
bool isProtected(const OxDbCell* cell) {
    const OxDbDatabase::Impl& impl = *cell->database->impl();
    const OxDbObjectId id(const_cast<OxDbCell*>(cell));
    return id == impl.layerZero || id == impl.clayer || id == impl.byLayerLinetype || id == impl.byBlockLinetype ||
           id == impl.continuousLinetype || id == impl.modelSpace || id == impl.layerTable ||
           id == impl.linetypeTable || id == impl.blockTable || id == impl.namedObjects;
}

} // namespace

OxDbObject::OxDbObject() = default;
OxDbObject::~OxDbObject() = default;

OxDbObjectId OxDbObject::objectId() const { return OxDbObjectId(m_cell); }
OxDbObjectId OxDbObject::ownerId() const { return m_cell ? m_cell->owner : OxDbObjectId(); }
OxDbDatabase* OxDbObject::database() const { return m_cell ? m_cell->database : nullptr; }
bool OxDbObject::isErased() const { return m_cell && m_cell->erased; }
bool OxDbObject::isWriteEnabled() const { return !m_cell || m_cell->writer; }
bool OxDbObject::isReadEnabled() const { return !m_cell || m_cell->writer || m_cell->readers > 0; }
bool OxDbObject::isModified() const { return !m_cell || m_cell->modified; }
OxDbObject* OxDbObject::cloneState() const { return nullptr; }

Ox::ErrorStatus OxDbObject::close() {
    if (!m_cell) return Ox::eOk; // a non-resident object is never open
    if (m_cell->writer) {
        m_cell->writer = false;
    } else if (m_cell->readers > 0) {
        --m_cell->readers;
    } else {
        recordMisuse(m_cell, L"close() of an object that is not open");
        return Ox::eNotApplicable;
    }
    if (!m_cell->writer && m_cell->readers == 0) storeOf(m_cell).open.erase(m_cell);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbObject::erase(bool erasing) {
    if (!m_cell) return Ox::eNotApplicable; // nothing to erase: delete it
    if (!m_cell->writer) return Ox::eNotOpenForWrite;
    if (erasing && m_cell->erased) return Ox::eWasErased;
    if (!erasing && !m_cell->erased) return Ox::eWasNotErased;
    if (erasing && isProtected(m_cell)) return Ox::eCannotBeErasedByCaller;
    Ox::ErrorStatus es = setErasedFlag(m_cell, erasing);
    if (es == Ox::eOk) {
        m_cell->modified = true;
        m_cell->database->impl()->modified = true;
        if (erasing) dropReferencesTo(m_cell);
    }
    return es;
}

Ox::ErrorStatus OxDbObject::upgradeOpen() {
    if (!m_cell || m_cell->writer) return Ox::eOk;
    if (m_cell->readers != 1) return m_cell->readers == 0 ? Ox::eNotApplicable : Ox::eHadMultipleReaders;
    if (isOnLockedLayer(*this)) return Ox::eOnLockedLayer;
    m_cell->readers = 0;
    m_cell->writer = true;
    recordChange(m_cell);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbObject::downgradeOpen() {
    if (!m_cell) return Ox::eOk;
    if (!m_cell->writer) return Ox::eNotOpenForWrite;
    m_cell->writer = false;
    m_cell->readers = 1;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbObject::assertWriteEnabled(bool, bool recordModified) {
    if (!m_cell) return Ox::eOk;
    if (!m_cell->writer) return Ox::eNotOpenForWrite;
    if (recordModified) {
        m_cell->modified = true;
        m_cell->database->impl()->modified = true;
    }
    return Ox::eOk;
}

bool OxDbObject::writeCheck() const {
    if (!m_cell) return true;
    if (!m_cell->writer) {
        recordMisuse(m_cell, L"a setter was called on an object not open for write");
        return false;
    }
    m_cell->modified = true;
    m_cell->database->impl()->modified = true;
    return true;
}

Ox::ErrorStatus oxdbOpenObjectAs(OxDbObject*& obj, const OxDbObjectId& id, const OxRxClass* cls, OxDb::OpenMode mode,
                                 bool openErased) {
    obj = nullptr;
    OxDbCell* cell = id.cell();
    if (!cell) return Ox::eNullObjectId;
    OxDbObject* target = cell->object.get();
    if (!target) return Ox::eNullObjectPointer;
    if (cell->erased && !openErased) return Ox::eWasErased;
    if (cls && !target->isKindOf(cls)) return Ox::eNotThatKindOfClass;
    Store& store = storeOf(cell);
    if (mode == OxDb::kForWrite) {
        if (cell->writer) return Ox::eWasOpenForWrite;
        if (cell->readers > 0) return Ox::eWasOpenForRead;
        if (isOnLockedLayer(*target)) return Ox::eOnLockedLayer;
        cell->writer = true;
        store.open.insert(cell);
        recordChange(cell);
    } else if (mode == OxDb::kForRead || mode == OxDb::kForNotify) {
        if (cell->writer) return Ox::eWasOpenForWrite;
        if (cell->readers++ == 0) store.open.insert(cell);
    } else {
        return Ox::eInvalidInput;
    }
    obj = target;
    return Ox::eOk;
}

OxDbObject* OxDbPlaceHolder::cloneState() const { return new OxDbPlaceHolder(); }
