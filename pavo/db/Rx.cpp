#include <map>
#include <mutex>
#include <string>

#include "OxRx.h"
#include "RxDefine.h"

namespace {

std::map<std::wstring, OxRxClass*>& classRegistry() {
    static std::map<std::wstring, OxRxClass*> registry;
    return registry;
}

std::mutex& classRegistryMutex() {
    static std::mutex m;
    return m;
}

// The system registry: services registered by name (the loader, ...).
class SystemRegistry final : public OxRxDictionary {
public:
    OxRxObject* lookupEntry(const wchar_t* key) const override {
        if (!key) return nullptr;
        auto it = m_entries.find(key);
        return it == m_entries.end() ? nullptr : it->second;
    }
    OxRxObject* atPut(const wchar_t* key, OxRxObject* obj) override {
        if (!key) return nullptr;
        OxRxObject*& slot = m_entries[key];
        OxRxObject* previous = slot;
        slot = obj;
        return previous;
    }
    OxRxObject* remove(const wchar_t* key) override {
        if (!key) return nullptr;
        auto it = m_entries.find(key);
        if (it == m_entries.end()) return nullptr;
        OxRxObject* previous = it->second;
        m_entries.erase(it);
        return previous;
    }

private:
    std::map<std::wstring, OxRxObject*> m_entries;
};

} // namespace

OxRxObject::~OxRxObject() = default;

OxRxClass* OxRxObject::desc() {
    static OxRxClass cls(L"OxRxObject", nullptr);
    return &cls;
}

OxRxClass* OxRxObject::isA() const { return OxRxObject::desc(); }

bool OxRxObject::isKindOf(const OxRxClass* cls) const {
    const OxRxClass* mine = isA();
    return mine && mine->isDerivedFrom(cls);
}

OxRxClass::OxRxClass(const wchar_t* name, OxRxClass* parent) : m_name(name ? name : L""), m_parent(parent) {
    std::lock_guard lock(classRegistryMutex());
    classRegistry().emplace(m_name, this);
}

bool OxRxClass::isDerivedFrom(const OxRxClass* other) const {
    if (!other) return false;
    for (const OxRxClass* c = this; c; c = c->m_parent)
        if (c == other) return true;
    return false;
}

OxRxClass* OxRxClass::find(const wchar_t* name) {
    if (!name) return nullptr;
    std::lock_guard lock(classRegistryMutex());
    auto it = classRegistry().find(name);
    return it == classRegistry().end() ? nullptr : it->second;
}

OxRxDictionary* oxrxSysRegistry() {
    static SystemRegistry registry;
    return &registry;
}

OX_RX_DEFINE_MEMBERS(OxRxDynamicLinker, OxRxObject)
