#include <algorithm>
#include <utility>

#include "DbInternal.h"
#include "OxDbServices.h"
#include "RxDefine.h"
#include "SymbolTableImpl.h"
#include "base/CaseFold.h"

OX_RX_DEFINE_MEMBERS(OxDbSymbolTable, OxDbObject)
OX_RX_DEFINE_MEMBERS(OxDbSymbolTableRecord, OxDbObject)

using namespace pavo::db;

std::wstring_view pavo::db::recordName(const OxDbCell* cell) {
    const auto* record = OxDbSymbolTableRecord::cast(cell ? cell->object.get() : nullptr);
    return record ? record->name().view() : std::wstring_view();
}

OxDbCell* OxDbSymbolTable::Impl::find(std::wstring_view name) const { return byName.find(name); }

OxDbCell* OxDbSymbolTable::Impl::findErased(std::wstring_view name) const {
    for (OxDbCell* cell : records)
        if (cell->erased && pavo::equalNoCase(recordName(cell), name)) return cell;
    return nullptr;
}

bool OxDbSymbolTable::Impl::insert(OxDbCell* cell) {
    if (!byName.insert(recordName(cell), cell)) return false;
    records.push_back(cell);
    ++live;
    return true;
}

Ox::ErrorStatus OxDbSymbolTable::Impl::onErase(OxDbCell* cell, bool erasing) {
    const std::wstring_view name = recordName(cell);
    if (erasing) {
        byName.erase(name, cell);
        --live;
        return Ox::eOk;
    }
    if (!byName.insert(name, cell)) return Ox::eDuplicateRecordName;
    ++live;
    return Ox::eOk;
}

