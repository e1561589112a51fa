#include "tests/sandbox/SandboxProcess.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

TEST(Examples, RunAgainstTheSandbox) {
    const SandboxProcess sandbox;
    const std::string known = sandbox.address() + " " + sandbox.key();
    const std::string keyless = sandbox.address() + " wrong";
    const std::string nobody = "http://127.0.0.1:1 key";
    // The tour runs twice, since it has to leave nothing behind.
    const std::vector<std::pair<std::string, int>> rows = {
        {"tour " + known, 0},
        {"tour " + known, 0},
        {"tour " + keyless, 1},
        {"tour", 2},
        {"blocking " + known, 0},
        {"blocking " + nobody, 1},
        {"blocking", 2},
        {"coroutine " + known, 0},
        {"coroutine " + keyless, 1},
        {"coroutine nowhere key", 1},
    };
    for (const auto& [command, expected] : rows) {
        const int status = std::system((QUILLBEAM_EXAMPLES "/" + command).c_str());
        ASSERT_TRUE(WIFEXITED(status)) << command;
        EXPECT_EQ(WEXITSTATUS(status), expected) << command;
    }
}

} // namespace
