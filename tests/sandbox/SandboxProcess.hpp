#pragma once

#include "tests/ChildProcess.hpp"

#include <optional>
#include <string>
#include <vector>

/// A sandbox in a process of its own on a free port, for as long as the object lives. The including target defines
/// QUILLBEAM_SANDBOX as the executable's path.
class SandboxProcess {
public:
    /// Returns when the sandbox listens.
    /// @throws std::runtime_error if it ends instead.
    explicit SandboxProcess(std::vector<std::string> arguments = {});
    ~SandboxProcess();
    SandboxProcess(const SandboxProcess&) = delete;
    SandboxProcess& operator=(const SandboxProcess&) = delete;

    /// Such as "http://127.0.0.1:41234".
    const std::string& address() const { return address_; }

    const std::string& key() const { return key_; }

    /// @return the exit status, or minus the number of the signal that ended it.
    int stop(int signal);

    /// Runs the executable to its end and returns its exit status.
    static int run(std::vector<std::string> arguments);

private:
    std::optional<tests::ChildProcess> process_;
    std::string address_;
    std::string key_;
};
