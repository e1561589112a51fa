#include "OpenAPIURLSession/URLSessionTransportError.hpp"

#include <utility>

namespace OpenAPIURLSession::inline v1 {

namespace {

struct Texts {
    using E = URLSessionTransportError;

    std::string operator()(const E::InvalidRequestURL& e) const {
        return "Invalid request URL from request path: " + e.path + ", method: " + std::string(e.method.rawValue()) +
               ", relative to base URL: " + e.baseURL.absoluteString();
    }

    std::string operator()(const E::NotHTTPResponse& e) const {
        return "Received a non-HTTP response, of type: " + std::string(e.response->typeName());
    }

    std::string operator()(const E::InvalidResponseStatusCode& e) const {
        return "Received an HTTP response with invalid status code: " + std::to_string(e.response->statusCode()) + ")";
    }

    std::string operator()(const E::NoResponse& e) const {
        return "Received a nil response for " + (e.url ? e.url->absoluteString() : "<nil URL>");
    }

    std::string operator()(const E::StreamingNotSupported&) const {
        return "Streaming is not supported on this platform";
    }
};

} // namespace

URLSessionTransportError::URLSessionTransportError(Payload payload) {
    auto text = std::visit(Texts(), payload);
    storage_ = std::make_shared<const Storage>(Storage{std::move(payload), std::move(text)});
}

URLSessionTransportError URLSessionTransportError::invalidRequestURL(
    std::string path, HTTPTypes::HTTPRequest::Method method, platform::URL baseURL
) {
    return URLSessionTransportError(InvalidRequestURL{std::move(path), std::move(method), std::move(baseURL)});
}

URLSessionTransportError URLSessionTransportError::notHTTPResponse(std::shared_ptr<const platform::URLResponse> response
) {
    return URLSessionTransportError(NotHTTPResponse{std::move(response)});
}

URLSessionTransportError
URLSessionTransportError::invalidResponseStatusCode(std::shared_ptr<const platform::HTTPURLResponse> response) {
    return URLSessionTransportError(InvalidResponseStatusCode{std::move(response)});
}

URLSessionTransportError URLSessionTransportError::noResponse(std::optional<platform::URL> url) {
    return URLSessionTransportError(NoResponse{std::move(url)});
}

URLSessionTransportError URLSessionTransportError::streamingNotSupported() {
    return URLSessionTransportError(StreamingNotSupported{});
}

} // namespace OpenAPIURLSession::inline v1
