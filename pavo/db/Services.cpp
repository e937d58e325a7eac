#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>
#include <unordered_set>

#include "DbInternal.h"
#include "LayoutManagerImpl.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"

using namespace pavo::db;

namespace pavo::db {
std::unordered_set<const OxDbDatabase*>& liveDatabases();
std::mutex& liveDatabasesMutex();
} // namespace pavo::db

// ------------------------------------------------------------ application services

namespace {

class PavoHostServices final : public OxDbHostApplicationServices {
public:
    OxDbDatabase* workingDatabase() const override { return m_working; }
    void setWorkingDatabase(OxDbDatabase* db) override { m_working = db; }
    OxDbLayoutManager* layoutManager() const override { return &m_layouts; }

private:
    OxDbDatabase* m_working = nullptr;
    mutable PavoLayoutManager m_layouts;
};

} // namespace

OxDbHostApplicationServices::~OxDbHostApplicationServices() = default;

OxDbHostApplicationServices* oxdbHostApplicationServices() {
    static PavoHostServices services;
    return &services;
}

// ------------------------------------------------------------ symbol names

namespace {

// The symbol name rule: a name is not empty, has at most 255 characters,
// no control characters, no leading or trailing blank, and none of
//   < > / \ " : ; ? * | , = `
// except that a vertical bar is allowed when asked for (names of layers
// that come from an external reference, "xref|layer").
class SymbolServices final : public OxDbSymbolUtilities::Services {
public:
    Ox::ErrorStatus checkSymbolName(const wchar_t* name, bool allowVerticalBar) const override {
        if (!name || !*name) return Ox::eInvalidSymbolTableName;
        const std::wstring_view text(name);
        if (text.size() > 255) return Ox::eInvalidSymbolTableName;
        if (isBlank(text.front()) || isBlank(text.back())) return Ox::eInvalidSymbolTableName;
        for (wchar_t ch : text) {
            if (ch < 0x20 || ch == 0x7F || (ch >= 0x80 && ch < 0xA0)) return Ox::eInvalidSymbolTableName;
            if (ch == L'|' && allowVerticalBar) continue;
            if (std::wstring_view(L"<>/\\\":;?*|,=`").find(ch) != std::wstring_view::npos)
                return Ox::eInvalidSymbolTableName;
        }
        return Ox::eOk;
    }
    OxDbObjectId getLinetypeIdContinuous(OxDbDatabase* db) const override { return linetype(db, L"CONTINUOUS"); }
    OxDbObjectId getLinetypeIdByLayer(OxDbDatabase* db) const override {
        return db ? db->byLayerLinetype() : OxDbObjectId();
    }
    OxDbObjectId getLinetypeIdByBlock(OxDbDatabase* db) const override {
        return db ? db->byBlockLinetype() : OxDbObjectId();
    }

private:
    static bool isBlank(wchar_t ch) { return ch == L' ' || ch == L'\t' || ch == 0xA0 || ch == 0x3000; }
    static OxDbObjectId linetype(OxDbDatabase* db, const wchar_t* name) {
        OxDbObjectId id;
        if (auto* table = db ? OxDbLinetypeTable::cast(objectOf(db->linetypeTableId())) : nullptr)
            table->getIdAt(name, id);
        return id;
    }
};

} // namespace

OxDbSymbolUtilities::Services::~Services() = default;

OxDbSymbolUtilities::Services* OxDbSymbolUtilities::servicesPtr() {
    static SymbolServices services;
    return &services;
}

OxDbSymbolUtilities::Services* oxdbGetSymbolSvc() { return OxDbSymbolUtilities::servicesPtr(); }

int IsValidName(wchar_t* name) { return oxdbGetSymbolSvc()->checkSymbolName(name, false) == Ox::eOk ? 1 : 0; }

// ------------------------------------------------------------ entity names

// ename[0] holds the cell, ename[1] its database; the database is checked
// against the live ones before the cell is trusted.
Ox::ErrorStatus oxdbGetObjectId(OxDbObjectId& id, const ox_name ename) {
    id.setNull();
    if (!ename || ename[0] == 0) return Ox::eNullObjectId;
    const auto* db = reinterpret_cast<const OxDbDatabase*>(ename[1]);
    {
        std::lock_guard lock(liveDatabasesMutex());
        if (!liveDatabases().count(db)) return Ox::eInvalidInput;
    }
    auto* cell = reinterpret_cast<OxDbCell*>(ename[0]);
    if (cell->database != db) return Ox::eInvalidInput;
    id = OxDbObjectId(cell);
    return Ox::eOk;
}

Ox::ErrorStatus oxdbGetOxDbName(ox_name ename, const OxDbObjectId& id) {
    if (!ename) return Ox::eInvalidInput;
    ename[0] = reinterpret_cast<long>(id.cell());
    ename[1] = reinterpret_cast<long>(id.database());
    return id.isNull() ? Ox::eNullObjectId : Ox::eOk;
}

// ------------------------------------------------------------ regeneration

Ox::ErrorStatus oxdbQueueForRegen(const OxDbObjectId* ids, int count) {
    if (count < 0 || (count > 0 && !ids)) return Ox::eInvalidInput;
    OxDbDatabase* db = oxdbHostApplicationServices()->workingDatabase();
    if (!db) return Ox::eNoDatabase;
    db->impl()->regenQueue.insert(db->impl()->regenQueue.end(), ids, ids + count);
    return Ox::eOk;
}

// ------------------------------------------------------------ implementation objects

namespace {

class ImpObject final : public OxDbImpObject {
public:
    explicit ImpObject(OxDbObject* obj) : OxDbImpObject(obj) {}
};

} // namespace

OxDbImpObject::~OxDbImpObject() = default;

void OxDbImpObject::setIsInUseBit(bool inUse) {
    if (auto* layer = OxDbLayerTableRecord::cast(m_obj)) layer->setIsInUseBit(inUse);
}

OxDbObjectId OxDbImpObject::activeViewportId() const {
    const auto* layout = OxDbLayout::cast(m_obj);
    if (!layout) return OxDbObjectId();
    if (!layout->activeViewportId().isNull()) return layout->activeViewportId();
    OxDbObjectIdArray viewports = layout->getViewportArray();
    return viewports.isEmpty() ? OxDbObjectId() : viewports.first();
}

// One implementation object per object address; it only holds the address,
// so an entry left behind by a deleted object serves its successor as well.
OxDbImpObject* OxDbSystemInternals::getImpObject(const OxDbObject* obj) {
    if (!obj) return nullptr;
    static std::mutex mutex;
    static std::unordered_map<const OxDbObject*, std::unique_ptr<ImpObject>> objects;
    std::lock_guard lock(mutex);
    auto& slot = objects[obj];
    if (!slot) slot = std::make_unique<ImpObject>(const_cast<OxDbObject*>(obj));
    return slot.get();
}

// ------------------------------------------------------------ heap

// The same heap as new and delete: objects made here are deleted by the
// database with delete.
void* oxHeapAlloc(std::size_t size) { return ::operator new(size, std::nothrow); }
void oxHeapFree(void* p) { ::operator delete(p); }
