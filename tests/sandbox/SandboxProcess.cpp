#include "tests/sandbox/SandboxProcess.hpp"

#include <csignal>
#include <cstdio>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Starts the executable with its standard output on `output`.
pid_t start(std::vector<std::string> arguments, int output) {
    arguments.insert(arguments.begin(), QUILLBEAM_SANDBOX);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t process = -1;
    const int error = posix_spawn(&process, QUILLBEAM_SANDBOX, &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("cannot start " QUILLBEAM_SANDBOX);
    return process;
}

int statusOf(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string valueOfNextLine(FILE* lines, std::string_view prefix) {
    char buffer[512];
    const std::string line = std::fgets(buffer, sizeof buffer, lines) ? buffer : "";
    if (!line.starts_with(prefix) || !line.ends_with('\n')) throw std::runtime_error("unexpected line: " + line);
    return line.substr(prefix.size(), line.size() - prefix.size() - 1);
}

} // namespace

SandboxProcess::SandboxProcess(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--port", "0"});
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    process_ = start(std::move(arguments), ends[1]);
    close(ends[1]);
    FILE* lines = fdopen(ends[0], "r");
    try {
        address_ = valueOfNextLine(lines, "listening on ");
        key_ = valueOfNextLine(lines, "first API key: ");
    } catch (...) {
        std::fclose(lines);
        stop(SIGKILL);
        throw;
    }
    std::fclose(lines);
}

SandboxProcess::~SandboxProcess() {
    if (process_ > 0) stop(SIGTERM);
}

int SandboxProcess::stop(int signal) {
    kill(process_, signal);
    const int status = statusOf(process_);
    process_ = -1;
    return status;
}

int SandboxProcess::run(std::vector<std::string> arguments) {
    return statusOf(start(std::move(arguments), STDOUT_FILENO));
}
