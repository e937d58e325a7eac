#include "RunPavo.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>

extern char** environ;

namespace fs = std::filesystem;

namespace pavotest {

namespace {

PavoRun spawn(std::vector<std::string> all, const std::string& stdinText, bool apart) {
    TempFolder io;
    io.write("stdin", stdinText);
    std::vector<char*> argv;
    for (std::string& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, io.path("stdin").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, io.path("stdout").c_str(), O_WRONLY | O_CREAT, 0600);
    if (apart)
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, io.path("stderr").c_str(), O_WRONLY | O_CREAT,
                                         0600);
    else
        posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    PavoRun run;
    pid_t pid = 0;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
        int status = 0;
        waitpid(pid, &status, 0);
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    posix_spawn_file_actions_destroy(&actions);
    run.output = io.read("stdout");
    if (apart) run.errors = io.read("stderr");
    return run;
}

std::vector<std::string> pavoWith(const std::vector<std::string>& args) {
    std::vector<std::string> all = {PAVO_TEST_PAVO_EXE};
    all.insert(all.end(), args.begin(), args.end());
    return all;
}

} // namespace

PavoRun runPavo(const std::vector<std::string>& args, const std::string& stdinText) {
    return spawn(pavoWith(args), stdinText, false);
}

PavoRun runPavoApart(const std::vector<std::string>& args, const std::string& stdinText) {
    return spawn(pavoWith(args), stdinText, true);
}

PavoRun runShell(const std::string& command, const std::string& stdinText) {
    return spawn({"/bin/sh", "-c", command}, stdinText, false);
}

TempFolder::TempFolder() {
    static std::atomic<int> n{0};
    m_dir = (fs::temp_directory_path() / ("pavo-test-" + std::to_string(getpid()) + "-" + std::to_string(n++))).string();
    fs::create_directories(m_dir);
}

TempFolder::~TempFolder() {
    std::error_code ec;
    fs::remove_all(m_dir, ec);
}

void TempFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
}

std::string TempFolder::read(const std::string& name) const {
    std::ifstream in(path(name), std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

} // namespace pavotest
