#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace tests;
using platform::ByteChunk;
using platform::URLSession;
using Request = ScriptedServer::Request;
using Connection = ScriptedServer::Connection;
using testing::ElementsAre;
using testing::Pair;

namespace {

const ScriptedServer::Script fine =
    ScriptedServer::answering([](Connection& connection, const Request&) { connection.respond("fine"); });

} // namespace

TEST(Requests, GoOutAsGivenAndWithNothingElse) {
    ScriptedServer server(fine);
    const std::string host = "\r\nHost: 127.0.0.1:" + std::to_string(server.port());
    // Which encodings are asked for depends on how the engine was built.
    const std::string encoding = "\r\nAccept-Encoding: ...";

    auto plain = request(server.url("/a/../b//%7e%41?q=%20&r"));
    auto fields = request(server.url());
    fields.allHTTPHeaderFields = {
        {"X-Empty", ""},
        {"X-Spaces", "  a b \t"},
        {"Accept", "a/b"},
        {"Accept-Encoding", "br"},
        {"X-Latin", "\xC3\x83\xC2\xA9"},
        {"X-Beyond", "\xE2\x82\xAC"}
    };
    auto derived = request(server.url(), "POST");
    derived.allHTTPHeaderFields = {{"content-length", "99"}, {"Transfer-Encoding", "chunked"}, {"Connection", "close"}};
    derived.httpBody = ByteChunk("body");
    auto large = request(server.url(), "PUT");
    large.httpBody = ByteChunk(std::string(3'000'000, 'x'));
    auto getWithBody = request(server.url(), "GET");
    getWithBody.httpBody = ByteChunk("body");
    auto typed = request(server.url(), "DELETE");
    typed.allHTTPHeaderFields["Content-Type"] = "a/b";
    typed.httpBody = ByteChunk("");

    const struct {
        platform::URLRequest what;
        std::string head;
        std::string body;
    } rows[] = {
        {plain, "GET /a/../b//%7e%41?q=%20&r HTTP/1.1" + host + encoding, ""},
        {fields,
         "GET / HTTP/1.1" + host +
             "\r\nAccept: a/b\r\nAccept-Encoding: br\r\nX-Beyond: \xE2\x82\xAC\r\nX-Empty:\r\nX-Latin: \xC3\xA9\r\n"
             "X-Spaces: a b",
         ""},
        {derived, "POST / HTTP/1.1" + host + encoding + "\r\nContent-Length: 4", "body"},
        {large, "PUT / HTTP/1.1" + host + encoding + "\r\nContent-Length: 3000000", std::string(3'000'000, 'x')},
        {getWithBody, "GET / HTTP/1.1" + host + encoding + "\r\nContent-Length: 4", "body"},
        {typed, "DELETE / HTTP/1.1" + host + encoding + "\r\nContent-Type: a/b\r\nContent-Length: 0", ""},
        {request(server.url(), "POST"), "POST / HTTP/1.1" + host + encoding + "\r\nContent-Length: 0", ""},
        {request(server.url(), "brew"), "brew / HTTP/1.1" + host + encoding, ""},
    };

    const URLSession session(direct());
    for (const auto& row : rows) {
        const Outcome outcome = load(session, row.what);
        EXPECT_EQ(outcome.text(), "200 fine") << outcome.errorText();
        Request got = server.requests().back();
        if (const auto names = got.field("Accept-Encoding"); names.find("gzip") != std::string::npos) {
            got.head.replace(got.head.find(names), names.size(), "...");
        }
        EXPECT_EQ(got.head, row.head);
        EXPECT_TRUE(got.body == row.body);
    }
    EXPECT_EQ(server.connectionCount(), 1) << "all requests fit on one connection";
}

TEST(Requests, HeadsKeepOrderDuplicatesAndEveryByte) {
    ScriptedServer server(ScriptedServer::answering([](Connection& connection, const Request& got) {
        if (got.line().starts_with("HEAD")) {
            connection.send("HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n");
            return;
        }
        connection.send(
            "HTTP/1.1 100 Continue\r\nLeft: out\r\n\r\nHTTP/1.1 206 P\r\nSet-Cookie: a\r\nx-b:\t caf\xE9 \r\n"
            "Set-Cookie: b\r\nEmpty:\r\nFolded: one\r\n  two\r\nTransfer-Encoding: chunked\r\n\r\n"
            "2\r\nok\r\n0\r\nTrailer: left out\r\n\r\n"
        );
    }));
    const URLSession session(direct());
    const Outcome outcome = load(session, request(server.url("/x")));
    ASSERT_EQ(outcome.text(), "206 ok") << outcome.errorText();
    EXPECT_THAT(
        outcome.response().allHeaderFields(),
        ElementsAre(
            Pair("Set-Cookie", "a"),
            Pair("x-b", "caf\xC3\xA9"),
            Pair("Set-Cookie", "b"),
            Pair("Empty", ""),
            Pair("Folded", "one two"),
            Pair("Transfer-Encoding", "chunked")
        )
    );
    EXPECT_EQ(outcome.response().expectedContentLength(), -1);
    EXPECT_EQ(outcome.response().url().absoluteString(), server.url("/x"));

    const Outcome headOnly = load(session, request(server.url(), "HEAD"));
    ASSERT_EQ(headOnly.text(), "200 ");
    EXPECT_EQ(headOnly.response().expectedContentLength(), 0) << "no body follows, whatever the field says";
    EXPECT_EQ(server.connectionCount(), 1);
}

