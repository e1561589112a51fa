#pragma once

#include "OpenAPIRuntime/Conversion/ParameterStyle.hpp"
#include "platform/AnyValue.hpp"
#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// What the runtime itself finds wrong: a value that does not fit a message, a message that does not fit the service's
/// definition, or the failure of a stage of a call.
///
/// A tagged union. Each case has a maker of its name and a record of its payload:
///
///     catch (const RuntimeError& error) {
///         if (const auto* missing = error.getIf<RuntimeError::MissingRequiredHeaderField>()) use(missing->name);
///     }
///
/// Copying shares the payload and never throws; `what()` never allocates.
///
/// Thread safety: distinct objects: safe; shared objects: safe, they are immutable.
class QUILLBEAM_EXPORT RuntimeError final : public std::exception, public platform::PrettyStringConvertible {
public:
    /// Where in a request a parameter stands.
    enum class ParameterLocation : std::uint8_t { query };

    /// @name The payloads of the cases
    /// @{
    struct InvalidServerURL {
        std::string url;
    };

    struct InvalidServerVariableValue {
        std::string name;
        std::string value;
        std::vector<std::string> allowedValues;
    };

    struct InvalidExpectedContentType {
        std::string contentType;
    };

    struct InvalidHeaderFieldName {
        std::string name;
    };

    struct InvalidBase64String {
        std::string text;
    };

    struct FailedToDecodeStringConvertibleValue {
        std::string type;
    };

    struct UnsupportedParameterStyle {
        std::string name;
        ParameterLocation location;
        ParameterStyle style;
        bool explode;
    };

    struct MissingRequiredHeaderField {
        std::string name;
    };

    struct UnexpectedContentTypeHeader {
        std::string contentType;
    };

    struct UnexpectedAcceptHeader {
        std::string accept;
    };

    struct MalformedAcceptHeader {
        std::string accept;
    };

    struct MissingRequiredPathParameter {
        std::string name;
    };

    struct MissingRequiredQueryParameter {
        std::string name;
    };

    struct TransportFailed {
        std::exception_ptr underlyingError;
    };

    struct MiddlewareFailed {
        std::string middlewareType; ///< the middleware's run-time type, without its namespaces
        std::exception_ptr underlyingError;
    };

    struct HandlerFailed {
        std::exception_ptr underlyingError;
    };

    struct UnexpectedResponseStatus {
        std::string expectedStatus;
        platform::AnyValue response;
    };

    struct UnexpectedResponseBody {
        std::string expectedContent;
        platform::AnyValue body;
    };

    struct MissingOrMalformedContentDispositionName {};

    struct PathUnset {};

    struct MissingRequiredRequestBody {};

    struct MissingRequiredResponseBody {};

    struct MissingRequiredMultipartFormDataContentType {};

    struct MissingMultipartBoundaryContentTypeParameter {};

    /// @}

    using Case = std::variant<
        InvalidServerURL,
        InvalidServerVariableValue,
        InvalidExpectedContentType,
        InvalidHeaderFieldName,
        InvalidBase64String,
        FailedToDecodeStringConvertibleValue,
        UnsupportedParameterStyle,
        MissingRequiredHeaderField,
        UnexpectedContentTypeHeader,
        UnexpectedAcceptHeader,
        MalformedAcceptHeader,
        MissingRequiredPathParameter,
        MissingRequiredQueryParameter,
        TransportFailed,
        MiddlewareFailed,
        HandlerFailed,
        UnexpectedResponseStatus,
        UnexpectedResponseBody,
        MissingOrMalformedContentDispositionName,
        PathUnset,
        MissingRequiredRequestBody,
        MissingRequiredResponseBody,
        MissingRequiredMultipartFormDataContentType,
        MissingMultipartBoundaryContentTypeParameter>;

