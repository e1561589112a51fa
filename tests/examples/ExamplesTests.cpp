#include "tests/platform/loading/ScriptedServer.hpp"
#include "tests/sandbox/SandboxProcess.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
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
        {"shorten " + known + " https://a.example", 0},
        {"shorten " + known + " nowhere", 1},
        {"shorten " + keyless + " https://a.example", 1},
        {"shorten " + known, 2},
        {"many_links " + known + " 20", 0},
        {"many_links " + keyless, 1},
        {"many_links " + known + " none", 2},
    };
    for (const auto& [command, expected] : rows) {
        const int status = std::system((QUILLBEAM_EXAMPLES "/" + command).c_str());
        ASSERT_TRUE(WIFEXITED(status)) << command;
        EXPECT_EQ(WEXITSTATUS(status), expected) << command;
    }
}

/// An example in a process of its own.
class Program {
public:
    explicit Program(std::vector<std::string> arguments) {
        arguments.front().insert(0, QUILLBEAM_EXAMPLES "/");
        std::vector<char*> pointers;
        for (std::string& argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        int ends[2];
        if (pipe(ends) != 0) throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        const int error = posix_spawn(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        output_ = fdopen(ends[0], "r");
        if (error != 0) throw std::runtime_error("cannot start " + arguments.front());
    }

    void signal(int number) const { kill(process_, number); }

    /// Waits for its end and gives its exit status.
    int status() {
        for (int c = std::fgetc(output_); c != EOF; c = std::fgetc(output_)) {
            text_ += static_cast<char>(c);
        }
        std::fclose(output_);
        int status = 0;
        waitpid(process_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// The lines that it printed before its end.
    long lineCount() const { return std::count(text_.begin(), text_.end(), '\n'); }

private:
    pid_t process_ = -1;
    FILE* output_ = nullptr;
    std::string text_;
};

/// Has one domain, and makes a link of every request for one that `mayAnswer` lets through; the others never end.
tests::ScriptedServer::Script linkMaker(std::function<bool()> mayAnswer) {
    using tests::ScriptedServer;
    return ScriptedServer::answering([mayAnswer](ScriptedServer::Connection& connection, const auto& request) {
        if (request.line().starts_with("GET ")) {
            return connection.respond(
                R"({"domains": [{"id": "d", "name": "d.example"}]})", "Content-Type: application/json\r\n"
            );
        }
        if (!mayAnswer()) return connection.stall();
        const std::string link =
            R"({"id": "l", "createdAt": "2026-01-02T03:04:05Z", "destinationUrl": "https://a.example", "slug": "s",)"
            R"("domain": {"id": "d", "name": "d.example"}, "shortUrl": "https://d.example/s", "tags": []})";
        connection.send(
            "HTTP/1.1 201 Created\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(link.size()) +
            "\r\n\r\n" + link
        );
    });
}

TEST(Examples, AnInterruptionLosesNoLinkThatWasAnswered) {
    constexpr int answered = 20;
    constexpr int atOnce = 8;
    std::atomic<int> asked = 0;
    std::promise<void> stalling;
    tests::ScriptedServer server(linkMaker([&] {
        const int number = ++asked;
        // With so many on their way beyond the answered ones, every answer has arrived.
        if (number == answered + atOnce) stalling.set_value();
        return number <= answered;
    }));
    Program program({"many_links", server.url(""), "key"});
    stalling.get_future().wait();
    program.signal(SIGINT);
    EXPECT_EQ(program.status(), 128 + SIGINT);
    EXPECT_EQ(program.lineCount(), answered);
    EXPECT_EQ(asked, answered + atOnce);
}

TEST(Examples, AHundredLinksAreMadeUnlessToldOtherwise) {
    std::atomic<int> asked = 0;
    tests::ScriptedServer server(linkMaker([&] { return ++asked > 0; }));
    Program many({"many_links", server.url(""), "key"});
    EXPECT_EQ(many.status(), 0);
    EXPECT_EQ(many.lineCount(), 100);
    EXPECT_EQ(asked, 100);
}

} // namespace
