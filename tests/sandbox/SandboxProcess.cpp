#include "tests/sandbox/SandboxProcess.hpp"

#include <csignal>
#include <stdexcept>
#include <string_view>

namespace {

std::vector<std::string> commandOf(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), QUILLBEAM_SANDBOX);
    return arguments;
}

std::string valueOfNextLine(tests::ChildProcess& process, std::string_view prefix) {
    const std::string line = process.nextLine().value_or("");
    if (!line.starts_with(prefix)) throw std::runtime_error("unexpected line: " + line);
    return line.substr(prefix.size());
}

} // namespace

SandboxProcess::SandboxProcess(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--port", "0"});
    process_.emplace(commandOf(std::move(arguments)));
    address_ = valueOfNextLine(*process_, "listening on ");
    key_ = valueOfNextLine(*process_, "first API key: ");
}

SandboxProcess::~SandboxProcess() {
    if (process_) stop(SIGTERM);
}

int SandboxProcess::stop(int signal) {
    process_->signal(signal);
    const int status = process_->wait();
    process_.reset();
    return status;
}

int SandboxProcess::run(std::vector<std::string> arguments) {
    tests::ChildProcess process(commandOf(std::move(arguments)));
    while (process.nextLine()) {
    }
    return process.wait();
}