    /// @name Makers, one for each case
    /// @{
    [[nodiscard]] static RuntimeError invalidServerURL(std::string_view url);
    [[nodiscard]] static RuntimeError
    invalidServerVariableValue(std::string_view name, std::string_view value, std::vector<std::string> allowedValues);
    [[nodiscard]] static RuntimeError invalidExpectedContentType(std::string_view contentType);
    [[nodiscard]] static RuntimeError invalidHeaderFieldName(std::string_view name);
    [[nodiscard]] static RuntimeError invalidBase64String(std::string_view text);
    [[nodiscard]] static RuntimeError failedToDecodeStringConvertibleValue(std::string_view type);
    [[nodiscard]] static RuntimeError
    unsupportedParameterStyle(std::string_view name, ParameterLocation location, ParameterStyle style, bool explode);
    [[nodiscard]] static RuntimeError missingRequiredHeaderField(std::string_view name);
    [[nodiscard]] static RuntimeError unexpectedContentTypeHeader(std::string_view contentType);
    [[nodiscard]] static RuntimeError unexpectedAcceptHeader(std::string_view accept);
    [[nodiscard]] static RuntimeError malformedAcceptHeader(std::string_view accept);
    [[nodiscard]] static RuntimeError missingRequiredPathParameter(std::string_view name);
    [[nodiscard]] static RuntimeError missingRequiredQueryParameter(std::string_view name);
    [[nodiscard]] static RuntimeError transportFailed(std::exception_ptr underlyingError);
    [[nodiscard]] static RuntimeError
    middlewareFailed(std::string_view middlewareType, std::exception_ptr underlyingError);
    [[nodiscard]] static RuntimeError handlerFailed(std::exception_ptr underlyingError);
    [[nodiscard]] static RuntimeError
    unexpectedResponseStatus(std::string_view expectedStatus, platform::AnyValue response);
    [[nodiscard]] static RuntimeError unexpectedResponseBody(std::string_view expectedContent, platform::AnyValue body);
    [[nodiscard]] static RuntimeError missingOrMalformedContentDispositionName();
    [[nodiscard]] static RuntimeError pathUnset();
    [[nodiscard]] static RuntimeError missingRequiredRequestBody();
    [[nodiscard]] static RuntimeError missingRequiredResponseBody();
    [[nodiscard]] static RuntimeError missingRequiredMultipartFormDataContentType();
    [[nodiscard]] static RuntimeError missingMultipartBoundaryContentTypeParameter();

    /// @}

    /// Whether this is the case, as in `error.is<RuntimeError::PathUnset>()`.
    template <class C>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<C>(storage_->payload);
    }

    /// The payload where this is the case, else a null pointer. Valid as long as this error or a copy of it lives.
    template <class C>
    [[nodiscard]] const C* getIf() const noexcept {
        return std::get_if<C>(&storage_->payload);
    }

    /// Calls `visitor` with the payload and returns what it gives.
    template <class Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), storage_->payload);
    }

    /// The text of the error, the same in all its forms.
    [[nodiscard]] const char* what() const noexcept override { return storage_->text.c_str(); }

    [[nodiscard]] const std::string& description() const noexcept { return storage_->text; }

    [[nodiscard]] const std::string& errorDescription() const noexcept { return storage_->text; }

    [[nodiscard]] std::string prettyDescription() const override { return storage_->text; }

private:
    struct Storage {
        Case payload;
        std::string text;
    };

    explicit RuntimeError(Case payload);

    std::shared_ptr<const Storage> storage_;
};

/// The text of the location: "query".
[[nodiscard]] constexpr std::string_view rawValue(RuntimeError::ParameterLocation) noexcept {
    return "query";
}

/// Fails on behalf of an accessor that was asked for another status than the response has.
/// @param expectedStatus the name of the accessor, such as "ok"
/// @param response the whole response, kept for the error's text
/// @throws RuntimeError always: the case `unexpectedResponseStatus`
[[noreturn]] QUILLBEAM_EXPORT void
throwUnexpectedResponseStatus(std::string_view expectedStatus, platform::AnyValue response);

template <class Response>
    requires(!std::is_same_v<Response, platform::AnyValue>)
[[noreturn]] void throwUnexpectedResponseStatus(std::string_view expectedStatus, const Response& response) {
    throwUnexpectedResponseStatus(expectedStatus, platform::AnyValue(response));
}

/// Fails on behalf of an accessor that was asked for another content type than the body has.
/// @param expectedContent the content type of the accessor
/// @param body the whole body, kept for the error's text
/// @throws RuntimeError always: the case `unexpectedResponseBody`
[[noreturn]] QUILLBEAM_EXPORT void
throwUnexpectedResponseBody(std::string_view expectedContent, platform::AnyValue body);

template <class Body>
    requires(!std::is_same_v<Body, platform::AnyValue>)
[[noreturn]] void throwUnexpectedResponseBody(std::string_view expectedContent, const Body& body) {
    throwUnexpectedResponseBody(expectedContent, platform::AnyValue(body));
}

} // namespace OpenAPIRuntime::inline v1
