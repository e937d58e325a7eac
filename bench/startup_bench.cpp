// From starting pavo on the embedded sample to its first prompt, measured
// as a whole run that quits at the first prompt (an upper bound).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

extern char** environ;

namespace {

void BM_StartToFirstPrompt(benchmark::State& state) {
    const std::string exe = PAVO_BENCH_PAVO_EXE;
    for (auto _ : state) {
        int in[2];
        if (pipe(in) != 0) state.SkipWithError("pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclose(&actions, in[1]);
        char* argv[] = {const_cast<char*>(exe.c_str()), nullptr};
        pid_t pid = 0;
        if (posix_spawn(&pid, exe.c_str(), &actions, nullptr, argv, environ) != 0) state.SkipWithError("spawn");
        close(in[0]);
        const char quit[] = "QUIT\n";
        if (write(in[1], quit, sizeof quit - 1) < 0) state.SkipWithError("write");
        close(in[1]);
        int status = 0;
        waitpid(pid, &status, 0);
        posix_spawn_file_actions_destroy(&actions);
    }
}

} // namespace

BENCHMARK(BM_StartToFirstPrompt)->Unit(benchmark::kMillisecond)->Iterations(20);
