// The command store: every command the session knows, from modules and from
// the host itself, by global and by local name.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "IPavoCommand.h"

namespace pavo::app {

class CommandStore : public IPavoCommandStore {
public:
    struct Entry {
        IPavoCommandFactory* factory;
        std::wstring globalName;
        std::wstring localName;
    };

    // 0, or eDuplicateKey when a command of that global name exists, or
    // eInvalidInput for a factory without a name.
    int addCommand(IPavoCommandFactory* factory, unsigned int reserved) override;
    // 0, or eKeyNotFound.
    int removeCommand(const wchar_t* globalName) override;

    // A typed command name: "_NAME" by global name, else by local name; case
    // is ignored.
    const Entry* lookup(const std::wstring& typed) const;
    const std::vector<Entry>& entries() const { return m_entries; }

private:
    std::vector<Entry> m_entries;
};

} // namespace pavo::app
