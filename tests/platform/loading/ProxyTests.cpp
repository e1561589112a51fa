#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gtest/gtest.h>

using namespace tests;
using platform::URLSession;

TEST(Proxy, CarriesWhatIsPlainAndTunnelsWhatIsNot) {
    ScriptedServer proxy(ScriptedServer::answering([](ScriptedServer::Connection& connection, const auto& request) {
        if (request.line().starts_with("CONNECT ")) {
            connection.send("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
        } else {
            connection.respond(request.line() + " for " + request.field("Host"));
        }
    }));
    const auto through = [](const std::string& address) {
        platform::URLSessionConfiguration configuration;
        configuration.proxy = address;
        return URLSession(configuration);
    };
    auto authorized = request("https://secure.example/");
    authorized.allHTTPHeaderFields["Authorization"] = "Bearer secret";

    const struct {
        std::string proxy;
        platform::URLRequest request;
        std::string outcome;
    } rows[] = {
        {proxy.url(""),
         request("http://plain.example/a?b=1"),
         "200 GET http://plain.example/a?b=1 HTTP/1.1 for plain.example"},
        {proxy.url(""), authorized, "connectionLost"},
        {"http://127.0.0.1:1", request("http://plain.example/"), "cannotConnect"},
        {"http://proxy.invalid:80", request("http://plain.example/"), "dns"},
    };

    for (const auto& row : rows) {
        const Outcome outcome = load(through(row.proxy), row.request);
        EXPECT_EQ(outcome.text(), row.outcome) << row.proxy << ": " << outcome.errorText();
    }
    for (const auto& seen : proxy.requests())
        EXPECT_EQ(seen.field("Authorization"), "<none>") << seen.line();
}
