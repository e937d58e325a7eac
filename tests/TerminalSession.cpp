#include "TerminalSession.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pavotest {

TerminalSession::TerminalSession(const std::vector<std::string>& args, const std::string& home) {
    std::vector<std::string> all = {PAVO_TEST_PAVO_EXE};
    all.insert(all.end(), args.begin(), args.end());
    const std::string homeVariable = "HOME=" + home;
    m_pid = ::forkpty(&m_master, nullptr, nullptr, nullptr);
    if (m_pid == 0) {
        std::vector<char*> argv;
        for (std::string& a : all)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        ::putenv(const_cast<char*>(homeVariable.c_str()));
        ::setenv("TERM", "dumb", 1);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
}

TerminalSession::~TerminalSession() {
    if (m_pid > 0 && exitStatus(0) == -1) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    if (m_master >= 0) ::close(m_master);
}

void TerminalSession::type(const std::string& keys) {
    // The line editor sets the terminal up after it shows the prompt; a key
    // that comes in between may be lost, as it may for a person typing ahead.
    readAvailable(300);
    for (char key : keys) {
        (void)!::write(m_master, &key, 1);
        readAvailable(20); // let the line editor take each key as a person types it
    }
}

void TerminalSession::readAvailable(int milliseconds) {
    pollfd p{m_master, POLLIN, 0};
    while (::poll(&p, 1, milliseconds) > 0 && (p.revents & POLLIN)) {
        char buffer[4096];
        const ssize_t n = ::read(m_master, buffer, sizeof buffer);
        if (n <= 0) return;
        m_screen.append(buffer, static_cast<std::size_t>(n));
        milliseconds = 0;
    }
}

bool TerminalSession::waitFor(const std::string& text, int seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    for (;;) {
        const std::size_t at = m_screen.find(text, m_seen);
        if (at != std::string::npos) {
            m_seen = at + text.size();
            return true;
        }
        if (std::chrono::steady_clock::now() > end) return false;
        readAvailable(100);
    }
}

int TerminalSession::exitStatus(int seconds) {
    if (m_pid <= 0) return -1;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    for (;;) {
        readAvailable(0);
        int status = 0;
        if (::waitpid(m_pid, &status, WNOHANG) == m_pid) {
            m_pid = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        if (std::chrono::steady_clock::now() >= end) return -1;
        readAvailable(50);
    }
}

} // namespace pavotest
