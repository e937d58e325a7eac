#include "CommandStore.h"

#include "base/CaseFold.h"
#include "oxstatus.h"

namespace pavo::app {

int CommandStore::addCommand(IPavoCommandFactory* factory, unsigned int) {
    if (!factory || !factory->globalName() || !*factory->globalName()) return Ox::eInvalidInput;
    const std::wstring global = factory->globalName();
    for (const Entry& e : m_entries)
        if (equalNoCase(e.globalName, global)) return Ox::eDuplicateKey;
    const wchar_t* local = factory->localName();
    m_entries.push_back(Entry{factory, global, local && *local ? local : global});
    return Ox::eOk;
}

int CommandStore::removeCommand(const wchar_t* globalName) {
    if (!globalName) return Ox::eInvalidInput;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it) {
        if (equalNoCase(it->globalName, globalName)) {
            m_entries.erase(it);
            return Ox::eOk;
        }
    }
    return Ox::eKeyNotFound;
}

const CommandStore::Entry* CommandStore::lookup(const std::wstring& typed) const {
    const bool global = !typed.empty() && typed[0] == L'_';
    const std::wstring_view name = global ? std::wstring_view(typed).substr(1) : std::wstring_view(typed);
    if (name.empty()) return nullptr;
    for (const Entry& e : m_entries)
        if (equalNoCase(global ? e.globalName : e.localName, name)) return &e;
    return nullptr;
}

} // namespace pavo::app
