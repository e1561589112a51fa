#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tests {

/// A program in a process of its own, with its standard output in a pipe to here. One that still runs is killed with
/// the object.
class ChildProcess {
public:
    /// @param arguments the program's path first
    /// @throws std::runtime_error where it cannot be started
    explicit ChildProcess(std::vector<std::string> arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void signal(int number) const;

    /// The next line that it prints, without the line's end; nothing once its output has ended. May run beside the
    /// other functions but `wait`.
    std::optional<std::string> nextLine();

    /// Waits for its end. What it may still print has to be read before, or the pipe may be too small for it.
    /// @return the exit status, or minus the number of the signal that ended it
    int wait();

private:
    pid_t process_ = -1;
    FILE* output_ = nullptr;
};

} // namespace tests
