#include "OpenAPIURLSession/Conversions.hpp"
#include "OpenAPIURLSession/LockedValueBox.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "OpenAPIURLSession/URLSessionTransportError.hpp"
#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gtest/gtest.h>

#include <future>
#include <stop_token>
#include <thread>
#include <vector>

using namespace OpenAPIURLSession;
using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using OpenAPIRuntime::HTTPBody;
using platform::HTTPURLResponse;
using platform::syncWait;
using platform::URL;
using platform::URLResponse;
using tests::ScriptedServer;
using Connection = ScriptedServer::Connection;
using Implementation = URLSessionTransport::Configuration::Implementation;

namespace {

URL url(std::string_view text) {
    return URL::make(text).value();
}

HTTPField field(std::string_view name, std::string_view value) {
    return HTTPField(HTTPField::Name::make(name).value(), value);
}

/// The text of what `call` throws, or what it returns.
template <class Call>
std::string textOf(Call call) {
    try {
        return call();
    } catch (const std::exception& error) {
        return error.what();
    }
}

URLSessionTransport transport() {
    return URLSessionTransport(URLSessionTransport::Configuration(platform::URLSession(tests::direct())));
}

std::string textOf(const HTTPBody& body) {
    return syncWait(OpenAPIRuntime::collect<std::string>(body, 1 << 20));
}

} // namespace

TEST(Conversions, RequestURLIsBaseAndPathLetterForLetter) {
    const struct {
        std::string_view base;
        std::optional<std::string_view> path;
        std::string_view result;
    } rows[] = {
        {"http://h/api", "/v1/a?b=c", "http://h/api/v1/a?b=c"},
        {"http://h/api/", "/v1/a", "http://h/api//v1/a"},
        {"http://h/api?lost=1", "/v1", "http://h/api/v1"},
        {"http://h/api?lost=1", "/v1?a", "http://h/api/v1?a"},
        {"http://u@h:81/%7e", "/%2F%20", "http://u@h:81/%7e/%2F%20"},
        {"http://h/api", std::nullopt, "http://h/api"},
        {"http://h", "/a b", "Invalid request URL from request path: /a b, method: PUT, relative to base URL: http://h"
        },
        {"http://h",
         "no/slash",
         "Invalid request URL from request path: no/slash, method: PUT, relative to base URL: http://h"},
    };

    for (const auto& row : rows) {
        const HTTPRequest request(HTTPRequest::Method::put, std::nullopt, std::nullopt, row.path);
        EXPECT_EQ(textOf([&] { return makeURLRequest(request, url(row.base)).url.absoluteString(); }), row.result);
    }
    // A path that forms no URL with its base and is absent is named as such.
    const HTTPRequest pathless(HTTPRequest::Method::get, std::nullopt, std::nullopt, std::nullopt);
    EXPECT_STREQ(
        URLSessionTransportError::invalidRequestURL("<nil>", pathless.method(), url("a:b")).what(),
        "Invalid request URL from request path: <nil>, method: GET, relative to base URL: a:b"
    );
}

TEST(Conversions, RequestFieldsOfOneNameBecomeOne) {
    HTTPRequest request("/", HTTPRequest::Method::get);
    for (const auto& one :
         {field("X-A", "1"),
          field("Cookie", "a=1"),
          field("Set-Cookie", "x"),
          field("x-a", "2"),
          field("cookie", "b=2"),
          field("Set-Cookie", "y"),
          field("X-Empty", ""),
          field("X-Bytes", "\xC3\xA9")})
        request.headerFields.append(one);
    const auto result = makeURLRequest(request, url("http://h"));
    const platform::HTTPHeaderFields expected{
        {"X-A", "1, 2"},
        {"Cookie", "a=1; b=2"},
        {"Set-Cookie", "x, y"},
        {"X-Empty", ""},
        {"X-Bytes", "\xC3\x83\xC2\xA9"}
    };
    EXPECT_EQ(result.allHTTPHeaderFields, expected);
    EXPECT_TRUE(result.allHTTPHeaderFields.find("x-a")->first == "X-A") << "spelled as it came first";
    EXPECT_EQ(result.httpMethod, "GET");
}

TEST(Conversions, ResponsesComeInWithWhatIsSoundInThem) {
    const auto make = [](int status, HTTPURLResponse::HeaderFields fields = {}) {
        return std::make_shared<const HTTPURLResponse>(url("http://h/"), status, std::move(fields), -1);
    };
    const auto response = makeHTTPResponse(make(
        999, {{"A", "1"}, {"bad name", "2"}, {"", "3"}, {"a", "4"}, {"Latin", "caf\xC3\xA9"}, {"Far", "x\xE2\x82\xACy"}}
    ));
    EXPECT_EQ(response.status().code(), 999);
    EXPECT_EQ(response.reasonPhrase(), "");
    std::string fields;
    for (const HTTPField& one : response.headerFields)
        fields += std::string(one.name.rawName()) + "=" + std::string(one.rawValue().view()) + ";";
    EXPECT_EQ(fields, "A=1;a=4;Latin=caf\xE9;Far=x y;");

    for (const int status : {1000, -1}) {
        EXPECT_EQ(
            textOf([&] { return makeHTTPResponse(make(status)).debugDescription(); }),
            "Received an HTTP response with invalid status code: " + std::to_string(status) + ")"
        );
    }
    const auto other = std::make_shared<const URLResponse>(url("file:///x"), 7);
    EXPECT_EQ(
        textOf([&] { return makeHTTPResponse(other).debugDescription(); }),
        "Received a non-HTTP response, of type: URLResponse"
    );
    EXPECT_EQ(bodyLength(*other), HTTPBody::Length::known(7));
    EXPECT_TRUE(bodyLength(*make(200)).isUnknown());
    EXPECT_STREQ(URLSessionTransportError::noResponse(std::nullopt).what(), "Received a nil response for <nil URL>");
    EXPECT_STREQ(
        URLSessionTransportError::noResponse(url("http://h/")).what(), "Received a nil response for http://h/"
    );
}

