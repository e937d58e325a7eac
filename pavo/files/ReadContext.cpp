#include "files/ReadContext.h"

#include <algorithm>
#include <cstring>

#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbMaterial.h"
#include "OxDbSymbolTable.h"
#include "base/Utf8.h"

namespace pavo::files {

namespace {

std::string handleText(std::uint64_t handle) { return OxString(OxDbHandle(handle).toString()).utf8(); }

} // namespace

ReadContext::ReadContext(OxDbDatabase& database, std::string_view text, const std::string& fileName, LoadError& error)
    : JsonIn(text, fileName, error), db(database), impl(*database.impl()),
      store(database.impl()->store), layer{OxDbLayerTableRecord::desc(), "a layer"},
      linetype{OxDbLinetypeTableRecord::desc(), "a linetype"}, block{OxDbBlockTableRecord::desc(), "a block"},
      viewport{OxDbViewport::desc(), "a viewport"}, layout{OxDbLayout::desc(), "a layout"},
      plotStyle{OxDbPlaceHolder::desc(), "a plot style name"}, material{OxDbMaterial::desc(), "a material"} {}

bool ReadContext::define(sj::value& v, OxDbCell*& cell) {
    std::uint64_t handle = 0;
    bool isNull = false;
    return JsonIn::handle(v, handle, false, isNull) && defineHandle(handle, where(v), cell);
}

bool ReadContext::defineHandle(std::uint64_t handle, const char* at, OxDbCell*& cell) {
    cell = store.cellForHandle(handle);
    // An object read but not resident yet (an attribute's reference, say)
    // holds its handle as firmly as a resident one.
    if (cell->object || cell->claimed) return fail(at, "duplicate handle \"" + handleText(handle) + "\"");
    cell->claimed = true;
    return true;
}

bool ReadContext::reference(sj::value& v, const RefKind& kind, OxDbObjectId& id, bool nullable) {
    std::uint64_t handle = 0;
    bool isNull = false;
    if (!JsonIn::handle(v, handle, nullable, isNull)) return false;
    if (isNull) {
        id = OxDbObjectId();
        return true;
    }
    return resolve(handle, kind, where(v), id);
}

bool ReadContext::resolve(std::uint64_t handle, const RefKind& kind, const char* at, OxDbObjectId& id) {
    if (handle == m_lastHandle && &kind == m_lastKind) { // runs of entities on one layer
        id = OxDbObjectId(m_lastCell);
        return true;
    }
    OxDbCell* cell = store.cellForHandle(handle);
    id = OxDbObjectId(cell);
    if (!cell->object) {
        m_forwards.push_back({cell, &kind, at});
        return true;
    }
    if (!pavo::db::holdsKindOf(cell, kind.cls))
        return fail(at, "handle \"" + handleText(handle) + "\" is " + pavo::toUtf8(cell->object->isA()->name()) +
                            ", not " + kind.name);
    m_lastHandle = handle;
    m_lastKind = &kind;
    m_lastCell = cell;
    return true;
}

bool ReadContext::checkForwardReferences() {
    for (const auto& ref : m_forwards) {
        const std::string handle = handleText(ref.cell->handle);
        if (!ref.cell->object)
            return failAt(pointerAt(ref.at), ref.at, "handle \"" + handle + "\" refers to no object in the drawing");
        if (!pavo::db::holdsKindOf(ref.cell, ref.kind->cls))
            return failAt(pointerAt(ref.at), ref.at,
                          "handle \"" + handle + "\" is " + pavo::toUtf8(ref.cell->object->isA()->name()) + ", not " +
                              ref.kind->name);
    }
    return true;
}

void ReadContext::adoptForwards(ReadContext& other) {
    const RefKind* const theirs[] = {&other.layer,  &other.linetype,  &other.block,   &other.viewport,
                                     &other.layout, &other.plotStyle, &other.material};
    const RefKind* const ours[] = {&layer, &linetype, &block, &viewport, &layout, &plotStyle, &material};
    for (Forward& ref : other.m_forwards) {
        for (std::size_t i = 0; i < std::size(theirs); ++i)
            if (ref.kind == theirs[i]) ref.kind = ours[i]; // `other` may not outlive this
        m_forwards.push_back(ref);
    }
    other.m_forwards.clear();
}

bool ReadContext::addRecord(OxDbSymbolTable& table, OxDbSymbolTableRecord* record, OxDbCell* cell, const OxString& name,
                            const char* nameAt, const char* what, OxDbObjectId* idOut) {
    std::unique_ptr<OxDbSymbolTableRecord> owned(record);
    if (record->setName(name.kwszPtr()) != Ox::eOk)
        return failAt(pointerWith("name"), nameAt, "invalid " + std::string(what) + " name " + quoteValue(name.utf8()));
    expectCell(cell);
    OxDbObjectId id;
    const Ox::ErrorStatus es = table.add(id, record);
    if (es != Ox::eOk) {
        dropCell();
        std::string problem =
            es == Ox::eDuplicateRecordName
                ? "duplicate " + std::string(what) + " name " + quoteValue(name.utf8()) + " (names ignore letter case)"
                : "invalid " + std::string(what) + " name " + quoteValue(name.utf8());
        return failAt(pointerWith("name"), nameAt, problem);
    }
    owned.release()->close();
    if (idOut) *idOut = id;
    return true;
}

bool ReadContext::accepted(Ox::ErrorStatus es, const char* at, std::string_view what) {
    if (es == Ox::eOk) return true;
    dropCell();
    return statusOk(es, at, what);
}

} // namespace pavo::files
