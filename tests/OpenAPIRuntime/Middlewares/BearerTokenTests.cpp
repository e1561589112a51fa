#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "OpenAPIRuntime/Interface/UniversalClient.hpp"
#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <latch>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using OpenAPIRuntime::BearerToken;
using OpenAPIRuntime::ClientError;
using OpenAPIRuntime::ClientMiddleware;
using OpenAPIRuntime::ClientTransport;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::HTTPRequestAndBody;
using OpenAPIRuntime::HTTPResponseAndBody;
using OpenAPIRuntime::IterationBehavior;
using OpenAPIRuntime::UniversalClient;
using platform::syncWait;
using platform::Task;
using platform::URL;

using OptionalBody = std::optional<HTTPBody>;
using Lines = std::vector<std::string>;

constexpr const char* home = "https://api.example";

/// Answers 200 to the accepted token and 401 to everything else, and keeps what it was sent.
struct Server final : ClientTransport {
    Task<HTTPResponseAndBody> send(HTTPRequest request, OptionalBody, URL, std::string) override {
        const std::string sent = request.headerFields.value(HTTPField::Name::authorization).value_or("none");
        bool isAccepted = false;
        {
            const std::lock_guard lock(mutex);
            received.push_back(sent);
            isAccepted = sent == "Bearer " + accepted;
        }
        if (whenReceived) whenReceived(request);
        return Task<HTTPResponseAndBody>::ready(HTTPResponse(isAccepted ? 200 : 401), HTTPBody("body"));
    }

    Lines takeReceived() {
        const std::lock_guard lock(mutex);
        return std::exchange(received, {});
    }

    void accept(std::string token) {
        const std::lock_guard lock(mutex);
        accepted = std::move(token);
    }

    std::function<void(const HTTPRequest&)> whenReceived;
    std::mutex mutex;
    std::string accepted;
    Lines received;
};

/// Gives "t1", "t2" and so on.
struct Counting {
    std::shared_ptr<std::atomic<int>> asked = std::make_shared<std::atomic<int>>(0);

    Task<std::string> operator()() const { return Task<std::string>::ready("t" + std::to_string(++*asked)); }
};

UniversalClient
clientOf(std::shared_ptr<ClientTransport> transport, std::vector<std::shared_ptr<ClientMiddleware>> middlewares) {
    return UniversalClient(*URL::make(home), {}, std::move(transport), std::move(middlewares));
}

/// Calls with this body and gives the status.
Task<int> call(const UniversalClient& client, OptionalBody body = std::nullopt, std::string path = "/x") {
    const auto serialize = [path](const OptionalBody& given) {
        return HTTPRequestAndBody(HTTPRequest(HTTPRequest::Method::post, std::nullopt, std::nullopt, path), given);
    };
    const auto deserialize = [](const HTTPResponse& response, const OptionalBody&) {
        return Task<int>::ready(response.status().code());
    };
    return client.send(std::move(body), "op", serialize, deserialize);
}

/// The error of the call, and what it comes from.
std::string failureOf(Task<int> task, std::stop_token token = {}) {
    try {
        return std::to_string(syncWait(std::move(task), std::move(token)));
    } catch (const ClientError& error) {
        return error.causeDescription + " " + platform::prettyDescription(error.underlyingError);
    }
}

const std::string ownFailure = "Middleware of type 'BearerToken' threw an error. ";

