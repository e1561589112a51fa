#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fstream>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace tests;
using platform::URLSession;

namespace {

constexpr std::string_view head = "HTTP/1.1 200 OK\r\n";

struct Fault {
    std::string name;
    std::string bytes; ///< what the server answers

    enum End { closes, resets, stalls } end;

    std::string outcome;
};

// Every way a server can fail has its own row; the connection ends, or the short time-out does.
const Fault faults[] = {
    {"close before the head", "", Fault::closes, "connectionLost"},
    {"reset before the head", "", Fault::resets, "connectionLost"},
    {"silence", "", Fault::stalls, "timedOut"},
    {"close within the status line", "HTTP/1.1 2", Fault::closes, "connectionLost"},
    {"close within the head", "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n", Fault::closes, "connectionLost"},
    {"reset within the head", "HTTP/1.1 200 OK\r\nA: b\r\n", Fault::resets, "connectionLost"},
    {"silence within the head", "HTTP/1.1 200 OK\r\nA: b\r\n", Fault::stalls, "timedOut"},
    {"close within a body of declared length",
     "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nfour",
     Fault::closes,
     "connectionLost"},
    {"reset within the body", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nfour", Fault::resets, "connectionLost"},
    {"silence within the body", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nfour", Fault::stalls, "timedOut"},
    {"close within chunks",
     "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nfour\r\n",
     Fault::closes,
     "connectionLost"},
    {"bad chunk size",
     "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\nfour\r\n",
     Fault::stalls,
     "badResponse"},
    {"body without length ends with the connection", "HTTP/1.1 200 OK\r\n\r\nfour", Fault::closes, "200 four"},
    {"chunks with a trailer",
     "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nfour\r\n0\r\nX: y\r\n\r\n",
     Fault::stalls,
     "200 four"},
    {"interim heads come first",
     "HTTP/1.1 103 Early Hints\r\nX: y\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nfour",
     Fault::stalls,
     "200 four"},
    {"header line of 100,000 bytes",
     std::string(head) + "A: " + std::string(100'000, 'x') + "\r\nContent-Length: 4\r\n\r\nfour",
     Fault::stalls,
     "200 four"},
    {"header line of 120,000 bytes",
     std::string(head) + "A: " + std::string(120'000, 'x') + "\r\n\r\n",
     Fault::stalls,
     "badResponse"},
    {"all fields above 300 KB",
     [] {
         std::string text(head);
         for (int i = 0; i < 400; ++i)
             text += "A: " + std::string(1000, 'x') + "\r\n";
         return text + "\r\n";
     }(),
     Fault::stalls,
     "badResponse"},
    {"header line without colon", "HTTP/1.1 200 OK\r\nnonsense\r\n\r\n", Fault::stalls, "badResponse"},
    {"content length that is no number",
     "HTTP/1.1 200 OK\r\nContent-Length: four\r\n\r\nfour",
     Fault::stalls,
     "badResponse"},
    {"negative content length", "HTTP/1.1 200 OK\r\nContent-Length: -4\r\n\r\nfour", Fault::stalls, "badResponse"},
    {"contradicting content lengths",
     "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Length: 4\r\n\r\nfour",
     Fault::stalls,
     "badResponse"},
    {"content length said twice",
     "HTTP/1.1 200 OK\r\nContent-Length: 4\r\nContent-Length: 4\r\n\r\nfour",
     Fault::stalls,
     "200 four"},
    {"status of four digits", "HTTP/1.1 1000 Many\r\nContent-Length: 0\r\n\r\n", Fault::stalls, "badResponse"},
    {"status 999", "HTTP/1.1 999 Odd\r\nContent-Length: 4\r\n\r\nfour", Fault::stalls, "999 four"},
    {"garbage", "\x01\x02garbage\r\n\r\n", Fault::closes, "badResponse"},
    {"HTTP/0.9", "just a body", Fault::closes, "badResponse"},
    {"bad gzip",
     "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 14\r\n\r\nnot compressed",
     Fault::stalls,
     "badResponse"},
    {"unknown encoding",
     "HTTP/1.1 200 OK\r\nContent-Encoding: zip\r\nContent-Length: 4\r\n\r\nfour",
     Fault::stalls,
     "badResponse"},
};

} // namespace

TEST(Faults, EachServerFaultEndsInItsOwnErrorOnce) {
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.name);
        ScriptedServer server([&](ScriptedServer::Connection& connection) {
            if (!connection.readRequest()) return;
            connection.send(fault.bytes);
            if (fault.end == Fault::stalls) connection.stall();
            if (fault.end == Fault::resets) connection.reset();
        });
        const URLSession session(direct());
        auto what = request(server.url());
        // Long where another error must come first, short where this one must.
        what.timeoutInterval = std::chrono::milliseconds(fault.outcome == "timedOut" ? 50 : 30'000);
        const Outcome outcome = load(session, what);
        EXPECT_EQ(outcome.text(), fault.outcome) << outcome.errorText();
        session.invalidateAndCancel();
        EXPECT_EQ(outcome.completions(), 1);
    }
}

TEST(Faults, ABodyBeyondMemoryEndsItsTaskOnly) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizers need the address space that this test takes away";
#endif
    ScriptedServer server(ScriptedServer::answering([](ScriptedServer::Connection& connection, const auto& got) {
        if (got.line() == "GET /small HTTP/1.1") return connection.respond("four");
        connection.send("HTTP/1.1 200 OK\r\n\r\n");
        static const std::string block(1 << 20, 'x');
        for (int i = 0; i < 256; ++i)
            connection.send(block);
        connection.stall();
    }));
    const URLSession session(direct());
    ASSERT_EQ(load(session, request(server.url("/small"))).text(), "200 four");

    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
    rlimit tight = before;
    tight.rlim_cur = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + (64U << 20U);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    const Outcome outcome = load(session, request(server.url("/large")));
    ASSERT_EQ(setrlimit(RLIMIT_AS, &before), 0);
    EXPECT_EQ(outcome.text(), "other");
    EXPECT_EQ(outcome.errorText(), "The request failed: out of memory");
    EXPECT_EQ(load(session, request(server.url("/small"))).text(), "200 four");
}

TEST(Faults, WhatNeverReachesAServer) {
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
    ASSERT_EQ(getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
    const std::string closedPort = std::to_string(ntohs(address.sin_port)); // bound, so nobody else listens there

    ScriptedServer plain([](ScriptedServer::Connection& connection) { connection.send("not TLS at all\r\n\r\n"); });
    auto badField = request(plain.url());
    badField.allHTTPHeaderFields["X"] = "a\r\nInjected: yes";
    auto zeroField = request(plain.url());
    zeroField.allHTTPHeaderFields["X"] = std::string("a\0b", 3);
    auto longField = request(plain.url());
    longField.allHTTPHeaderFields["X"] = std::string(1'100'000, 'x');
    auto badName = request(plain.url());
    badName.allHTTPHeaderFields["X: y\r\nInjected"] = "a";

    const struct {
        platform::URLRequest what;
        std::string_view outcome;
    } rows[] = {
        {request("http://127.0.0.1:" + closedPort + "/"), "cannotConnect"},
        {request("http://no-such-host.invalid/"), "dns"},
        {request("https://127.0.0.1:" + std::to_string(plain.port()) + "/"), "tls"},
        {request("file:///etc/passwd"), "unsupportedURL"},
        {request("/relative"), "unsupportedURL"},
        {request("http://127.0.0.1:65536/"), "unsupportedURL"},
        {request(plain.url("/" + std::string(9'000'000, 'x'))), "invalidRequest"},
        {longField, "invalidRequest"},
        {request(plain.url(), "GE T"), "invalidRequest"},
        {request(plain.url(), ""), "invalidRequest"},
        {badField, "invalidRequest"},
        {zeroField, "invalidRequest"},
        {badName, "invalidRequest"},
    };

    const URLSession session(direct());
    for (const auto& row : rows) {
        const Outcome outcome = load(session, row.what);
        EXPECT_EQ(outcome.text(), row.outcome)
            << row.what.url.absoluteString().substr(0, 100) << ": " << outcome.errorText();
    }
    EXPECT_EQ(plain.requestCount(), 0);
    close(listener);
}

TEST(Faults, DeadPoolConnectionIsReplacedOnceAndOnlyWhereRepeatingIsHarmless) {
    const struct {
        std::string_view method;
        bool alwaysDies;
        std::string_view outcome;
        int requests;
    } rows[] = {
        {"GET", false, "200 fine", 3}, // one for the pool, one that dies, one repeated
        {"PUT", false, "200 fine", 3},
        {"POST", false, "connectionLost", 2},
        {"PATCH", false, "connectionLost", 2},
        {"GET", true, "connectionLost", 3},
    };

    for (const auto& row : rows) {
        SCOPED_TRACE(row.method);
        ScriptedServer server([&](ScriptedServer::Connection& connection) {
            if (connection.number() > 1 && row.alwaysDies) {
                connection.readRequest();
                return;
            }
            if (!connection.readRequest()) return;
            connection.respond("fine");
            connection.readRequest(); // and dies of it
        });
        const URLSession session(direct());
        EXPECT_EQ(load(session, request(server.url())).text(), "200 fine");
        const Outcome outcome = load(session, request(server.url(), row.method));
        EXPECT_EQ(outcome.text(), row.outcome) << outcome.errorText();
        EXPECT_EQ(server.requestCount(), row.requests);
    }
}
