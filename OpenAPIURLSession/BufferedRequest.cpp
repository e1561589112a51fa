#include "OpenAPIURLSession/BufferedRequest.hpp"

#include "OpenAPIURLSession/Conversions.hpp"
#include "OpenAPIURLSession/LockedValueBox.hpp"
#include "OpenAPIURLSession/URLSessionTransportError.hpp"
#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/Continuation.hpp"

#include <limits>
#include <memory>
#include <utility>

namespace OpenAPIURLSession::inline v1 {

using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::HTTPResponseAndBody;
using platform::ByteChunk;
using platform::Continuation;
using platform::Task;
using platform::URLRequest;
using platform::URLResponse;
using platform::URLSession;
using platform::URLSessionTask;

namespace {

/// What a task of the session ends with when it does not fail.
struct Loaded {
    std::shared_ptr<const URLResponse> response{};
    std::optional<ByteChunk> data{};

    Loaded() = default;

    Loaded(std::shared_ptr<const URLResponse> loadedResponse, std::optional<ByteChunk> loadedData)
        : response(std::move(loadedResponse))
        , data(std::move(loadedData)) {}
};

URLSessionTask makeTask(const URLSession& session, const URLRequest& request, Continuation<Loaded> continuation) {
    // Handlers must be copyable, and a continuation is not.
    auto shared = std::make_shared<Continuation<Loaded>>(std::move(continuation));
    auto completionHandler = [shared, url = request.url](auto data, auto response, const auto& error) {
        if (error) {
            shared->fail(error);
        } else if (!response) {
            shared->fail(std::make_exception_ptr(URLSessionTransportError::noResponse(url)));
        } else {
            shared->resume(std::move(response), std::move(data));
        }
    };
    return session.dataTask(request, std::move(completionHandler));
}

} // namespace

Task<HTTPResponseAndBody> bufferedRequest(
    URLSession session, HTTPTypes::HTTPRequest request, platform::URL baseURL, std::optional<HTTPBody> requestBody
) {
    co_await platform::checkCancellation();
    URLRequest urlRequest = makeURLRequest(request, baseURL);
    if (requestBody) {
        Task<ByteChunk> collected = OpenAPIRuntime::collect(*requestBody, std::numeric_limits<std::size_t>::max());
        ByteChunk bytes = co_await std::move(collected);
        urlRequest.httpBody = std::move(bytes);
    }
    co_await platform::checkCancellation();

    const std::stop_token token = co_await platform::currentStopToken();
    const LockedValueBox<std::optional<URLSessionTask>> running(std::nullopt);
    const auto cancel = [&running] {
        running.withLockedValue([](std::optional<URLSessionTask>& task) {
            if (task) task->cancel();
            task.reset();
        });
    };
    const auto start = [&](Continuation<Loaded> continuation) {
        const URLSessionTask task = makeTask(session, urlRequest, std::move(continuation));
        running.withLockedValue([&](std::optional<URLSessionTask>& stored) {
            if (task.state() != URLSessionTask::State::suspended) return;
            task.resume();
            // A handler that ran before there was a task to store has found nothing to cancel.
            if (token.stop_requested()) {
                task.cancel();
            } else {
                stored = task;
            }
        });
    };
    Loaded loaded = co_await platform::withContinuation<Loaded>(start, cancel);

    std::optional<HTTPBody> body;
    if (loaded.data) body.emplace(*std::move(loaded.data), bodyLength(*loaded.response));
    co_return HTTPResponseAndBody(makeHTTPResponse(loaded.response), std::move(body));
}

} // namespace OpenAPIURLSession::inline v1