TEST(BearerToken, GoesToItsOwnOriginOnly) {
    const struct {
        const char* boundTo; // "": the first address
        const char* given;   // an Authorization that the request comes with
        Lines addresses;
        Lines sent;
    } rows[] = {
        {"", "", {"https://a.example", "HTTPS://A.example:443/v1"}, {"Bearer key", "Bearer key"}},
        {"",
         "",
         {"https://a.example", "http://a.example:443", "https://a.example:8443", "https://b.a.example"},
         {"Bearer key", "none", "none", "none"}},
        {"", "", {"https://a.example@b.example", "https://a.example"}, {"Bearer key", "none"}},
        {"https://b.example/v1", "", {"https://a.example", "https://b.example"}, {"none", "Bearer key"}},
        {"", "", {"/", "ftp://a.example", "http://a.example"}, {"none", "none", "Bearer key"}},
        {"", "Basic own", {"https://a.example"}, {"Basic own"}},
    };

    struct Readdressing final : ClientMiddleware {
        Task<HTTPResponseAndBody>
        intercept(HTTPRequest request, OptionalBody body, URL, std::string, Next next) override {
            if (!given.empty()) request.headerFields[HTTPField::Name::authorization] = given;
            return next(std::move(request), std::move(body), *URL::make(address));
        }

        std::string given;
        std::string address;
    };

    for (const bool isFixed : {true, false}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.addresses.front());
            const std::string bound = row.boundTo;
            const auto give = [] { return Task<std::string>::ready("key"); };
            const auto fixed = bound.empty() ? std::make_shared<BearerToken>("key")
                                             : std::make_shared<BearerToken>("key", *URL::make(bound));
            const auto asked = bound.empty() ? std::make_shared<BearerToken>(give)
                                             : std::make_shared<BearerToken>(give, *URL::make(bound));
            const auto readdressing = std::make_shared<Readdressing>();
            const auto server = std::make_shared<Server>();
            server->accept("key");
            const auto client = clientOf(server, {readdressing, isFixed ? fixed : asked});
            readdressing->given = row.given;
            for (const std::string& address : row.addresses) {
                readdressing->address = address;
                syncWait(call(client));
            }
            EXPECT_EQ(server->takeReceived(), row.sent);
        }
    }
    EXPECT_THROW(BearerToken("key", URL()), std::invalid_argument);
}

TEST(BearerToken, AsksAnewAfterA401AndSendsOnceMore) {
    const HTTPBody again("again");
    const HTTPBody once(
        std::vector{platform::ByteChunk("once")}, HTTPBody::Length::known(4), IterationBehavior::single
    );

    const struct {
        const char* accepted;
        OptionalBody body;
        Lines sent; // by two calls
        int statuses[2];
        int asked;
    } rows[] = {
        {"t1", std::nullopt, {"Bearer t1", "Bearer t1"}, {200, 200}, 1},
        {"t2", std::nullopt, {"Bearer t1", "Bearer t2", "Bearer t2"}, {200, 200}, 2},
        {"t2", again, {"Bearer t1", "Bearer t2", "Bearer t2"}, {200, 200}, 2},
        {"t2", once, {"Bearer t1", "Bearer t2"}, {401, 200}, 2},
        {"no", again, {"Bearer t1", "Bearer t2", "Bearer t2", "Bearer t3"}, {401, 401}, 3},
    };

    for (const auto& row : rows) {
        const Counting source;
        const auto server = std::make_shared<Server>();
        server->accept(row.accepted);
        const auto client = clientOf(server, {std::make_shared<BearerToken>(source)});
        for (const int status : row.statuses) {
            EXPECT_EQ(syncWait(call(client, row.body)), status);
        }
        EXPECT_EQ(server->takeReceived(), row.sent);
        EXPECT_EQ(*source.asked, row.asked);
    }

    const auto server = std::make_shared<Server>();
    EXPECT_EQ(syncWait(call(clientOf(server, {std::make_shared<BearerToken>("fixed")}))), 401);
    EXPECT_EQ(syncWait(call(clientOf(server, {std::make_shared<BearerToken>("")}))), 401);
    EXPECT_EQ(server->takeReceived(), (Lines{"Bearer fixed", "none"}));
}

TEST(BearerToken, CallsRefusedWithTheSameTokenShareOneAsking) {
    constexpr int calls = 8;
    const Counting source;
    const auto server = std::make_shared<Server>();
    server->accept("t2");
    std::latch sent(calls); // none is refused before all are on their way
    server->whenReceived = [&](const HTTPRequest& request) {
        if (request.headerFields.value(HTTPField::Name::authorization) == "Bearer t1") sent.arrive_and_wait();
    };
    const auto client = clientOf(server, {std::make_shared<BearerToken>(source)});
    std::vector<std::future<int>> statuses;
    for (int i = 0; i < calls; ++i) {
        statuses.push_back(std::async(std::launch::async, [&] { return syncWait(call(client)); }));
    }
    for (auto& status : statuses) {
        EXPECT_EQ(status.get(), 200);
    }
    EXPECT_EQ(*source.asked, 2);
    EXPECT_EQ(server->takeReceived().size(), 2u * calls);
}

