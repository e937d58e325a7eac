#include "files/ReadContext.h"

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

bool ReadContext::define(sj::value& v, OxDbStub*& stub) {
    std::uint64_t handle = 0;
    bool isNull = false;
    if (!JsonIn::handle(v, handle, false, isNull)) return false;
    stub = store.stubForHandle(handle);
    if (stub->object) return fail(where(v), "duplicate handle \"" + handleText(handle) + "\"");
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
        id = OxDbObjectId(m_lastStub);
        return true;
    }
    OxDbStub* stub = store.stubForHandle(handle);
    id = OxDbObjectId(stub);
    if (!stub->object) {
        m_forwards.push_back({stub, &kind, pointer(), at});
        return true;
    }
    if (!stub->object->isKindOf(kind.cls))
        return fail(at, "handle \"" + handleText(handle) + "\" is " + pavo::toUtf8(stub->object->isA()->name()) +
                            ", not " + kind.name);
    m_lastHandle = handle;
    m_lastKind = &kind;
    m_lastStub = stub;
    return true;
}

bool ReadContext::checkForwardReferences() {
    for (const auto& ref : m_forwards) {
        const std::string handle = handleText(ref.stub->handle);
        if (!ref.stub->object)
            return failAt(ref.pointer, ref.at, "handle \"" + handle + "\" refers to no object in the drawing");
        if (!ref.stub->object->isKindOf(ref.kind->cls))
            return failAt(ref.pointer, ref.at,
                          "handle \"" + handle + "\" is " + pavo::toUtf8(ref.stub->object->isA()->name()) + ", not " +
                              ref.kind->name);
    }
    return true;
}

bool ReadContext::accepted(Ox::ErrorStatus es, const char* at, std::string_view what) {
    if (es == Ox::eOk) return true;
    dropStub();
    return fail(at, "the database refused " + std::string(what) + " (status " + std::to_string(es) + ")");
}

} // namespace pavo::files
