#pragma once

#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/Export.hpp"
#include "platform/loading/URLRequest.hpp"
#include "platform/loading/URLResponse.hpp"
#include "platform/url/URL.hpp"

#include <memory>

namespace OpenAPIURLSession::inline v1 {

/// The request that the URL-loading layer sends: the base URL with the request's path appended to its path, letter for
/// letter, and its query replaced by the request's. Fields of one name become one, joined by ", " (by "; " for
/// cookies). Throws `URLSessionTransportError` (`invalidRequestURL`) where no URL comes of it.
[[nodiscard]] QUILLBEAM_EXPORT platform::URLRequest
makeURLRequest(const HTTPTypes::HTTPRequest& request, const platform::URL& baseURL);

/// The head that the response is. A field with a name that is no token is left out; a character above U+00FF in a value
/// becomes a space. Throws `URLSessionTransportError` (`notHTTPResponse`, `invalidResponseStatusCode`).
[[nodiscard]] QUILLBEAM_EXPORT HTTPTypes::HTTPResponse
makeHTTPResponse(const std::shared_ptr<const platform::URLResponse>& response);

/// The length of the response's body, as far as the response says it.
[[nodiscard]] QUILLBEAM_EXPORT OpenAPIRuntime::HTTPBody::Length bodyLength(const platform::URLResponse& response);

} // namespace OpenAPIURLSession::inline v1
