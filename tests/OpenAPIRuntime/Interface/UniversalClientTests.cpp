#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "OpenAPIRuntime/Interface/UniversalClient.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using OpenAPIRuntime::ClientError;
using OpenAPIRuntime::ClientMiddleware;
using OpenAPIRuntime::ClientTransport;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::HTTPRequestAndBody;
using OpenAPIRuntime::HTTPResponseAndBody;
using OpenAPIRuntime::RuntimeError;
using OpenAPIRuntime::UniversalClient;
using platform::syncWait;
using platform::Task;
using platform::URL;

using OptionalBody = std::optional<HTTPBody>;

/// What happened, in order: "name>" on the way down, "name<" on the way up.
using Trace = std::vector<std::string>;

struct FunctionTransport final : ClientTransport {
    using Function = std::function<Task<HTTPResponseAndBody>(HTTPRequest, OptionalBody, URL, std::string)>;

    explicit FunctionTransport(Function function_)
        : function(std::move(function_)) {}

    Task<HTTPResponseAndBody>
    send(HTTPRequest request, OptionalBody body, URL baseURL, std::string operationID) override {
        return function(std::move(request), std::move(body), std::move(baseURL), std::move(operationID));
    }

    Function function;
};

Task<HTTPResponseAndBody> respond(int status, const char* body) {
    return Task<HTTPResponseAndBody>::ready(HTTPResponse(HTTPResponse::Status(status)), HTTPBody(body));
}

std::shared_ptr<ClientTransport> answering(Trace& trace) {
    return std::make_shared<FunctionTransport>([&trace](HTTPRequest request, OptionalBody, URL, std::string) {
        trace.push_back("transport " + *request.path());
        return respond(200, "ok");
    });
}

/// Tells its way down and up; marks the request's path with its name.
struct Tracing : ClientMiddleware {
    Tracing(std::string name_, Trace& trace_)
        : name(std::move(name_))
        , trace(trace_) {}

    Task<HTTPResponseAndBody>
    intercept(HTTPRequest request, OptionalBody body, URL baseURL, std::string, Next next) override {
        trace.push_back(name + ">");
        request.setPath(*request.path() + "/" + name);
        HTTPResponseAndBody result = co_await next(std::move(request), std::move(body), std::move(baseURL));
        trace.push_back(name + "<");
        co_return result;
    }

    std::string name;
    Trace& trace;
};

struct FunctionMiddleware final : ClientMiddleware {
    using Function = std::function<Task<HTTPResponseAndBody>(HTTPRequest, OptionalBody, URL, Next)>;

    explicit FunctionMiddleware(Function function_)
        : function(std::move(function_)) {}

    Task<HTTPResponseAndBody>
    intercept(HTTPRequest request, OptionalBody body, URL baseURL, std::string, Next next) override {
        return function(std::move(request), std::move(body), std::move(baseURL), std::move(next));
    }

    Function function;
};

/// Really suspends, and goes on when another thread says so.
Task<void> hop() {
    auto body = [](platform::Continuation<void> continuation) {
        std::thread([continuation = std::move(continuation)]() mutable { continuation.resume(); }).detach();
    };
    auto waiting = platform::withContinuation<void>(std::move(body));
    co_await waiting;
}

Task<HTTPResponseAndBody> hopThenRespond(std::string body) {
    co_await hop();
    co_return HTTPResponseAndBody(HTTPResponse(200), HTTPBody(std::move(body)));
}

struct Input {
    std::string text = "in";

    friend void describe(std::string& out, const Input& input) { out += "Input(" + input.text + ")"; }
};

HTTPRequestAndBody serialize(const Input& input) {
    return HTTPRequestAndBody(
        HTTPRequest(HTTPRequest::Method::post, std::nullopt, std::nullopt, "/" + input.text), HTTPBody(input.text)
    );
}

Task<std::string> deserialize(HTTPResponse, OptionalBody body) {
    return OpenAPIRuntime::collect<std::string>(*body, 1000);
}

