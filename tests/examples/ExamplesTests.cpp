#include "tests/ChildProcess.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"
#include "tests/sandbox/SandboxProcess.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <future>
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

tests::ChildProcess manyLinks(const tests::ScriptedServer& server) {
    return tests::ChildProcess({QUILLBEAM_EXAMPLES "/many_links", server.url(""), "key"});
}

int lineCount(tests::ChildProcess& program) {
    int count = 0;
    while (program.nextLine())
        ++count;
    return count;
}

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
    tests::ChildProcess program = manyLinks(server);
    stalling.get_future().wait();
    program.signal(SIGINT);
    EXPECT_EQ(lineCount(program), answered);
    EXPECT_EQ(program.wait(), 128 + SIGINT);
    EXPECT_EQ(asked, answered + atOnce);
}

TEST(Examples, AHundredLinksAreMadeUnlessToldOtherwise) {
    std::atomic<int> asked = 0;
    tests::ScriptedServer server(linkMaker([&] { return ++asked > 0; }));
    tests::ChildProcess program = manyLinks(server);
    EXPECT_EQ(lineCount(program), 100);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(asked, 100);
}

} // namespace
