#include "PavoCmdFactory.h"

#include <cwchar>

#include "win32compat.h"

namespace vxlayer {

namespace {

// Switches to the module's resource library and back, also when an
// exception passes.
class ResourceSwitch {
public:
    explicit ResourceSwitch(const std::wstring& name) : m_switched(SetCurrentResourceName(name.c_str())) {}
    ~ResourceSwitch() {
        if (m_switched) RestorePreviousResource();
    }
    ResourceSwitch(const ResourceSwitch&) = delete;
    ResourceSwitch& operator=(const ResourceSwitch&) = delete;

private:
    bool m_switched;
};

constexpr int kBufferSize = 1024;

} // namespace

const wchar_t* loadCachedResourceStringImpl(std::wstring& cache, unsigned int id, const IPavoCommandFactory* self,
                                            const wchar_t* (*fallback)(const IPavoCommandFactory*)) {
    if (!cache.empty()) return cache.c_str();
    const std::wstring library = L"VxLayerCmdsRes.dll";
    if (library.empty()) return fallback(self);
    ResourceSwitch scope(library);
    HINSTANCE handle = AfxGetResourceHandle();
    if (cache.length() < kBufferSize) cache.resize(kBufferSize, L'\0');
    LoadStringW(handle, id, cache.data(), kBufferSize);
    cache.resize(std::wcslen(cache.c_str()));
    if (!cache.empty()) return cache.c_str();
    return fallback(self);
}

} // namespace vxlayer
