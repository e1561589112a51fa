#pragma once

#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/AnyValue.hpp"
#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"
#include "platform/url/URL.hpp"

#include <exception>
#include <memory>
#include <optional>
#include <string>

namespace OpenAPIRuntime::inline v1 {

/// The failure of a call, with the whole context of the call: the only error that a call of an operation fails with.
///
///     try {
///         auto output = co_await client.getDomains();
///     } catch (const OpenAPIRuntime::ClientError& error) {
///         log(error.what());
///         if (error.response) retryLater(*error.response);
///     }
///
/// The context tells how far the call got: without `request` the input could not be turned into one, without `response`
/// none arrived, and with both the response could not be read.
///
/// A middleware may catch the error, change its fields and throw it on.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
class QUILLBEAM_EXPORT ClientError final : public std::exception, public platform::PrettyStringConvertible {
public:
    std::string operationID;                         ///< the operation's name
    platform::AnyValue operationInput;               ///< the operation's `Input` as the caller gave it
    std::optional<HTTPTypes::HTTPRequest> request;   ///< as made from the input, before any middleware changed it
    std::optional<HTTPBody> requestBody;             ///< likewise
    std::optional<platform::URL> baseURL;            ///< the client's server URL
    std::optional<HTTPTypes::HTTPResponse> response; ///< as the outermost middleware handed it back
    std::optional<HTTPBody> responseBody;            ///< likewise; maybe read already, in part or in whole
    std::string causeDescription;                    ///< what went wrong, in words
    std::exception_ptr underlyingError;              ///< the error that caused this one

    ClientError(
        std::string operationID,
        platform::AnyValue operationInput,
        std::optional<HTTPTypes::HTTPRequest> request,
        std::optional<HTTPBody> requestBody,
        std::optional<platform::URL> baseURL,
        std::optional<HTTPTypes::HTTPResponse> response,
        std::optional<HTTPBody> responseBody,
        std::string causeDescription,
        std::exception_ptr underlyingError
    );

    /// The cause and the whole context in one line, from the fields as they are now. It shows the input and the header
    /// fields of the request as the operation made it, hence no credentials that a middleware adds.
    [[nodiscard]] std::string description() const;

    /// The same as `description()`.
    [[nodiscard]] std::string errorDescription() const { return description(); }

    /// The same as `description()`.
    [[nodiscard]] std::string prettyDescription() const override { return description(); }

    /// The description as it was when the error was made: asking for it neither allocates nor fails. Only
    /// `description()` follows fields that were changed since.
    [[nodiscard]] const char* what() const noexcept override { return what_->c_str(); }

private:
    std::shared_ptr<const std::string> what_;
};

} // namespace OpenAPIRuntime::inline v1
