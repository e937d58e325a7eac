// Every test, and every pavo process a test starts, keeps its user settings
// in a temporary configuration folder, never in the real one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "RunPavo.h"

namespace {

class ConfigHomeEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        m_folder = std::make_unique<pavotest::TempFolder>();
        setenv("XDG_CONFIG_HOME", m_folder->path("config").c_str(), 1);
    }
    void TearDown() override { m_folder.reset(); }

private:
    std::unique_ptr<pavotest::TempFolder> m_folder;
};

[[maybe_unused]] ::testing::Environment* const g_configHome =
    ::testing::AddGlobalTestEnvironment(new ConfigHomeEnvironment);

} // namespace
