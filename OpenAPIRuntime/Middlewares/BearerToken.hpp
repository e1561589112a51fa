#pragma once

#include "OpenAPIRuntime/Interface/ClientMiddleware.hpp"
#include "platform/Export.hpp"
#include "platform/concurrency/Task.hpp"
#include "platform/url/URL.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace OpenAPIRuntime::inline v1 {

/// Authentication by a bearer token (RFC 6750): sends `Authorization: Bearer TOKEN` with each request.
///
///     auto authentication = std::make_shared<BearerToken>(key);
///     QuillbeamAPI::Client client(serverURL, transport, {authentication});
///
/// # Tokens that expire
///
/// A token may come from a function instead. It is asked before the first request, and anew when the server answers
/// 401: once, however many calls are in flight. Calls that were refused with the same token wait for the one new token,
/// a call whose token has been replaced meanwhile takes the newer one, and each of them is sent once more.
///
///     auto authentication = std::make_shared<BearerToken>([session]() -> Task<std::string> {
///         return session->newAccessToken();
///     });
///
/// A call is sent at most twice. Its answer is the 401 where the second time is refused as well, and where its body can
/// be iterated only once, so that it cannot be sent again; the next call then asks for a new token first.
///
/// # Where the token goes
///
/// It belongs to one origin (scheme, host and port): that of the server URL given here, or else that of the first call.
/// A call to another origin goes without it. `URLSessionTransport` drops it where a redirect leads to another origin;
/// so should a transport of your own. Put this middleware behind those that change the base URL: it judges the one that
/// it is handed.
///
/// No error text shows the token: `ClientError` holds the request as it was before any middleware changed it. A
/// middleware behind this one does see the field, so a log of requests belongs before it.
///
/// A request that comes with an `Authorization` of its own, from a middleware before this one, passes untouched.
///
/// Thread safety: any number of calls at once, from any threads, also through several clients.
class QUILLBEAM_EXPORT BearerToken final : public ClientMiddleware {
public:
    /// Gives a token. An empty text stands for none: requests then go without.
    ///
    /// It is called, and its task runs, on `BackgroundPool::shared()`, never twice at once. Its task is never asked to
    /// stop, since a token may serve calls beyond those that wait for it, and an exchange with the service that issues
    /// it should not be left half done; a call that is cancelled meanwhile stops waiting. It must not use a client with
    /// this same middleware, since it would wait for itself.
    ///
    /// An error fails the calls that wait for the token, as this middleware's error; the next call asks again.
    using Source = std::function<platform::Task<std::string>()>;

    /// @param token sent with every request
    explicit BearerToken(const std::string& token);

    /// @param source asked for a token before the first request and after each 401; called for as long as calls run
    explicit BearerToken(Source source);

    /// @param serverURL its origin is the one that the token is sent to
    /// @throws std::invalid_argument where `serverURL` has no origin: it is not an absolute http or https URL
    BearerToken(const std::string& token, const platform::URL& serverURL);
    BearerToken(Source source, const platform::URL& serverURL);

    ~BearerToken() override;

    [[nodiscard]] platform::Task<HTTPResponseAndBody> intercept(
        HTTPTypes::HTTPRequest request,
        std::optional<HTTPBody> body,
        platform::URL baseURL,
        std::string operationID,
        Next next
    ) override;

private:
    class State;

    std::shared_ptr<State> state_; // outlives the middleware while the source is being asked
};

} // namespace OpenAPIRuntime::inline v1
