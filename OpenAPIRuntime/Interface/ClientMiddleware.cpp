#include "OpenAPIRuntime/Interface/ClientMiddleware.hpp"

#include "OpenAPIRuntime/Interface/detail/Call.hpp"

namespace OpenAPIRuntime::inline v1 {

ClientMiddleware::~ClientMiddleware() = default;

platform::Task<HTTPResponseAndBody> ClientMiddleware::Next::operator()(
    HTTPTypes::HTTPRequest request, std::optional<HTTPBody> body, platform::URL baseURL
) const {
    return detail::Call::runFrom(call_, position_, std::move(request), std::move(body), std::move(baseURL));
}

} // namespace OpenAPIRuntime::inline v1
