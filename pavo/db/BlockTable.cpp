#include "BlockNesting.h"
#include "DbInternal.h"
#include "OxDbEntity.h"
#include "RxDefine.h"
#include "SymbolTableImpl.h"

OX_RX_DEFINE_MEMBERS(OxDbBlockTable, OxDbSymbolTable)
OX_RX_DEFINE_MEMBERS(OxDbBlockTableRecord, OxDbSymbolTableRecord)

using namespace pavo::db;

const OxRxClass* OxDbBlockTable::recordClass() const { return OxDbBlockTableRecord::desc(); }

namespace {

// What a new entity takes from its database when its maker left it unset.
void applyEntityDefaults(OxDbDatabase* db, OxDbEntity* entity) {
    if (entity->layerId().isNull()) entity->setLayer(db->clayer().isNull() ? db->layerZero() : db->clayer());
    if (entity->linetypeId().isNull()) entity->setLinetype(db->celtype());
    if (entity->materialId().isNull()) entity->setMaterial(db->byLayerMaterial());
}

// Viewports are numbered in the drawing: the first of a layout is its
// paper-space view (1), later ones take the next free number.
void numberViewport(OxDbDatabase* db, const OxDbBlockTableRecord& block, OxDbViewport* viewport) {
    if (viewport->number() != 0) return;
    bool blockHasViewport = false;
    for (const OxDbCell* cell : block.impl()->entities)
        if (!cell->erased && OxDbViewport::cast(cell->object.get())) blockHasViewport = true;
    if (!blockHasViewport) {
        viewport->setNumber(1);
        return;
    }
    short highest = 1;
    auto* blocks = OxDbBlockTable::cast(objectOf(db->blockTableId()));
    for (const OxDbCell* blockCell : blocks ? blocks->impl()->records : std::vector<OxDbCell*>{}) {
        const auto* other = OxDbBlockTableRecord::cast(blockCell->object.get());
        if (!other) continue;
        for (const OxDbCell* cell : other->impl()->entities)
            if (const auto* v = OxDbViewport::cast(cell->object.get()); v && v->number() > highest)
                highest = v->number();
    }
    viewport->setNumber(static_cast<short>(highest + 1));
}

// Whether appending `entity` to `block` would make the block insert itself.
bool closesInsertionLoop(const OxDbBlockTableRecord& block, const OxDbEntity* entity) {
    const auto* reference = OxDbBlockReference::cast(entity);
    OxDbDatabase* db = block.database();
    return reference && db && !implOf(db).store.loading &&
           !loopIfInserted(block.objectId(), reference->blockTableRecord()).empty();
}

} // namespace

namespace pavo::db {

// Makes `entity` resident in `db` under `owner` (a block or a block
// reference) and open for write, with the database's defaults.
Ox::ErrorStatus appendOwnedEntity(OxDbObject& owner, OxDbEntity* entity, OxDbObjectId& id) {
    id.setNull();
    OxDbDatabase* db = owner.database();
    Ox::ErrorStatus es = Ox::eOk;
    if (!entity)
        es = Ox::eNullObjectPointer;
    else if (entity->isDatabaseResident())
        es = Ox::eAlreadyInDb;
    else if (!db)
        es = Ox::eNoDatabase;
    else if (!owner.isWriteEnabled())
        es = Ox::eNotOpenForWrite;
    if (es != Ox::eOk) {
        if (es == Ox::eNotOpenForWrite)
            recordMisuse(owner.cell(), L"an entity was appended to an object not open for write");
        if (db) db->impl()->store.pendingCell = nullptr;
        return es;
    }
    id = makeResidentForWrite(db, entity, owner.objectId());
    applyEntityDefaults(db, entity);
    return Ox::eOk;
}

} // namespace pavo::db

OxDbBlockTableRecord::OxDbBlockTableRecord() : m_impl(new Impl) {}
OxDbBlockTableRecord::~OxDbBlockTableRecord() { delete m_impl; }

OxDbObject* OxDbBlockTableRecord::cloneState() const {
    auto* copy = new OxDbBlockTableRecord();
    copy->setName(getName());
    *copy->m_impl = *m_impl;
    copy->m_layout = m_layout;
    copy->m_origin = m_origin;
    copy->m_comments = m_comments;
    return copy;
}

Ox::ErrorStatus OxDbBlockTableRecord::appendOxDbEntity(OxDbObjectId& id, OxDbEntity* entity) {
    if (closesInsertionLoop(*this, entity)) {
        id.setNull();
        implOf(database()).store.pendingCell = nullptr;
        return Ox::eSelfReference;
    }
    if (auto* viewport = OxDbViewport::cast(entity); viewport && database() && !entity->isDatabaseResident())
        numberViewport(database(), *this, viewport);
    Ox::ErrorStatus es = appendOwnedEntity(*this, entity, id);
    if (es == Ox::eOk) m_impl->entities.push_back(id.cell());
    return es;
}

