#include "tests/ChildProcess.hpp"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace tests {

ChildProcess::ChildProcess(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int error = posix_spawn(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output_ = fdopen(ends[0], "r");
    if (error == 0) return;
    std::fclose(output_);
    throw std::runtime_error("cannot start " + arguments.front());
}

ChildProcess::~ChildProcess() {
    if (process_ > 0) {
        signal(SIGKILL);
        wait();
    }
    std::fclose(output_);
}

void ChildProcess::signal(int number) const {
    kill(process_, number);
}

std::optional<std::string> ChildProcess::nextLine() {
    std::string line;
    for (int c = std::fgetc(output_); c != EOF; c = std::fgetc(output_)) {
        if (c == '\n') return line;
        line += static_cast<char>(c);
    }
    return line.empty() ? std::nullopt : std::optional(line);
}

int ChildProcess::wait() {
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace tests
