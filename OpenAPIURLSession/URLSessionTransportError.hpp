#pragma once

#include "http_types/HTTPRequest.hpp"
#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"
#include "platform/loading/HTTPURLResponse.hpp"
#include "platform/url/URL.hpp"

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace OpenAPIURLSession::inline v1 {

/// What the transport itself finds wrong. Errors of the URL-loading layer (`platform::URLError`) pass through as they
/// are.
///
/// A tagged union. Each case has a maker of its name and a record of its payload:
///
///     if (const auto* status = error.getIf<URLSessionTransportError::InvalidResponseStatusCode>())
///     use(status->response);
///
/// Copying shares the payload and never throws; `what()` never allocates.
class QUILLBEAM_EXPORT URLSessionTransportError final : public std::exception,
                                                        public platform::PrettyStringConvertible {
public:
    struct InvalidRequestURL {
        std::string path;
        HTTPTypes::HTTPRequest::Method method;
        platform::URL baseURL;
    };

    struct NotHTTPResponse {
        std::shared_ptr<const platform::URLResponse> response;
    };

    struct InvalidResponseStatusCode {
        std::shared_ptr<const platform::HTTPURLResponse> response;
    };

    struct NoResponse {
        std::optional<platform::URL> url;
    };

    struct StreamingNotSupported {};

    /// The path of a request and the base URL make no URL together.
    static URLSessionTransportError
    invalidRequestURL(std::string path, HTTPTypes::HTTPRequest::Method method, platform::URL baseURL);
    static URLSessionTransportError notHTTPResponse(std::shared_ptr<const platform::URLResponse> response);
    static URLSessionTransportError invalidResponseStatusCode(std::shared_ptr<const platform::HTTPURLResponse> response
    );
    static URLSessionTransportError noResponse(std::optional<platform::URL> url);
    static URLSessionTransportError streamingNotSupported();

    /// Whether this is the case, as in `error.is<URLSessionTransportError::NoResponse>()`.
    template <class Case>
    [[nodiscard]] bool is() const noexcept {
        return getIf<Case>() != nullptr;
    }

    /// The payload of the case, or null where this is another case.
    template <class Case>
    [[nodiscard]] const Case* getIf() const noexcept {
        return std::get_if<Case>(&storage_->payload);
    }

    /// Calls `visitor` with the payload.
    template <class Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), storage_->payload);
    }

    [[nodiscard]] const char* what() const noexcept override { return storage_->text.c_str(); }

    [[nodiscard]] std::string prettyDescription() const override { return storage_->text; }

private:
    using Payload =
        std::variant<InvalidRequestURL, NotHTTPResponse, InvalidResponseStatusCode, NoResponse, StreamingNotSupported>;

    struct Storage {
        Payload payload;
        std::string text;
    };

    explicit URLSessionTransportError(Payload payload);

    std::shared_ptr<const Storage> storage_;
};

} // namespace OpenAPIURLSession::inline v1
