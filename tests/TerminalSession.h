// Runs the pavo executable on a pseudo-terminal, as a person at a keyboard
// would: what is typed goes in (Ctrl-D included), and the screen is read
// until an expected text shows.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace pavotest {

class TerminalSession {
public:
    // Starts pavo with `args`, HOME set to `home` (history and settings
    // stay out of the real home folder).
    TerminalSession(const std::vector<std::string>& args, const std::string& home);
    ~TerminalSession();
    TerminalSession(const TerminalSession&) = delete;
    TerminalSession& operator=(const TerminalSession&) = delete;

    void type(const std::string& keys);
    // Reads the screen until `text` appears after what earlier calls found;
    // false after `seconds` without it.
    bool waitFor(const std::string& text, int seconds = 20);
    // Waits for pavo to end; its exit status (-1 when it does not end).
    int exitStatus(int seconds = 20);
    const std::string& screen() const { return m_screen; }

private:
    void readAvailable(int milliseconds);
    pid_t m_pid = -1;
    int m_master = -1;
    std::string m_screen;
    std::size_t m_seen = 0;
};

} // namespace pavotest
