// Runs the pavo executable with arguments and a script, capturing its
// output and exit status.
#pragma once

#include <string>
#include <vector>

namespace pavotest {

struct PavoRun {
    int status = -1;
    std::string output;
};

// `stdinText` goes to standard input (which is then not a terminal).
PavoRun runPavo(const std::vector<std::string>& args, const std::string& stdinText = "");

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
