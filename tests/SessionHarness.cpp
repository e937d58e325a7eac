#include "SessionHarness.h"

#include <gtest/gtest.h>

#include "editor/Input.h"

namespace pavotest {

pavo::app::SessionOptions testSessionOptions() {
    pavo::app::SessionOptions o;
    o.resourcePath = {PAVO_TEST_RESOURCE_DIR};
    o.modulePath = {PAVO_TEST_MODULE_DIR};
    o.supportPath = {std::string(PAVO_TEST_RESOURCE_DIR) + "/support"};
    o.noDialogs = true;
    return o;
}

ScriptedSession::ScriptedSession(std::vector<std::string> lines, Drawing drawing)
    : ScriptedSession(std::move(lines), drawing, testSessionOptions()) {}

ScriptedSession::ScriptedSession(std::vector<std::string> lines, Drawing drawing, pavo::app::SessionOptions options) {
    m_session = std::make_unique<pavo::app::Session>(std::move(options),
                                                     pavo::editor::makeLinesInput(std::move(lines)), m_out);
    EXPECT_TRUE(m_session->loadModules());
    if (drawing == Drawing::Sample)
        EXPECT_TRUE(m_session->openSample());
    else if (drawing == Drawing::New)
        m_session->newDrawing();
}

ScriptedSession::~ScriptedSession() = default;

int ScriptedSession::run() { return m_session->run(); }

int countOf(const std::string& hay, const std::string& needle) {
    int n = 0;
    for (size_t pos = hay.find(needle); pos != std::string::npos; pos = hay.find(needle, pos + needle.size())) ++n;
    return n;
}

} // namespace pavotest