TEST(Transport, CallsOverRealConnections) {
    ScriptedServer server(ScriptedServer::answering([](Connection& connection, const ScriptedServer::Request& got) {
        if (got.line().starts_with("GET /open")) {
            return connection.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\n\r\n");
        }
        connection.respond(got.body, "X-Line: " + got.line() + "\r\n");
    }));
    auto client = transport();
    EXPECT_TRUE(client.configuration.implementation.is<Implementation::Buffering>());
    const auto base = url(server.url("/api"));

    HTTPRequest put("/v1?a=b", HTTPRequest::Method::put);
    const std::vector<platform::ByteChunk> chunks{platform::ByteChunk("one "), platform::ByteChunk("two")};
    const HTTPBody body(chunks, HTTPBody::Length::unknown(), OpenAPIRuntime::IterationBehavior::single);
    const auto answer = syncWait(client.send(put, body, base, "operation"));
    EXPECT_EQ(answer.response.status().code(), 200);
    EXPECT_EQ(answer.response.headerFields[HTTPField::Name::make("x-line").value()], "PUT /api/v1?a=b HTTP/1.1");
    ASSERT_TRUE(answer.body);
    EXPECT_EQ(textOf(*answer.body), "one two");
    EXPECT_EQ(answer.body->length(), HTTPBody::Length::known(7));
    EXPECT_EQ(answer.body->iterationBehavior(), OpenAPIRuntime::IterationBehavior::multiple);

    // An empty body is one empty chunk, not no body.
    HTTPRequest get("/", HTTPRequest::Method::get);
    const auto empty = syncWait(client.send(get, std::nullopt, base, ""));
    ASSERT_TRUE(empty.body);
    auto iterator = empty.body->makeAsyncIterator();
    const auto chunk = syncWait(iterator.next());
    ASSERT_TRUE(chunk);
    EXPECT_TRUE(chunk->empty());
    EXPECT_FALSE(syncWait(iterator.next()));

    HTTPRequest open("/open", HTTPRequest::Method::get);
    const auto unknown = syncWait(client.send(open, std::nullopt, url(server.url("")), ""));
    EXPECT_TRUE(unknown.body->length().isUnknown());
    EXPECT_EQ(textOf(*unknown.body), "ok");

    // Failures pass through as they are.
    EXPECT_THROW(syncWait(client.send(put, body, base, "")), OpenAPIRuntime::TooManyIterationsError);
    EXPECT_THROW(syncWait(client.send(get, std::nullopt, url("ftp://h"), "")), platform::URLError);
    HTTPRequest bad("a b", HTTPRequest::Method::get);
    EXPECT_THROW(syncWait(client.send(bad, std::nullopt, base, "")), URLSessionTransportError);
    client.configuration.implementation = Implementation::streaming(16'384, {});
    EXPECT_EQ(
        textOf([&] { return syncWait(client.send(get, std::nullopt, base, "")).response.debugDescription(); }),
        "Streaming is not supported on this platform"
    );
    EXPECT_EQ(server.connectionCount(), 1);
}

TEST(Transport, CancellationEndsACallAtEveryStage) {
    std::promise<void> reached;
    ScriptedServer server([&](Connection& connection) {
        connection.readRequest();
        reached.set_value();
        connection.stall();
    });
    auto client = transport();
    const auto base = url(server.url(""));
    const HTTPRequest get("/", HTTPRequest::Method::get);
    {
        std::stop_source source;
        source.request_stop();
        EXPECT_THROW(
            syncWait(client.send(get, std::nullopt, base, ""), source.get_token()), platform::CancellationError
        );
        EXPECT_EQ(server.connectionCount(), 0);
    }
    {
        std::stop_source source;
        std::thread canceller([&] {
            reached.get_future().wait();
            source.request_stop();
        });
        try {
            syncWait(client.send(get, std::nullopt, base, ""), source.get_token());
            ADD_FAILURE() << "the server never answers";
        } catch (const platform::URLError& error) {
            EXPECT_EQ(error.kind(), platform::URLError::Kind::cancelled);
        }
        canceller.join();
    }
    ScriptedServer quick(ScriptedServer::answering([](Connection& connection, const auto&) {
        connection.respond("fine");
    }));
    for (int round = 0; round < 200; ++round) {
        std::stop_source source;
        std::thread canceller([&, round] {
            for (int i = 0; i < round % 20; ++i)
                std::this_thread::yield();
            source.request_stop();
        });
        const auto text = textOf([&] {
            const auto answer = syncWait(client.send(get, std::nullopt, url(quick.url("")), ""), source.get_token());
            return textOf(*answer.body);
        });
        EXPECT_TRUE(text == "fine" || text.find("cancelled") != std::string::npos) << text;
        canceller.join();
    }
}

TEST(LockedValueBox, CopiesShareOneLockAndOneValue) {
    const LockedValueBox<int> box(0);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = box] {
            for (int j = 0; j < 1000; ++j)
                copy.withLockedValue([](int& value) { ++value; });
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(box.withLockedValue([](int value) { return value; }), 4000);
    const Lock lock;
    const Lock copy = lock;
    lock.lock();
    EXPECT_NE(copy.withLockPrimitive([](pthread_mutex_t& mutex) { return pthread_mutex_trylock(&mutex); }), 0);
    lock.unlock();
    EXPECT_EQ(copy.withLock([] { return 7; }), 7);
}
