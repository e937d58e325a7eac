// A private copy of the module file, loaded on its own: its application
// object and factory caches are fresh, whatever other tests did.
#pragma once

#include <dlfcn.h>

#include <filesystem>
#include <string>

#include "IPavoCommand.h"

namespace pavotest {

class ModuleCopy {
public:
    ModuleCopy();
    ~ModuleCopy();
    IPavoCmdApplication* app() const { return m_app; }
    bool loaded() const { return m_app != nullptr; }

private:
    std::filesystem::path m_path;
    void* m_handle = nullptr;
    IPavoCmdApplication* m_app = nullptr;
};

} // namespace pavotest
