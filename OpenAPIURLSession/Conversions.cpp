#include "OpenAPIURLSession/Conversions.hpp"

#include "OpenAPIURLSession/URLSessionTransportError.hpp"
#include "platform/loading/HTTPURLResponse.hpp"
#include "platform/text/Latin1.hpp"
#include "platform/text/UTF8.hpp"
#include "platform/url/URLComponents.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace OpenAPIURLSession::inline v1 {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using OpenAPIRuntime::HTTPBody;
using platform::HTTPURLResponse;
using platform::URL;
using platform::URLComponents;
using platform::URLRequest;
using platform::URLResponse;

namespace {

std::optional<URL> resolved(const std::optional<std::string>& path, const URL& baseURL) {
    auto base = URLComponents::make(baseURL.absoluteString());
    const auto request = URLComponents::make(path ? std::string_view(*path) : std::string_view());
    if (!base || !request) return std::nullopt;
    base->setPercentEncodedPath(base->percentEncodedPath() + request->percentEncodedPath());
    base->setPercentEncodedQuery(request->percentEncodedQuery());
    return base->url();
}

/// The field with the bytes that this text is in ISO Latin 1.
HTTPField fieldFromLatin1Text(HTTPField::Name name, std::string_view text) {
    if (platform::isASCII(text)) return HTTPField(std::move(name), text);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        const bool continues = (byte & 0xC0U) == 0x80;
        if (byte < 0x80) {
            bytes.push_back(byte);
        } else if (!continues) {
            bytes.push_back(static_cast<std::uint8_t>(platform::latin1ByteAt(text, i).value_or(' ')));
        }
    }
    return HTTPField(std::move(name), std::span<const std::uint8_t>(bytes));
}

} // namespace

URLRequest makeURLRequest(const HTTPRequest& request, const URL& baseURL) {
    const auto path = request.path();
    auto url = resolved(path, baseURL);
    if (!url) throw URLSessionTransportError::invalidRequestURL(path.value_or("<nil>"), request.method(), baseURL);
    URLRequest result(*std::move(url));
    result.httpMethod = request.method().rawValue();
    for (const HTTPField& field : request.headerFields) {
        auto text = platform::textFromLatin1(field.rawValue().view());
        // The map knows names without regard to case and keeps the spelling that came first.
        const auto [at, isNew] = result.allHTTPHeaderFields.try_emplace(std::string(field.name.rawName()), text);
        if (!isNew) at->second.append(field.name == HTTPField::Name::cookie ? "; " : ", ").append(text);
    }
    return result;
}

HTTPResponse makeHTTPResponse(const std::shared_ptr<const URLResponse>& response) {
    const auto http = std::dynamic_pointer_cast<const HTTPURLResponse>(response);
    if (!http) throw URLSessionTransportError::notHTTPResponse(response);
    if (http->statusCode() < 0 || http->statusCode() > 999) {
        throw URLSessionTransportError::invalidResponseStatusCode(http);
    }
    HTTPResponse result(http->statusCode());
    result.headerFields.reserveCapacity(static_cast<HTTPTypes::HTTPFields::size_type>(http->allHeaderFields().size()));
    for (const auto& [name, value] : http->allHeaderFields()) {
        if (auto fieldName = HTTPField::Name::make(name)) {
            result.headerFields.append(fieldFromLatin1Text(*std::move(fieldName), value));
        }
    }
    return result;
}

HTTPBody::Length bodyLength(const URLResponse& response) {
    const auto length = response.expectedContentLength();
    return length == URLResponse::unknownLength ? HTTPBody::Length::unknown() : HTTPBody::Length::known(length);
}

} // namespace OpenAPIURLSession::inline v1
