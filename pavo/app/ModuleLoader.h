// Loads modules (shared libraries) with dlopen. A command module exports
// GetPavoCmdApplication; at load the loader calls it, then initialize and
// registCommand; at unload unregistCommand and uninitialize, then dlclose.
// Modules are known by file name; "X.dll", "X.pvx" and "X" name the same one.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "IPavoCommand.h"
#include "OxRx.h"

namespace pavo::app {

class ModuleLoader : public OxRxDynamicLinker {
public:
    explicit ModuleLoader(IPavoCommandStore* store);
    ~ModuleLoader() override;

    void setSearchPath(std::vector<std::filesystem::path> folders) { m_path = std::move(folders); }
    // Loads and registers; false with `error` saying why.
    bool load(const std::wstring& name, std::string& error);
    // Unloads every module, last loaded first.
    void unloadAll();

    bool loadModule(const wchar_t* fileName, bool printIt, bool asCmd = false) override;
    bool unloadModule(const wchar_t* fileName, bool asCmd = false) override;
    void* moduleHandle(const wchar_t* fileName) const override;

    struct Module {
        std::wstring stem; // file name without folder and extension
        std::filesystem::path path;
        void* handle = nullptr;
        IPavoCmdApplication* app = nullptr;
    };
    const std::vector<Module>& modules() const { return m_modules; }

    static ModuleLoader* instance();

private:
    std::filesystem::path locate(const std::wstring& name) const;
    void unload(Module& module);
    IPavoCommandStore* m_store;
    std::vector<std::filesystem::path> m_path;
    std::vector<Module> m_modules;
};

} // namespace pavo::app