UniversalClient makeClient(
    std::shared_ptr<ClientTransport> transport, std::vector<std::shared_ptr<ClientMiddleware>> middlewares = {}
) {
    return {*URL::make("https://host.example"), {}, std::move(transport), std::move(middlewares)};
}

/// The error of a call that has to fail.
ClientError failureOf(Task<std::string> call) {
    try {
        (void)syncWait(std::move(call));
    } catch (const ClientError& error) {
        return error;
    }
    throw std::logic_error("the call succeeded");
}

TEST(UniversalClient, MiddlewaresRunInTheirOrderAndMayChangeWhatTheyPassOn) {
    Trace trace;
    const auto a = std::make_shared<Tracing>("a", trace);
    const auto b = std::make_shared<Tracing>("b", trace);
    auto client = makeClient(answering(trace), {a, b});
    EXPECT_EQ(syncWait(client.send(Input(), "op", serialize, deserialize)), "ok");
    EXPECT_EQ(trace, (Trace{"a>", "b>", "transport /in/a/b", "b<", "a<"}));

    trace.clear();
    const UniversalClient before = client;
    client.setMiddlewares({b});
    EXPECT_EQ(before.middlewares().size(), 2u);
    EXPECT_EQ(syncWait(client.send(Input(), "op", serialize, deserialize)), "ok");
    EXPECT_EQ(trace, (Trace{"b>", "transport /in/b", "b<"}));
}

TEST(UniversalClient, TheTransportReceivesWhatTheSerializerMade) {
    const auto transport = std::make_shared<FunctionTransport>(
        [](HTTPRequest request, OptionalBody body, URL baseURL, std::string operationID) {
            EXPECT_EQ(request, serialize(Input()).request);
            EXPECT_EQ(syncWait(OpenAPIRuntime::collect<std::string>(*body, 100)), "in");
            EXPECT_EQ(baseURL.absoluteString(), "https://host.example");
            EXPECT_EQ(operationID, "op");
            return respond(200, "ok");
        }
    );
    // The task keeps what it needs alive, also without its client.
    auto call = makeClient(transport).send(Input(), "op", serialize, deserialize);
    EXPECT_EQ(syncWait(std::move(call)), "ok");
}

TEST(UniversalClient, AMiddlewareMayAnswerAloneOrCallTheRestAgain) {
    Trace trace;
    const auto alone = std::make_shared<FunctionMiddleware>([](auto...) { return respond(200, "cached"); });
    EXPECT_EQ(syncWait(makeClient(answering(trace), {alone}).send(Input(), "op", serialize, deserialize)), "cached");
    EXPECT_EQ(trace, Trace{});

    struct Twice final : ClientMiddleware {
        Task<HTTPResponseAndBody>
        intercept(HTTPRequest request, OptionalBody body, URL baseURL, std::string, Next next) override {
            const Next copy = next;
            HTTPResponseAndBody first = co_await next(request, body, baseURL);
            HTTPResponseAndBody second = co_await copy(std::move(request), std::move(body), std::move(baseURL));
            co_return second;
        }
    };

    const auto inner = std::make_shared<Tracing>("i", trace);
    const auto client = makeClient(answering(trace), {std::make_shared<Twice>(), inner});
    EXPECT_EQ(syncWait(client.send(Input(), "op", serialize, deserialize)), "ok");
    EXPECT_EQ(trace, (Trace{"i>", "transport /in/i", "i<", "i>", "transport /in/i", "i<"}));
}

struct Failing final : ClientMiddleware {
    Task<HTTPResponseAndBody> intercept(HTTPRequest request, OptionalBody, URL, std::string, Next) override {
        request.setPath("/changed");
        throw std::runtime_error("middleware");
    }
};

struct FailingLater final : ClientMiddleware {
    Task<HTTPResponseAndBody> intercept(HTTPRequest, OptionalBody, URL, std::string, Next) override {
        co_await hop();
        throw std::runtime_error("later");
    }
};

