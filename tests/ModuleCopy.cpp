#include "ModuleCopy.h"

#include <atomic>
#include <unistd.h>

namespace fs = std::filesystem;

namespace pavotest {

ModuleCopy::ModuleCopy() {
    static std::atomic<int> counter{0};
    m_path = fs::temp_directory_path() /
             ("pavo-module-" + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".pvx");
    fs::copy_file(fs::path(PAVO_TEST_MODULE_DIR) / "VxLayerCmds.pvx", m_path, fs::copy_options::overwrite_existing);
    m_handle = dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) return;
    if (auto entry = reinterpret_cast<GetPavoCmdApplicationFn>(dlsym(m_handle, "GetPavoCmdApplication")))
        m_app = entry();
}

ModuleCopy::~ModuleCopy() {
    if (m_handle) dlclose(m_handle);
    std::error_code ec;
    fs::remove(m_path, ec);
}

} // namespace pavotest
