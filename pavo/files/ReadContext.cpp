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
    if (!pavo::db::holdsKindOf(stub, kind.cls))
        return fail(at, "handle \"" + handleText(handle) + "\" is " + pavo::toUtf8(stub->object->isA()->name()) +
                            ", not " + kind.name);
    m_lastHandle = handle;
    m_lastKind = &kind;
    m_lastStub = stub;
    return true;
}

// With many layers, the stub that an entity's layer reference leads to
// (and its slot in the handle index) is rarely in the cache, and waiting for
// memory twice per entity is most of the cost of reading one. The text of
// the next entities is at hand, so their "l" handles are picked out of it in
// passing: first their index slots are fetched, half a window later (when
// the slot has arrived) their stubs. Nothing read here decides anything.
void ReadContext::prefetchAhead(const char* position) {
    constexpr std::size_t kWindow = 1024; // bytes of text: about ten entities
    constexpr std::size_t kPendingMax = sizeof m_pending / sizeof m_pending[0];
    const pavo::db::HandleIndex& index = store.byHandle;
    const std::size_t ahead = std::min(kWindow, static_cast<std::size_t>(end() - position));
    while (m_pendingCount > 0 && m_pending[m_pendingHead].at - position < static_cast<std::ptrdiff_t>(kWindow / 2)) {
        if (const OxDbStub* stub = index.findDense(m_pending[m_pendingHead].handle)) __builtin_prefetch(stub);
        m_pendingHead = (m_pendingHead + 1) % kPendingMax;
        --m_pendingCount;
    }
    const char* from = std::max(m_scanned, position);
    const char* to = position + ahead;
    if (from >= to) return;
    m_scanned = to;
    const auto* text = static_cast<const char*>(std::memchr(from, 'l', static_cast<std::size_t>(to - from)));
    for (; text && text + 4 < to && m_pendingCount < kPendingMax;
         text = static_cast<const char*>(std::memchr(text + 1, 'l', static_cast<std::size_t>(to - text - 1)))) {
        if (text[-1] != '"' || text[1] != '"' || text[2] != ':' || text[3] != '"') continue;
        std::uint64_t handle = 0;
        const char* digit = text + 4;
        for (int n = 0; n < 16 && digit < to; ++n, ++digit) {
            const char c = *digit;
            const int value = c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
            if (value < 0) break;
            handle = handle << 4 | static_cast<std::uint64_t>(value);
        }
        if (const void* slot = index.denseSlot(handle)) {
            __builtin_prefetch(slot);
            m_pending[(m_pendingHead + m_pendingCount) % kPendingMax] = {handle, text};
            ++m_pendingCount;
        }
    }
}

bool ReadContext::checkForwardReferences() {
    for (const auto& ref : m_forwards) {
        const std::string handle = handleText(ref.stub->handle);
        if (!ref.stub->object)
            return failAt(ref.pointer, ref.at, "handle \"" + handle + "\" refers to no object in the drawing");
        if (!pavo::db::holdsKindOf(ref.stub, ref.kind->cls))
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
