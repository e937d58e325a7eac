// The command factories: names, flags, and command objects made per run.
#pragma once

#include <string>

#include "IPavoCommand.h"

namespace vxlayer {

// Loads resource string `id` from the module's resource library into
// `cache` when the cache is empty, cut to 1023 characters. Returns the
// cached text, or `fallback(self)` when the string is absent (the cache then
// stays empty, so the next call tries again).
const wchar_t* loadCachedResourceStringImpl(std::wstring& cache, unsigned int id, const IPavoCommandFactory* self,
                                            const wchar_t* (*fallback)(const IPavoCommandFactory*));

// One factory per command. Flags, then the local-name and description
// caches, are the only state.
template <class Command, unsigned int Number, const wchar_t* GlobalName, unsigned int InitialFlags>
class PavoCmdFactory : public IPavoCommandFactory {
public:
    IPavoBuildInCommand* create() override { return new Command(); }
    void release(IPavoBuildInCommand* cmd) override { delete cmd; }
    unsigned int flags() const override { return m_flags; }
    void addFlags(unsigned int bits, bool set) override { m_flags = set ? (m_flags | bits) : (m_flags & ~bits); }
    const wchar_t* module() const override { return L"VxLayerCmds.dll"; }
    const wchar_t* globalName() const override { return GlobalName; }
    const wchar_t* localName() const override {
        return loadCachedResourceStringImpl(m_localName, Number, this,
                                            [](const IPavoCommandFactory* self) { return self->globalName(); });
    }
    // No string has this id: the description is always empty and reloaded
    // on every call.
    const wchar_t* description() const override {
        return loadCachedResourceStringImpl(m_description, 4294967295u, this,
                                            [](const IPavoCommandFactory*) { return L""; });
    }

private:
    unsigned int m_flags = InitialFlags;
    mutable std::wstring m_localName;
    mutable std::wstring m_description;
};

} // namespace vxlayer
