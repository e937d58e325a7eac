// Runs the pavo executable with arguments and a script, capturing its
// output and exit status.
#pragma once

#include <string>
#include <vector>

namespace pavotest {

struct PavoRun {
    int status = -1;
    std::string output;
    std::string errors; // standard error, when kept apart from the output
};

// `stdinText` goes to standard input (which is then not a terminal).
// Standard error goes to `output` too.
PavoRun runPavo(const std::vector<std::string>& args, const std::string& stdinText = "");
// The same, with standard error in `errors`.
PavoRun runPavoApart(const std::vector<std::string>& args, const std::string& stdinText = "");
// Runs `command` with /bin/sh, `stdinText` on its standard input; its
// standard output and error in `output`.
PavoRun runShell(const std::string& command, const std::string& stdinText = "");

// A fresh folder under the temporary directory, removed by the destructor.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    std::string path(const std::string& name) const { return m_dir + "/" + name; }
    void write(const std::string& name, const std::string& content) const;
    std::string read(const std::string& name) const;

private:
    std::string m_dir;
};

} // namespace pavotest
