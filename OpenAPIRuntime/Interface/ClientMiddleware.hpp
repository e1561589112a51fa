#pragma once

#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "http_types/HTTPRequest.hpp"
#include "platform/Export.hpp"
#include "platform/concurrency/Task.hpp"
#include "platform/url/URL.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

namespace detail {
class Call;
}

/// Stands between the operations and the transport and sees every request and its response: for authentication,
/// logging, retries, measurements, caching. `Middlewares/` has ready ones.
///
///     class UserAgent final : public ClientMiddleware {
///     public:
///         explicit UserAgent(std::string name) : name_(std::move(name)) {}
///
///         Task<HTTPResponseAndBody> intercept(
///             HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, std::string operationID, Next next
///         ) override {
///             request.headerFields[HTTPField::Name::userAgent] = name_;
///             return next(std::move(request), std::move(body), std::move(baseURL));
///         }
///
///     private:
///         const std::string name_;
///     };
///
/// It may pass on another request, body or base URL, hand back another response, answer without calling `next`, or call
/// it again.
///
/// Thread safety: one middleware serves any number of calls at once, from different threads.
class QUILLBEAM_EXPORT ClientMiddleware {
public:
    /// The rest of the chain: the middlewares behind this one, then the transport.
    ///
    /// A small value that may be copied and outlive the call. Each call of it runs the rest of the chain once more; a
    /// body that can be iterated only once is then the caller's concern (see `HTTPBody::iterationBehavior`).
    ///
    /// Thread safety: distinct objects: safe, also where one is a copy of the other; shared objects: safe.
    class QUILLBEAM_EXPORT Next {
    public:
        /// Yields the response that the rest of the chain gives. The task does nothing until it is awaited, and fails
        /// only with `ClientError`.
        [[nodiscard]] platform::Task<HTTPResponseAndBody>
        operator()(HTTPTypes::HTTPRequest request, std::optional<HTTPBody> body, platform::URL baseURL) const;

    private:
        friend class detail::Call;

        Next(std::shared_ptr<const detail::Call> call, std::size_t position) noexcept
            : call_(std::move(call))
            , position_(position) {}

        std::shared_ptr<const detail::Call> call_;
        std::size_t position_; // of the middleware that it calls; the number of middlewares stands for the transport
    };

    virtual ~ClientMiddleware();

    /// Handles one request on its way down and its response on its way up.
    ///
    /// @param request the head as the middleware before this one passed it on
    /// @param body the request's body, if it has one
    /// @param baseURL the server's address
    /// @param operationID the name of the operation
    /// @param next the rest of the chain
    /// The task may fail with any exception. A `ClientError`, such as one from `next`, reaches the application
    /// unchanged; anything else becomes the underlying error of a `ClientError` that names this middleware's type.
    [[nodiscard]] virtual platform::Task<HTTPResponseAndBody> intercept(
        HTTPTypes::HTTPRequest request,
        std::optional<HTTPBody> body,
        platform::URL baseURL,
        std::string operationID,
        Next next
    ) = 0;

protected:
    ClientMiddleware() = default;
    ClientMiddleware(const ClientMiddleware&) = default;
    ClientMiddleware& operator=(const ClientMiddleware&) = default;
};

} // namespace OpenAPIRuntime::inline v1
