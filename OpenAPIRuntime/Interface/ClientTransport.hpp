#pragma once

#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/Export.hpp"
#include "platform/concurrency/Task.hpp"
#include "platform/url/URL.hpp"

#include <optional>
#include <string>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// A response head and, where there is one, its body.
struct HTTPResponseAndBody {
    HTTPTypes::HTTPResponse response{};
    std::optional<HTTPBody> body{};

    HTTPResponseAndBody() = default;

    explicit HTTPResponseAndBody(HTTPTypes::HTTPResponse response_, std::optional<HTTPBody> body_ = std::nullopt)
        : response(std::move(response_))
        , body(std::move(body_)) {}

    friend bool operator==(const HTTPResponseAndBody&, const HTTPResponseAndBody&) = default;
};

/// Carries a request to the server and brings its response back: the end of every call's road.
///
/// An application may write its own, for another HTTP engine or for tests without a network:
///
///     class Canned final : public ClientTransport {
///     public:
///         Task<HTTPResponseAndBody>
///         send(HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, std::string operationID) override {
///             return Task<HTTPResponseAndBody>::ready(HTTPResponse(HTTPResponse::Status::ok), HTTPBody("{}"));
///         }
///     };
///
/// Thread safety: one transport serves any number of calls at once, from different threads.
class QUILLBEAM_EXPORT ClientTransport {
public:
    virtual ~ClientTransport();

    /// Sends the request and yields the response, whatever its status: only the failure to get one is an error.
    ///
    /// @param request the head; its path is relative to `baseURL`, scheme and authority are not set
    /// @param body the request's body, if it has one
    /// @param baseURL the server's address
    /// @param operationID the name of the operation, for logs and measurements
    /// The task may fail with any exception; the caller of the operation sees it as the cause of a `ClientError`.
    [[nodiscard]] virtual platform::Task<HTTPResponseAndBody> send(
        HTTPTypes::HTTPRequest request, std::optional<HTTPBody> body, platform::URL baseURL, std::string operationID
    ) = 0;

protected:
    ClientTransport() = default;
    ClientTransport(const ClientTransport&) = default;
    ClientTransport& operator=(const ClientTransport&) = default;
};

} // namespace OpenAPIRuntime::inline v1