Ox::ErrorStatus OxDbBlockTableRecord::newIterator(OxDbBlockTableRecordIterator*& it, bool atBeginning,
                                                  bool skipDeleted) const {
    it = new OxDbBlockTableRecordIterator(this, atBeginning, skipDeleted);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbBlockTableRecord::getBlockReferenceIds(OxDbObjectIdArray& ids, bool, bool) const {
    ids.removeAll();
    OxDbDatabase* db = database();
    if (!db) return Ox::eNoDatabase;
    // The index is dropped whenever a reference is added or pointed at
    // another block, so only erasure needs looking at, in the cells.
    const std::vector<OxDbCell*>& references = db->impl()->store.referencesTo(this->cell());
    ids.setPhysicalLength(static_cast<int>(references.size()));
    for (OxDbCell* cell : references) {
        const OxDbCell* owner = cell->owner.cell();
        if (!cell->erased && (!owner || !owner->erased)) ids.append(OxDbObjectId(cell));
    }
    return Ox::eOk;
}

int OxDbBlockTableRecord::numEntities() const {
    int n = 0;
    for (const OxDbCell* cell : m_impl->entities)
        n += cell->erased ? 0 : 1;
    return n;
}

Ox::ErrorStatus OxDbBlockTableRecord::setLayoutId(const OxDbObjectId& id) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_layout = id;
    return Ox::eOk;
}

void OxDbBlockTableRecord::setOrigin(const OxGePoint3d& p) {
    if (writeCheck()) m_origin = p;
}

bool OxDbBlockTableRecord::hasAttributeDefinitions() const {
    for (const OxDbCell* cell : m_impl->entities)
        if (!cell->erased && OxDbAttributeDefinition::cast(cell->object.get())) return true;
    return false;
}

Ox::ErrorStatus OxDbBlockTableRecord::setComments(const wchar_t* text) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_comments = text;
    return Ox::eOk;
}

// ------------------------------------------------------------ iterator

OxDbBlockTableRecordIterator::OxDbBlockTableRecordIterator(const OxDbBlockTableRecord* block, bool atBeginning,
                                                           bool skipDeleted)
    : m_block(block) {
    start(atBeginning, skipDeleted);
}

OxDbBlockTableRecordIterator::~OxDbBlockTableRecordIterator() = default;

void OxDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    m_skipDeleted = skipDeleted;
    m_pos = atBeginning ? 0 : static_cast<long>(m_block->impl()->entities.size()) - 1;
    skip(atBeginning);
}

bool OxDbBlockTableRecordIterator::done() const {
    return m_pos < 0 || m_pos >= static_cast<long>(m_block->impl()->entities.size());
}

void OxDbBlockTableRecordIterator::skip(bool forward) {
    if (!m_skipDeleted) return;
    while (!done() && m_block->impl()->entities[static_cast<size_t>(m_pos)]->erased)
        m_pos += forward ? 1 : -1;
}

void OxDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_skipDeleted = skipDeleted;
    m_pos += forward ? 1 : -1;
    skip(forward);
}

Ox::ErrorStatus OxDbBlockTableRecordIterator::getEntityId(OxDbObjectId& id) const {
    if (done()) {
        id.setNull();
        return Ox::eOutOfRange;
    }
    id = OxDbObjectId(m_block->impl()->entities[static_cast<size_t>(m_pos)]);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbBlockTableRecordIterator::getEntity(OxDbEntity*& entity, OxDb::OpenMode mode,
                                                        bool openErased) const {
    OxDbObjectId id;
    Ox::ErrorStatus es = getEntityId(id);
    if (es != Ox::eOk) {
        entity = nullptr;
        return es;
    }
    return oxdbOpenObject(entity, id, mode, openErased);
}

Ox::ErrorStatus OxDbBlockTableRecordIterator::seek(const OxDbObjectId& id) {
    const auto& entities = m_block->impl()->entities;
    for (size_t i = 0; i < entities.size(); ++i) {
        if (entities[i] == id.cell()) {
            m_pos = static_cast<long>(i);
            return Ox::eOk;
        }
    }
    return Ox::eKeyNotFound;
}

namespace pavo::db {

OxDbObjectId appendEntityDirect(OxDbBlockTableRecord* block, OxDbEntity* entity) {
    OxDbDatabase* db = block->database();
    recordChange(block->cell());
    if (auto* viewport = OxDbViewport::cast(entity)) numberViewport(db, *block, viewport);
    OxDbObjectId id = makeResidentForWrite(db, entity, block->objectId());
    applyEntityDefaults(db, entity);
    block->impl()->entities.push_back(id.cell());
    entity->close();
    return id;
}

} // namespace pavo::db
