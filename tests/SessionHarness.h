// Runs a real session in-process: the real host, the real module file, a
// script of answers in, the transcript and the database out.
#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "app/Session.h"

namespace pavotest {

enum class Drawing { Sample, New, None };

class ScriptedSession {
public:
    explicit ScriptedSession(std::vector<std::string> lines, Drawing drawing = Drawing::Sample);
    ScriptedSession(std::vector<std::string> lines, Drawing drawing, pavo::app::SessionOptions options);
    ~ScriptedSession();

    // Runs the read-eval loop to the end of the script; the exit status.
    int run();
    std::string transcript() const { return m_out.str(); }
    pavo::app::Session& session() { return *m_session; }
    OxDbDatabase* database() { return m_session->database(); }

private:
    std::ostringstream m_out;
    std::unique_ptr<pavo::app::Session> m_session;
};

// Options pointing at the build's module and the source tree's resources.
pavo::app::SessionOptions testSessionOptions();

// Counts how often `needle` occurs in `hay`.
int countOf(const std::string& hay, const std::string& needle);

} // namespace pavotest