OxDbSymbolTable::Impl::Order OxDbSymbolTable::Impl::inNameOrder() const {
    if (nameOrder && nameOrderGeneration == byName.generation()) return nameOrder;
    // Each name looked up once, not at every comparison.
    std::vector<std::pair<std::wstring_view, OxDbCell*>> named;
    named.reserve(static_cast<std::size_t>(std::max(live, 0)));
    for (OxDbCell* cell : records)
        if (!cell->erased) named.emplace_back(recordName(cell), cell);
    std::sort(named.begin(), named.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    auto cells = std::make_shared<std::vector<OxDbCell*>>();
    cells->reserve(named.size());
    for (const auto& [name, cell] : named)
        cells->push_back(cell);
    nameOrder = std::move(cells);
    nameOrderGeneration = byName.generation();
    return nameOrder;
}

void OxDbSymbolTable::Impl::rename(OxDbCell* cell, std::wstring_view oldName, std::wstring_view newName) {
    byName.erase(oldName, cell);
    byName.insert(newName, cell);
}

namespace {

// Block and layer names may start with '*': the host's own records (model
// and paper space, anonymous blocks, system layers such as
// "*PAVO_CONSTRAINTS"), which users cannot type. The rest of the name
// follows the common rule.
Ox::ErrorStatus checkRecordName(const OxDbSymbolTable& table, const wchar_t* name) {
    if (!name) return Ox::eInvalidInput;
    const bool systemNames = OxDbBlockTable::cast(&table) || OxDbLayerTable::cast(&table);
    if (systemNames && name[0] == L'*' && name[1] != L'\0') ++name;
    return oxdbGetSymbolSvc()->checkSymbolName(name, true) == Ox::eOk ? Ox::eOk : Ox::eInvalidSymbolTableName;
}

} // namespace

OxDbSymbolTable::OxDbSymbolTable() : m_impl(new Impl) {}
OxDbSymbolTable::~OxDbSymbolTable() { delete m_impl; }

Ox::ErrorStatus OxDbSymbolTable::getIdAt(const wchar_t* name, OxDbObjectId& id, bool getErased) const {
    id.setNull();
    if (!name) return Ox::eInvalidInput;
    OxDbCell* cell = m_impl->find(name);
    if (!cell && getErased) cell = m_impl->findErased(name);
    if (!cell) return Ox::eKeyNotFound;
    id = OxDbObjectId(cell);
    return Ox::eOk;
}

bool OxDbSymbolTable::has(const wchar_t* name) const { return name && m_impl->find(name) != nullptr; }

bool OxDbSymbolTable::has(const OxDbObjectId& id) const {
    return !id.isNull() && cell() && id.cell()->owner == objectId() && !id.isErased();
}

Ox::ErrorStatus OxDbSymbolTable::newIterator(OxDbSymbolTableIterator*& it, bool atBeginning, bool skipDeleted) const {
    it = new OxDbSymbolTableIterator(m_impl, atBeginning, skipDeleted);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbSymbolTable::newIteratorInNameOrder(OxDbSymbolTableIterator*& it) const {
    it = new OxDbSymbolTableIterator(m_impl, m_impl->inNameOrder());
    return Ox::eOk;
}

int OxDbSymbolTable::numEntries() const { return m_impl->live; }

namespace {
template <class Table> OxDbObject* cloneTable(const Table& table) {
    auto* copy = new Table();
    *copy->impl() = *table.impl();
    return copy;
}
} // namespace

OxDbObject* OxDbLayerTable::cloneState() const { return cloneTable(*this); }
OxDbObject* OxDbLinetypeTable::cloneState() const { return cloneTable(*this); }
OxDbObject* OxDbBlockTable::cloneState() const { return cloneTable(*this); }

Ox::ErrorStatus OxDbSymbolTable::add(OxDbObjectId& id, OxDbSymbolTableRecord* record) {
    id.setNull();
    OxDbDatabase* db = database();
    Ox::ErrorStatus es = Ox::eOk;
    if (!record)
        es = Ox::eNullObjectPointer;
    else if (record->isDatabaseResident())
        es = Ox::eAlreadyInDb;
    else if (!db)
        es = Ox::eNoDatabase;
    else if (!record->isKindOf(recordClass()))
        es = Ox::eNotThatKindOfClass;
    else if (!writeCheck())
        es = Ox::eNotOpenForWrite;
    else
        es = checkRecordName(*this, record->getName());
    if (es == Ox::eOk && m_impl->find(record->name().view())) es = Ox::eDuplicateRecordName;
    if (es != Ox::eOk) {
        if (db) db->impl()->store.pendingCell = nullptr; // the reader's handle is not used
        return es;
    }
    if (auto* layer = OxDbLayerTableRecord::cast(record)) applyNewLayerDefaults(db, layer);
    id = makeResidentForWrite(db, record, objectId());
    m_impl->insert(id.cell());
    return Ox::eOk;
}

// ------------------------------------------------------------ records

Ox::ErrorStatus OxDbSymbolTableRecord::getName(OxString& name) const {
    name = m_name;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbSymbolTableRecord::getName(const wchar_t*& name) const {
    name = m_name.kwszPtr();
    return Ox::eOk;
}

Ox::ErrorStatus OxDbSymbolTableRecord::setName(const wchar_t* name) {
    if (!name) return Ox::eInvalidInput;
    auto* table = OxDbSymbolTable::cast(objectOf(ownerId()));
    if (table && !isErased()) {
        if (checkRecordName(*table, name) != Ox::eOk) return Ox::eInvalidSymbolTableName;
        OxDbCell* holder = table->impl()->find(name);
        if (holder && holder != cell()) return Ox::eDuplicateRecordName;
    }
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    OxString old = std::move(m_name);
    m_name = name;
    if (table && !isErased()) table->impl()->rename(cell(), old.view(), m_name.view());
    return Ox::eOk;
}

bool OxDbSymbolTableRecord::isDependent() const { return m_name.find(L'|') >= 0; }

// ------------------------------------------------------------ iterator

namespace {
const OxDbSymbolTable::Impl& tableOf(const void* p) { return *static_cast<const OxDbSymbolTable::Impl*>(p); }
} // namespace

OxDbSymbolTableIterator::OxDbSymbolTableIterator(const void* table, bool atBeginning, bool skipDeleted)
    : m_table(table) {
    start(atBeginning, skipDeleted);
}

OxDbSymbolTableIterator::OxDbSymbolTableIterator(const void* table, std::shared_ptr<const std::vector<OxDbCell*>> order)
    : m_table(table), m_order(std::move(order)) {
    start(true, true);
}

OxDbSymbolTableIterator::~OxDbSymbolTableIterator() = default;

const std::vector<OxDbCell*>& OxDbSymbolTableIterator::cells() const {
    return m_order ? *m_order : tableOf(m_table).records;
}

void OxDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
    m_skipDeleted = skipDeleted;
    m_pos = atBeginning ? 0 : static_cast<long>(cells().size()) - 1;
    skip(atBeginning);
}

bool OxDbSymbolTableIterator::done() const { return m_pos < 0 || m_pos >= static_cast<long>(cells().size()); }

void OxDbSymbolTableIterator::skip(bool forward) {
    const auto& records = cells();
    if (!m_skipDeleted) return;
    while (!done() && records[static_cast<size_t>(m_pos)]->erased)
        m_pos += forward ? 1 : -1;
}

Ox::ErrorStatus OxDbSymbolTableIterator::getRecordId(OxDbObjectId& id) const {
    if (done()) {
        id.setNull();
        return Ox::eOutOfRange;
    }
    id = OxDbObjectId(cells()[static_cast<size_t>(m_pos)]);
    return Ox::eOk;
}

void OxDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_skipDeleted = skipDeleted;
    m_pos += forward ? 1 : -1;
    skip(forward);
}

Ox::ErrorStatus OxDbSymbolTableIterator::seek(const OxDbObjectId& id) {
    const auto& records = cells();
    for (size_t i = 0; i < records.size(); ++i) {
        if (records[i] == id.cell()) {
            m_pos = static_cast<long>(i);
            return Ox::eOk;
        }
    }
    return Ox::eKeyNotFound;
}

OxDbObjectId pavo::db::addRecordDirect(OxDbSymbolTable* table, OxDbSymbolTableRecord* record) {
    OxDbDatabase* db = table->database();
    recordChange(table->cell());
    if (auto* layer = OxDbLayerTableRecord::cast(record)) applyNewLayerDefaults(db, layer);
    OxDbObjectId id = makeResidentForWrite(db, record, table->objectId());
    table->impl()->insert(id.cell());
    record->close();
    return id;
}
