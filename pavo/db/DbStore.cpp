#include "DbStore.h"

#include <algorithm>

void pavo::db::OpenSet::insert(OxDbStub* stub) {
    if (stub->openSlot != kNoSlot) return;
    stub->openSlot = static_cast<std::uint32_t>(m_stubs.size());
    m_stubs.push_back(stub);
}

void pavo::db::OpenSet::erase(OxDbStub* stub) {
    const std::uint32_t slot = stub->openSlot;
    if (slot == kNoSlot || slot >= m_stubs.size() || m_stubs[slot] != stub) return;
    OxDbStub* last = m_stubs.back();
    m_stubs[slot] = last;
    last->openSlot = slot;
    m_stubs.pop_back();
    stub->openSlot = kNoSlot;
}

void pavo::db::OpenSet::clear() {
    for (OxDbStub* stub : m_stubs)
        stub->openSlot = kNoSlot;
    m_stubs.clear();
}

namespace pavo::db {

OxDbStub* Store::stubForHandle(std::uint64_t handle) {
    if (handle == 0) return nullptr;
    if (OxDbStub* found = byHandle.find(handle)) return found;
    OxDbStub& stub = stubs.emplace_back();
    stub.handle = handle;
    stub.database = database;
    byHandle.insert(handle, &stub, stubs.size());
    nextHandle = std::max(nextHandle, handle + 1);
    return &stub;
}

OxDbStub* Store::newStub() {
    while (byHandle.contains(nextHandle))
        ++nextHandle;
    return stubForHandle(nextHandle);
}

OxDbObjectId Store::attach(OxDbObject* obj, const OxDbObjectId& owner, OxDbStub* stub) {
    if (!stub && pendingStub && !pendingStub->object) stub = pendingStub;
    pendingStub = nullptr;
    if (!stub || stub->object) stub = newStub();
    stub->object.reset(obj);
    stub->cls = obj->isA();
    stub->owner = owner;
    obj->attachStub(stub);
    return OxDbObjectId(stub);
}

} // namespace pavo::db