TEST(BearerToken, ACallWhoseTokenWasReplacedTakesTheNewerOne) {
    const Counting source;
    const auto server = std::make_shared<Server>();
    server->accept("t2");
    const auto client = clientOf(server, {std::make_shared<BearerToken>(source)});
    bool isFirst = true;
    server->whenReceived = [&](const HTTPRequest& request) {
        if (*request.path() != "/slow" || !std::exchange(isFirst, false)) return;
        EXPECT_EQ(syncWait(call(client)), 200); // while the slow one is on its way
    };
    EXPECT_EQ(syncWait(call(client, std::nullopt, "/slow")), 200);
    EXPECT_EQ(server->takeReceived(), (Lines{"Bearer t1", "Bearer t1", "Bearer t2", "Bearer t2"}));
    EXPECT_EQ(*source.asked, 2);
}

/// Fails where it was asked to stop meanwhile.
Task<std::string> slowToken(std::promise<void>* asked, std::shared_future<void> gate) {
    asked->set_value();
    gate.wait();
    co_await platform::checkCancellation();
    co_return std::string("t1");
}

TEST(BearerToken, ACancelledCallLeavesTheOthersTheirToken) {
    std::promise<void> asked;
    std::promise<void> open;
    const auto server = std::make_shared<Server>();
    server->accept("t1");
    const auto source = [&asked, gate = open.get_future().share()] { return slowToken(&asked, gate); };
    auto authentication = std::make_shared<BearerToken>(source);
    const auto client = clientOf(server, {authentication});
    const std::string cancelled =
        ownFailure + platform::prettyDescription(std::make_exception_ptr(platform::CancellationError()));

    std::stop_source stop;
    auto first = std::async(std::launch::async, [&] { return failureOf(call(client), stop.get_token()); });
    asked.get_future().wait();
    auto second = std::async(std::launch::async, [&] { return failureOf(call(client)); });
    stop.request_stop();
    EXPECT_EQ(first.get(), cancelled); // before there is a token
    EXPECT_EQ(failureOf(call(client), stop.get_token()), cancelled);
    open.set_value();
    EXPECT_EQ(second.get(), "200");
    EXPECT_EQ(server->takeReceived(), (Lines{"Bearer t1"}));
}

TEST(BearerToken, AFailedAskingFailsItsCallsAndIsForgotten) {
    int asked = 0;
    const auto source = [&asked]() -> Task<std::string> {
        switch (++asked) {
        case 1:
            throw std::runtime_error("no session");
        case 3:
            return Task<std::string>::failed(std::runtime_error("session ended"));
        default:
            return Task<std::string>::ready("t" + std::to_string(asked));
        }
    };
    const auto server = std::make_shared<Server>();
    server->accept("t4");
    const auto client = clientOf(server, {std::make_shared<BearerToken>(source)});
    EXPECT_EQ(failureOf(call(client)), ownFailure + "no session");
    EXPECT_EQ(failureOf(call(client)), ownFailure + "session ended");
    EXPECT_EQ(failureOf(call(client)), "200");
    EXPECT_EQ(server->takeReceived(), (Lines{"Bearer t2", "Bearer t4"}));
}

