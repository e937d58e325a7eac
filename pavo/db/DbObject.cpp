#include <string>

#include "DbBuild.h"
#include "DbInternal.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "RxDefine.h"
#include "SymbolTableImpl.h"

OX_RX_DEFINE_MEMBERS(OxDbObject, OxRxObject)
OX_RX_DEFINE_MEMBERS(OxDbPlaceHolder, OxDbObject)

namespace pavo::db {

void recordMisuse(const OxDbStub* stub, std::wstring_view what) {
    std::wstring text(what);
    if (stub && stub->object) {
        text += L" (";
        text += stub->object->isA()->name();
        text += L" ";
        text += OxDbHandle(stub->handle).toString();
        text += L")";
    }
    if (stub && stub->database) storeOf(stub).misuses.push_back(Misuse{std::move(text)});
}

OxDbObjectId makeResidentForWrite(OxDbDatabase* db, OxDbObject* obj, const OxDbObjectId& owner) {
    Store& store = db->impl()->store;
    OxDbObjectId id = store.attach(obj, owner);
    OxDbStub* stub = id.stub();
    stub->writer = true;
    stub->modified = true;
    store.open.insert(stub);
    db->impl()->modified = true;
    return id;
}

OxDbDatabase* databaseOrWorking(const OxDbObject* obj) {
    if (obj && obj->database()) return obj->database();
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

OxDbObjectId createOwnedObject(OxDbDatabase* db, OxDbObject* obj, const OxDbObjectId& owner, OxDbStub* stub) {
    if (!db || !obj || obj->isDatabaseResident() || (stub && stub->object)) return OxDbObjectId();
    return db->impl()->store.attach(obj, owner, stub);
}

OxDbObjectId createRootObject(OxDbDatabase* db, OxDbObject* obj, OxDbStub* stub) {
    return createOwnedObject(db, obj, OxDbObjectId(), stub);
}

OxDbObject* peekObject(const OxDbObjectId& id) { return objectOf(id); }

// Keeps a symbol table's name index in step with the erased flag.
static Ox::ErrorStatus setErasedFlag(OxDbStub* stub, bool erasing) {
    if (auto* table = OxDbSymbolTable::cast(objectOf(stub->owner))) {
        Ox::ErrorStatus es = table->impl()->onErase(stub, erasing);
        if (es != Ox::eOk) return es;
    }
    stub->erased = erasing;
    return Ox::eOk;
}

void setErasedDirect(const OxDbObjectId& id, bool erased) {
    OxDbStub* stub = id.stub();
    if (stub && stub->object && stub->erased != erased) setErasedFlag(stub, erased);
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
bool isProtected(const OxDbStub* stub) {
    const OxDbDatabase::Impl& impl = *stub->database->impl();
    const OxDbObjectId id(const_cast<OxDbStub*>(stub));
    return id == impl.layerZero || id == impl.clayer || id == impl.byLayerLinetype || id == impl.byBlockLinetype ||
           id == impl.continuousLinetype || id == impl.modelSpace || id == impl.layerTable ||
           id == impl.linetypeTable || id == impl.blockTable || id == impl.namedObjects;
}

} // namespace

OxDbObject::OxDbObject() = default;
OxDbObject::~OxDbObject() = default;

OxDbObjectId OxDbObject::objectId() const { return OxDbObjectId(m_stub); }
OxDbObjectId OxDbObject::ownerId() const { return m_stub ? m_stub->owner : OxDbObjectId(); }
OxDbDatabase* OxDbObject::database() const { return m_stub ? m_stub->database : nullptr; }
bool OxDbObject::isErased() const { return m_stub && m_stub->erased; }
bool OxDbObject::isWriteEnabled() const { return !m_stub || m_stub->writer; }
bool OxDbObject::isReadEnabled() const { return !m_stub || m_stub->writer || m_stub->readers > 0; }
bool OxDbObject::isModified() const { return !m_stub || m_stub->modified; }
OxDbObject* OxDbObject::cloneState() const { return nullptr; }

Ox::ErrorStatus OxDbObject::close() {
    if (!m_stub) return Ox::eOk; // a non-resident object is never open
    if (m_stub->writer) {
        m_stub->writer = false;
    } else if (m_stub->readers > 0) {
        --m_stub->readers;
    } else {
        recordMisuse(m_stub, L"close() of an object that is not open");
        return Ox::eNotApplicable;
    }
    if (!m_stub->writer && m_stub->readers == 0) storeOf(m_stub).open.erase(m_stub);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbObject::erase(bool erasing) {
    if (!m_stub) return Ox::eNotApplicable; // nothing to erase: delete it
    if (!m_stub->writer) return Ox::eNotOpenForWrite;
    if (erasing && m_stub->erased) return Ox::eWasErased;
    if (!erasing && !m_stub->erased) return Ox::eWasNotErased;
    if (erasing && isProtected(m_stub)) return Ox::eCannotBeErasedByCaller;
    Ox::ErrorStatus es = setErasedFlag(m_stub, erasing);
    if (es == Ox::eOk) {
        m_stub->modified = true;
        m_stub->database->impl()->modified = true;
    }
    return es;
}

Ox::ErrorStatus OxDbObject::upgradeOpen() {
    if (!m_stub || m_stub->writer) return Ox::eOk;
    if (m_stub->readers != 1) return m_stub->readers == 0 ? Ox::eNotApplicable : Ox::eHadMultipleReaders;
    if (isOnLockedLayer(*this)) return Ox::eOnLockedLayer;
    m_stub->readers = 0;
    m_stub->writer = true;
    if (const auto& hook = m_stub->database->impl()->onFirstWriteOpen) hook(this);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbObject::downgradeOpen() {
    if (!m_stub) return Ox::eOk;
    if (!m_stub->writer) return Ox::eNotOpenForWrite;
    m_stub->writer = false;
    m_stub->readers = 1;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbObject::assertWriteEnabled(bool, bool recordModified) {
    if (!m_stub) return Ox::eOk;
    if (!m_stub->writer) return Ox::eNotOpenForWrite;
    if (recordModified) {
        m_stub->modified = true;
        m_stub->database->impl()->modified = true;
    }
    return Ox::eOk;
}

bool OxDbObject::writeCheck() const {
    if (!m_stub) return true;
    if (!m_stub->writer) {
        recordMisuse(m_stub, L"a setter was called on an object not open for write");
        return false;
    }
    m_stub->modified = true;
    m_stub->database->impl()->modified = true;
    return true;
}

Ox::ErrorStatus oxdbOpenObjectAs(OxDbObject*& obj, const OxDbObjectId& id, const OxRxClass* cls, OxDb::OpenMode mode,
                                 bool openErased) {
    obj = nullptr;
    OxDbStub* stub = id.stub();
    if (!stub) return Ox::eNullObjectId;
    OxDbObject* target = stub->object.get();
    if (!target) return Ox::eNullObjectPointer;
    if (stub->erased && !openErased) return Ox::eWasErased;
    if (cls && !target->isKindOf(cls)) return Ox::eNotThatKindOfClass;
    Store& store = storeOf(stub);
    if (mode == OxDb::kForWrite) {
        if (stub->writer) return Ox::eWasOpenForWrite;
        if (stub->readers > 0) return Ox::eWasOpenForRead;
        if (isOnLockedLayer(*target)) return Ox::eOnLockedLayer;
        stub->writer = true;
        store.open.insert(stub);
        if (const auto& hook = stub->database->impl()->onFirstWriteOpen) hook(target);
    } else if (mode == OxDb::kForRead || mode == OxDb::kForNotify) {
        if (stub->writer) return Ox::eWasOpenForWrite;
        if (stub->readers++ == 0) store.open.insert(stub);
    } else {
        return Ox::eInvalidInput;
    }
    obj = target;
    return Ox::eOk;
}

OxDbObject* OxDbPlaceHolder::cloneState() const { return new OxDbPlaceHolder(); }