TEST(UniversalClient, EveryStageFailsWithItsOwnContext) {
    Trace trace;
    const auto refusing = std::make_shared<FunctionTransport>([](auto...) -> Task<HTTPResponseAndBody> {
        throw RuntimeError::pathUnset();
    });
    const auto refusingLater = std::make_shared<FunctionTransport>([](auto...) {
        return Task<HTTPResponseAndBody>::failed(std::runtime_error("network"));
    });
    const auto passing = std::make_shared<Tracing>("p", trace);
    const auto badSerializer = [](const Input&) -> HTTPRequestAndBody {
        throw RuntimeError::invalidHeaderFieldName("a b");
    };
    const auto badDeserializer = [](HTTPResponse, OptionalBody) -> Task<std::string> {
        throw RuntimeError::missingRequiredResponseBody();
    };
    const auto badDeserializerLater = [](HTTPResponse, OptionalBody) -> Task<std::string> {
        co_await hop();
        throw std::runtime_error("decoding");
    };

    // The context is told by letters: r, request; b, its body; u, base URL; R, response; B, its body.
    struct Case {
        std::function<Task<std::string>()> call;
        std::string context;
        std::string cause;
        std::string underlying;
    };

    const auto send = [](std::shared_ptr<ClientTransport> transport,
                         std::vector<std::shared_ptr<ClientMiddleware>> middlewares,
                         auto serializer,
                         auto deserializer) {
        return std::function<Task<std::string>()>([=] {
            return makeClient(transport, middlewares).send(Input(), "op", serializer, deserializer);
        });
    };
    const std::vector<Case> cases = {
        {send(answering(trace), {}, badSerializer, deserialize),
         "",
         "Invalid header field name: 'a b'",
         "Invalid header field name: 'a b'"},
        {send(refusing, {}, serialize, deserialize),
         "rbu",
         "Transport threw an error.",
         "Path was not set on the request."},
        {send(refusingLater, {}, serialize, deserialize), "rbu", "Transport threw an error.", "network"},
        {send(refusingLater, {passing}, serialize, deserialize), "rbu", "Transport threw an error.", "network"},
        {send(answering(trace), {std::make_shared<Failing>()}, serialize, deserialize),
         "rbu",
         "Middleware of type 'Failing' threw an error.",
         "middleware"},
        {send(answering(trace), {passing, std::make_shared<FailingLater>()}, serialize, deserialize),
         "rbu",
         "Middleware of type 'FailingLater' threw an error.",
         "later"},
        {send(answering(trace), {}, serialize, badDeserializer),
         "rbuRB",
         "Missing required response body",
         "Missing required response body"},
        {send(answering(trace), {passing}, serialize, badDeserializerLater), "rbuRB", "Unknown", "decoding"},
        // Errors that stand for a failed stage give way to what they hold, wherever they come from.
        {send(
             answering(trace),
             {},
             serialize,
             [](HTTPResponse, OptionalBody) -> Task<std::string> {
                 throw RuntimeError::handlerFailed(std::make_exception_ptr(std::runtime_error("handler")));
             }
         ),
         "rbuRB",
         "User handler threw an error.",
         "handler"},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.cause + expected.underlying);
        const ClientError error = failureOf(expected.call());
        std::string context;
        if (error.request) context += 'r';
        if (error.requestBody) context += 'b';
        if (error.baseURL) context += 'u';
        if (error.response) context += 'R';
        if (error.responseBody) context += 'B';
        EXPECT_EQ(context, expected.context);
        EXPECT_EQ(error.causeDescription, expected.cause);
        EXPECT_EQ(platform::prettyDescription(error.underlyingError), expected.underlying);
        EXPECT_EQ(error.operationID, "op");
        EXPECT_EQ(error.operationInput.getIf<Input>()->text, "in");
        if (error.request) {
            EXPECT_EQ(error.request->path(), "/in");
        }
    }
}