TEST(BearerToken, NoErrorShowsTheToken) {
    struct FailingTransport final : ClientTransport {
        Task<HTTPResponseAndBody> send(HTTPRequest, OptionalBody, URL, std::string) override {
            throw std::runtime_error("network");
        }
    };

    struct FailingMiddleware final : ClientMiddleware {
        Task<HTTPResponseAndBody> intercept(HTTPRequest, OptionalBody, URL, std::string, Next) override {
            throw std::runtime_error("inner");
        }
    };

    const auto token = std::make_shared<BearerToken>([] { return Task<std::string>::ready("secret"); });
    const auto loading = OpenAPIURLSession::URLSessionTransport::Configuration(platform::URLSession(tests::direct()));
    const auto network = std::make_shared<OpenAPIURLSession::URLSessionTransport>(loading);
    const UniversalClient clients[] = {
        clientOf(std::make_shared<FailingTransport>(), {token}),
        clientOf(std::make_shared<Server>(), {token, std::make_shared<FailingMiddleware>()}),
        clientOf(std::make_shared<Server>(), {token}),
        UniversalClient(*URL::make("http://127.0.0.1:1"), {}, network, {std::make_shared<BearerToken>("secret")}),
    };
    for (const UniversalClient& client : clients) {
        const auto serialize = [](int) {
            return HTTPRequestAndBody(HTTPRequest(HTTPRequest::Method::get, std::nullopt, std::nullopt, "/x"));
        };
        const auto deserialize = [](const HTTPResponse&, const OptionalBody&) {
            return Task<int>::failed(std::runtime_error("decoding"));
        };
        try {
            syncWait(client.send(0, "op", serialize, deserialize));
            FAIL() << "no error";
        } catch (const ClientError& error) {
            EXPECT_EQ(std::string(error.what()).find("secret"), std::string::npos) << error.what();
            ASSERT_TRUE(error.request);
            EXPECT_EQ(error.request->headerFields.size(), 0u);
        }
    }
}

TEST(BearerToken, StaysBehindWhereARedirectLeavesTheOrigin) {
    using Connection = tests::ScriptedServer::Connection;
    using Request = tests::ScriptedServer::Request;
    tests::ScriptedServer other(tests::ScriptedServer::answering([](Connection& connection, const Request&) {
        connection.respond("there");
    }));
    tests::ScriptedServer server(tests::ScriptedServer::answering([&](Connection& connection, const Request& request) {
        if (request.line().find("/here") != std::string::npos) return connection.respond("here");
        const std::string target = request.line().find("/away") != std::string::npos ? other.url("/x") : "/here";
        connection.send("HTTP/1.1 307 Away\r\nLocation: " + target + "\r\nContent-Length: 0\r\n\r\n");
    }));
    const auto loading = OpenAPIURLSession::URLSessionTransport::Configuration(platform::URLSession(tests::direct()));
    const auto transport = std::make_shared<OpenAPIURLSession::URLSessionTransport>(loading);
    const auto token = std::make_shared<BearerToken>("secret");
    const UniversalClient client(*URL::make(server.url("")), {}, transport, {token});
    EXPECT_EQ(syncWait(call(client, std::nullopt, "/away")), 200);
    EXPECT_EQ(syncWait(call(client, std::nullopt, "/near")), 200);
    ASSERT_EQ(other.requests().size(), 1u);
    EXPECT_EQ(other.requests()[0].head.find("secret"), std::string::npos) << other.requests()[0].head;
    ASSERT_EQ(server.requests().size(), 3u);
    for (const Request& request : server.requests()) {
        EXPECT_EQ(request.field("Authorization"), "Bearer secret");
    }
}

TEST(BearerToken, ServesManyCallsWhileTokensChange) {
    constexpr int threads = 4;
    constexpr int callsOfEach = 100;
    const auto server = std::make_shared<Server>();
    std::atomic<int> current = 0;
    std::atomic<int> received = 0;
    server->accept("0");
    server->whenReceived = [&](const HTTPRequest&) {
        if (++received % 10 == 0) server->accept(std::to_string(++current));
    };
    std::atomic<int> asked = 0;
    const auto source = [&] {
        ++asked;
        const std::lock_guard lock(server->mutex);
        return Task<std::string>::ready(server->accepted);
    };
    const auto client = clientOf(server, {std::make_shared<BearerToken>(source)});
    std::atomic<int> answered = 0;
    std::vector<std::thread> running;
    for (int t = 0; t < threads; ++t) {
        running.emplace_back([&] {
            for (int i = 0; i < callsOfEach; ++i) {
                const int status = syncWait(call(client));
                if (status == 200 || status == 401) ++answered;
            }
        });
    }
    for (std::thread& thread : running) {
        thread.join();
    }
    EXPECT_EQ(answered, threads * callsOfEach);
    EXPECT_LE(received, 2 * threads * callsOfEach);
    EXPECT_LE(asked, current + 1); // a token is asked for only once the one before was refused
}

} // namespace