TEST(Requests, RedirectsFollowTheMethodRulesAndDropCredentialsAcrossOrigins) {
    ScriptedServer other(fine);
    ScriptedServer server(ScriptedServer::answering([&](Connection& connection, const Request& got) {
        const auto path = got.line().substr(got.line().find(' ') + 1);
        if (path.starts_with("/end")) {
            connection.respond("fine");
            return;
        }
        const std::string status = path.substr(1, 3);
        const std::string target = path.starts_with("/307/other")  ? other.url("/end")
                                   : path.starts_with("/302/loop") ? "/302/loop"
                                   : path.starts_with("/302/file") ? "file:///etc/passwd"
                                   : path.starts_with("/307/none") ? ""
                                   : path.starts_with("/302/utf8") ? "/end/caf\xC3\xA9"
                                                                   : "../end|x";
        connection.send("HTTP/1.1 " + status + " R\r\nLocation: " + target + "\r\nContent-Length: 7\r\n\r\nignored");
    }));

    const struct {
        std::string_view method;
        std::string path;
        std::string_view outcome;
        std::string line;
        std::string_view body;
    } rows[] = {
        {"POST", "/301/a", "200 fine", "GET /end%7Cx HTTP/1.1", ""},
        {"POST", "/303/a", "200 fine", "GET /end%7Cx HTTP/1.1", ""},
        {"PATCH", "/303/a", "200 fine", "GET /end%7Cx HTTP/1.1", ""},
        {"PATCH", "/302/a", "200 fine", "PATCH /end%7Cx HTTP/1.1", "body"},
        {"POST", "/307/a", "200 fine", "POST /end%7Cx HTTP/1.1", "body"},
        {"PUT", "/308/a", "200 fine", "PUT /end%7Cx HTTP/1.1", "body"},
        {"PUT", "/302/utf8", "200 fine", "PUT /end/caf%c3%a9 HTTP/1.1", "body"},
        {"POST", "/307/none", "307 ignored", "POST /307/none HTTP/1.1", "body"},
        {"POST", "/302/file", "unsupportedURL", "POST /302/file HTTP/1.1", "body"},
    };

    const URLSession session(direct());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        auto what = request(server.url(row.path), row.method);
        what.httpBody = ByteChunk("body");
        what.allHTTPHeaderFields = {{"Authorization", "secret"}, {"Content-Type", "a/b"}};
        const Outcome outcome = load(session, what);
        EXPECT_EQ(outcome.text(), row.outcome) << outcome.errorText();
        const Request got = server.requests().back();
        EXPECT_EQ(got.line(), row.line);
        EXPECT_EQ(got.body, row.body);
        EXPECT_EQ(got.field("Content-Type"), row.body.empty() ? "<none>" : "a/b");
        EXPECT_EQ(got.field("Authorization"), "secret");
        if (row.outcome == "200 fine") {
            const auto target = row.line.find('/');
            EXPECT_EQ(
                outcome.response().url().absoluteString(),
                server.url(row.line.substr(target, row.line.rfind(' ') - target))
            );
        }
    }

    auto across = request(server.url("/307/other"), "POST");
    across.allHTTPHeaderFields = {
        {"Authorization", "secret"}, {"cookie", "secret"}, {"Host", "elsewhere"}, {"X-A", "kept"}
    };
    EXPECT_EQ(load(session, across).text(), "200 fine");
    const Request got = other.requests().back();
    EXPECT_EQ(got.head.find("secret"), std::string::npos) << got.head;
    EXPECT_EQ(got.head.find("elsewhere"), std::string::npos) << got.head;
    EXPECT_EQ(got.field("X-A"), "kept");

    const int before = server.requestCount();
    EXPECT_EQ(load(session, request(server.url("/302/loop"))).text(), "tooManyRedirects");
    EXPECT_EQ(server.requestCount() - before, 21);

    auto configuration = direct();
    configuration.maximumRedirects = 0;
    EXPECT_EQ(load(URLSession(configuration), request(server.url("/302/loop"))).text(), "302 ignored");
}

TEST(Requests, GateBoundsConnectionsPerOriginAndServesInOrder) {
    constexpr int count = 40;
    ScriptedServer server(ScriptedServer::answering([](Connection& connection, const Request& got) {
        connection.respond(got.line());
    }));
    auto configuration = direct();
    configuration.httpMaximumConnectionsPerHost = 1;
    const URLSession session(configuration);
    std::vector<Outcome> outcomes(count);
    for (int i = 0; i < count; ++i)
        session.dataTask(request(server.url("/" + std::to_string(i))), outcomes[static_cast<std::size_t>(i)].handler())
            .resume();
    for (int i = 0; i < count; ++i) {
        const std::string line = "GET /" + std::to_string(i) + " HTTP/1.1";
        EXPECT_EQ(outcomes[static_cast<std::size_t>(i)].text(), "200 " + line);
        EXPECT_EQ(server.requests()[static_cast<std::size_t>(i)].line(), line);
    }
    EXPECT_EQ(server.connectionCount(), 1);

    ScriptedServer busy(fine);
    const URLSession usual(direct());
    std::vector<Outcome> many(300);
    for (const Outcome& outcome : many)
        usual.dataTask(request(busy.url()), outcome.handler()).resume();
    for (const Outcome& outcome : many)
        EXPECT_EQ(outcome.text(), "200 fine");
    EXPECT_LE(busy.connectionCount(), 6);
}