TEST(UniversalClient, AClientErrorPassesUnchanged) {
    const ClientError original("other", platform::AnyValue(7), {}, {}, {}, {}, {}, "cause", nullptr);
    Trace trace;
    const auto throwing =
        std::make_shared<FunctionMiddleware>([&](auto...) -> Task<HTTPResponseAndBody> { throw original; });
    const auto passing = std::make_shared<Tracing>("p", trace);
    const std::vector<std::function<Task<std::string>()>> calls = {
        [&] { return makeClient(answering(trace), {throwing}).send(Input(), "op", serialize, deserialize); },
        [&] { return makeClient(answering(trace), {passing, throwing}).send(Input(), "op", serialize, deserialize); },
        [&] {
            return makeClient(answering(trace))
                .send(Input(), "op", [&](const Input&) -> HTTPRequestAndBody { throw original; }, deserialize);
        },
        [&] {
            return makeClient(answering(trace), {passing})
                .send(Input(), "op", serialize, [&](HTTPResponse, OptionalBody) {
                    return Task<std::string>::failed(original);
                });
        },
        [&] {
            const auto transport =
                std::make_shared<FunctionTransport>([&](auto...) -> Task<HTTPResponseAndBody> { throw original; });
            return makeClient(transport, {passing}).send(Input(), "op", serialize, deserialize);
        },
    };
    for (const auto& call : calls) {
        const ClientError error = failureOf(call());
        EXPECT_EQ(std::string(error.what()), original.what());
        EXPECT_FALSE(error.request);
    }
}

TEST(ClientError, DescribesItsContext) {
    HTTPRequest request(HTTPRequest::Method::get, std::nullopt, std::nullopt, "/path");
    request.headerFields[HTTPField::Name::accept] = "application/json";
    ClientError error(
        "getThing",
        platform::AnyValue(Input()),
        request,
        std::nullopt,
        *URL::make("https://host.example/api"),
        HTTPResponse(404),
        HTTPBody("x"),
        "Unknown",
        std::make_exception_ptr(RuntimeError::pathUnset())
    );
    const std::string text =
        "Client error - cause description: 'Unknown', underlying error: Path was not set on the request., operationID: "
        "getThing, operationInput: Input(in), request: GET /path [accept: application/json], requestBody: <nil>, "
        "baseURL: "
        "https://host.example/api, response: 404 [], responseBody: OpenAPIRuntime.HTTPBody";
    EXPECT_EQ(error.what(), text);
    EXPECT_EQ(error.errorDescription(), text);
    EXPECT_EQ(platform::prettyDescription(std::make_exception_ptr(error)), text);

    error = ClientError("op", {}, {}, {}, {}, {}, {}, "", nullptr);
    const std::string bare = "Client error - cause description: '', underlying error: <nil>, operationID: op, "
                             "operationInput: <nil>, request: "
                             "<nil>, requestBody: <nil>, baseURL: <nil>, response: <nil>, responseBody: <nil>";
    EXPECT_EQ(error.what(), bare);
    error.causeDescription = "changed";
    EXPECT_EQ(error.description().find("Client error - cause description: 'changed'"), 0u);
    EXPECT_EQ(error.what(), bare);
}

TEST(UniversalClient, ServesConcurrentCalls) {
    const auto transport = std::make_shared<FunctionTransport>([](HTTPRequest request, OptionalBody, URL, std::string) {
        return hopThenRespond(*request.path());
    });
    const auto passing = std::make_shared<FunctionMiddleware>(
        [](HTTPRequest request, OptionalBody body, URL baseURL, ClientMiddleware::Next next) {
            return next(std::move(request), std::move(body), std::move(baseURL));
        }
    );
    const auto client = makeClient(transport, {passing, passing});
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i) {
                const std::string text = std::to_string(t) + "-" + std::to_string(i);
                if (syncWait(client.send(Input{text}, "op", serialize, deserialize)) == "/" + text) ++right;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 200);
}

} // namespace
