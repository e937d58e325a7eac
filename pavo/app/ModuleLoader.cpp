#include "ModuleLoader.h"

#include <dlfcn.h>

#include "base/CaseFold.h"
#include "base/PathText.h"
#include "base/Utf8.h"
#include "oxed.h"
#include "win32compat.h"

namespace fs = std::filesystem;

namespace pavo::app {

namespace {

ModuleLoader* g_instance = nullptr;

std::wstring stemOf(const std::wstring& name) {
    std::wstring file = fileNameText(pathFromText(name));
    const size_t dot = file.rfind(L'.');
    if (dot != std::wstring::npos && dot > 0) {
        const std::wstring_view ext = std::wstring_view(file).substr(dot);
        if (equalNoCase(ext, L".dll") || equalNoCase(ext, L".pvx") || equalNoCase(ext, L".so"))
            file.resize(dot);
    }
    return file;
}

} // namespace

ModuleLoader::ModuleLoader(IPavoCommandStore* store) : m_store(store) {
    g_instance = this;
    oxrxSysRegistry()->atPut(L"DynamicLinker", this);
}

ModuleLoader::~ModuleLoader() {
    unloadAll();
    if (oxrxSysRegistry()->lookupEntry(L"DynamicLinker") == this) oxrxSysRegistry()->remove(L"DynamicLinker");
    if (g_instance == this) g_instance = nullptr;
}

ModuleLoader* ModuleLoader::instance() { return g_instance; }

fs::path ModuleLoader::locate(const std::wstring& name) const {
    const fs::path given = pathFromText(name);
    if (given.has_parent_path()) return given;
    const std::wstring stem = stemOf(name);
    for (const fs::path& dir : m_path) {
        for (const wchar_t* ext : {L".pvx", L".so"}) {
            fs::path candidate = dir / pathFromText(stem + ext);
            std::error_code ec;
            if (fs::is_regular_file(candidate, ec)) return candidate;
        }
    }
    return {};
}

bool ModuleLoader::load(const std::wstring& name, std::string& error) {
    const std::wstring stem = stemOf(name);
    if (moduleHandle(name.c_str())) return true;
    const fs::path path = locate(name);
    if (path.empty()) {
        error = "not found in";
        for (const fs::path& folder : m_path)
            error += (&folder == &m_path.front() ? " " : ", ") + toUtf8(pathText(folder));
        return false;
    }
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* why = dlerror();
        error = "cannot load " + toUtf8(pathText(path)) + ": " + (why ? why : "unknown error");
        return false;
    }
    Module module{stem, path, handle, nullptr};
    // A module without the entry is an extension module (dialogs and such).
    if (auto entry = reinterpret_cast<GetPavoCmdApplicationFn>(dlsym(handle, "GetPavoCmdApplication"))) {
        module.app = entry();
        if (!module.app || !module.app->initialize()) {
            dlclose(handle);
            error = "module " + path.string() + " refused to initialize";
            return false;
        }
        m_modules.push_back(module);
        module.app->registCommand(m_store);
        return true;
    }
    m_modules.push_back(module);
    return true;
}

void ModuleLoader::unload(Module& module) {
    if (module.app) {
        module.app->unregistCommand(m_store);
        module.app->uninitialize();
    }
    if (module.handle) dlclose(module.handle);
    module.handle = nullptr;
}

void ModuleLoader::unloadAll() {
    while (!m_modules.empty()) {
        unload(m_modules.back());
        m_modules.pop_back();
    }
}

bool ModuleLoader::loadModule(const wchar_t* fileName, bool printIt, bool) {
    if (!fileName) return false;
    std::string error;
    const bool ok = load(fileName, error);
    if (!ok && printIt) oxutPrintf(L"\n%s", error);
    return ok;
}

bool ModuleLoader::unloadModule(const wchar_t* fileName, bool) {
    if (!fileName) return false;
    const std::wstring stem = stemOf(fileName);
    for (auto it = m_modules.begin(); it != m_modules.end(); ++it) {
        if (equalNoCase(it->stem, stem)) {
            unload(*it);
            m_modules.erase(it);
            return true;
        }
    }
    return false;
}

void* ModuleLoader::moduleHandle(const wchar_t* fileName) const {
    if (!fileName) return nullptr;
    const std::wstring stem = stemOf(fileName);
    for (const Module& m : m_modules)
        if (equalNoCase(m.stem, stem)) return m.handle;
    return nullptr;
}

} // namespace pavo::app


HMODULE GetModuleHandleW(const wchar_t* name) {
    const pavo::app::ModuleLoader* loader = pavo::app::ModuleLoader::instance();
    return loader ? loader->moduleHandle(name) : nullptr;
}

FARPROC GetProcAddress(HMODULE module, const char* symbol) {
    if (!module || !symbol) return nullptr;
    return reinterpret_cast<FARPROC>(dlsym(module, symbol));
}
