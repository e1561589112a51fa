#include "OpenAPIRuntime/Errors/RuntimeError.hpp"

namespace OpenAPIRuntime::inline v1 {

namespace {

std::string joined(const std::vector<std::string>& elements) {
    std::string text;
    for (const auto& element : elements) {
        if (&element != &elements.front()) text += ", ";
        text += element;
    }
    return text;
}

/// The first `count` characters (code points) of a text in UTF-8.
std::string prefix(const std::string& text, std::size_t count) {
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const bool startsCharacter = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
        if (startsCharacter && count-- == 0) break;
    }
    return text.substr(0, end);
}

/// The text of every case: the one place where they stand.
struct Texts {
    using E = RuntimeError;

    std::string operator()(const E::InvalidServerURL& e) const { return "Invalid server URL: " + e.url; }

    std::string operator()(const E::InvalidServerVariableValue& e) const {
        return "Invalid server variable named: '" + e.name + "', which has the value: '" + e.value +
               "', but the only allowed values are: " + joined(e.allowedValues);
    }

    std::string operator()(const E::InvalidExpectedContentType& e) const {
        return "Invalid expected content type: '" + e.contentType + "'";
    }

    std::string operator()(const E::InvalidHeaderFieldName& e) const {
        return "Invalid header field name: '" + e.name + "'";
    }

    std::string operator()(const E::InvalidBase64String& e) const {
        return "Invalid base64-encoded string (first 128 bytes): '" + prefix(e.text, 128) + "'";
    }

    std::string operator()(const E::FailedToDecodeStringConvertibleValue& e) const {
        return "Failed to decode a value of type '" + e.type + "'.";
    }

    std::string operator()(const E::UnsupportedParameterStyle& e) const {
        return "Unsupported parameter style, parameter name: '" + e.name +
               "', kind: " + std::string(rawValue(e.location)) + ", style: " + std::string(rawValue(e.style)) +
               ", explode: " + (e.explode ? "true" : "false");
    }

    std::string operator()(const E::MissingRequiredHeaderField& e) const {
        return "The required header field named '" + e.name + "' is missing.";
    }

    std::string operator()(const E::UnexpectedContentTypeHeader& e) const {
        return "Unexpected Content-Type header: " + e.contentType;
    }

    std::string operator()(const E::UnexpectedAcceptHeader& e) const { return "Unexpected Accept header: " + e.accept; }

    std::string operator()(const E::MalformedAcceptHeader& e) const { return "Malformed Accept header: " + e.accept; }

    std::string operator()(const E::MissingRequiredPathParameter& e) const {
        return "Missing required path parameter named: " + e.name;
    }

    std::string operator()(const E::MissingRequiredQueryParameter& e) const {
        return "Missing required query parameter named: " + e.name;
    }

    std::string operator()(const E::TransportFailed&) const { return "Transport threw an error."; }

    std::string operator()(const E::MiddlewareFailed& e) const {
        return "Middleware of type '" + e.middlewareType + "' threw an error.";
    }

    std::string operator()(const E::HandlerFailed&) const { return "User handler threw an error."; }

    std::string operator()(const E::UnexpectedResponseStatus& e) const {
        return "Unexpected response, expected status code: " + e.expectedStatus +
               ", response: " + e.response.description();
    }

    std::string operator()(const E::UnexpectedResponseBody& e) const {
        return "Unexpected response body, expected content type: " + e.expectedContent +
               ", body: " + e.body.description();
    }

    std::string operator()(const E::MissingOrMalformedContentDispositionName&) const {
        return "Missing or malformed Content-Disposition header or it's missing a name.";
    }

    std::string operator()(const E::PathUnset&) const { return "Path was not set on the request."; }

    std::string operator()(const E::MissingRequiredRequestBody&) const { return "Missing required request body"; }

    std::string operator()(const E::MissingRequiredResponseBody&) const { return "Missing required response body"; }

    std::string operator()(const E::MissingRequiredMultipartFormDataContentType&) const {
        return "Expected a 'multipart/form-data' content type.";
    }

    std::string operator()(const E::MissingMultipartBoundaryContentTypeParameter&) const {
        return "Missing 'boundary' parameter in the 'multipart/form-data' content type.";
    }
};

} // namespace

RuntimeError::RuntimeError(Case payload) {
    std::string text = std::visit(Texts(), payload);
    storage_ = std::make_shared<const Storage>(Storage{std::move(payload), std::move(text)});
}

RuntimeError RuntimeError::invalidServerURL(std::string_view url) {
    return RuntimeError(InvalidServerURL{std::string(url)});
}

RuntimeError RuntimeError::invalidServerVariableValue(
    std::string_view name, std::string_view value, std::vector<std::string> allowedValues
) {
    return RuntimeError(InvalidServerVariableValue{std::string(name), std::string(value), std::move(allowedValues)});
}

RuntimeError RuntimeError::invalidExpectedContentType(std::string_view contentType) {
    return RuntimeError(InvalidExpectedContentType{std::string(contentType)});
}

RuntimeError RuntimeError::invalidHeaderFieldName(std::string_view name) {
    return RuntimeError(InvalidHeaderFieldName{std::string(name)});
}

RuntimeError RuntimeError::invalidBase64String(std::string_view text) {
    return RuntimeError(InvalidBase64String{std::string(text)});
}

RuntimeError RuntimeError::failedToDecodeStringConvertibleValue(std::string_view type) {
    return RuntimeError(FailedToDecodeStringConvertibleValue{std::string(type)});
}

RuntimeError RuntimeError::unsupportedParameterStyle(
    std::string_view name, ParameterLocation location, ParameterStyle style, bool explode
) {
    return RuntimeError(UnsupportedParameterStyle{std::string(name), location, style, explode});
}

RuntimeError RuntimeError::missingRequiredHeaderField(std::string_view name) {
    return RuntimeError(MissingRequiredHeaderField{std::string(name)});
}

RuntimeError RuntimeError::unexpectedContentTypeHeader(std::string_view contentType) {
    return RuntimeError(UnexpectedContentTypeHeader{std::string(contentType)});
}

RuntimeError RuntimeError::unexpectedAcceptHeader(std::string_view accept) {
    return RuntimeError(UnexpectedAcceptHeader{std::string(accept)});
}

RuntimeError RuntimeError::malformedAcceptHeader(std::string_view accept) {
    return RuntimeError(MalformedAcceptHeader{std::string(accept)});
}

RuntimeError RuntimeError::missingRequiredPathParameter(std::string_view name) {
    return RuntimeError(MissingRequiredPathParameter{std::string(name)});
}

RuntimeError RuntimeError::missingRequiredQueryParameter(std::string_view name) {
    return RuntimeError(MissingRequiredQueryParameter{std::string(name)});
}

RuntimeError RuntimeError::transportFailed(std::exception_ptr underlyingError) {
    return RuntimeError(TransportFailed{std::move(underlyingError)});
}

RuntimeError RuntimeError::middlewareFailed(std::string_view middlewareType, std::exception_ptr underlyingError) {
    return RuntimeError(MiddlewareFailed{std::string(middlewareType), std::move(underlyingError)});
}

RuntimeError RuntimeError::handlerFailed(std::exception_ptr underlyingError) {
    return RuntimeError(HandlerFailed{std::move(underlyingError)});
}

RuntimeError RuntimeError::unexpectedResponseStatus(std::string_view expectedStatus, platform::AnyValue response) {
    return RuntimeError(UnexpectedResponseStatus{std::string(expectedStatus), std::move(response)});
}

RuntimeError RuntimeError::unexpectedResponseBody(std::string_view expectedContent, platform::AnyValue body) {
    return RuntimeError(UnexpectedResponseBody{std::string(expectedContent), std::move(body)});
}

RuntimeError RuntimeError::missingOrMalformedContentDispositionName() {
    return RuntimeError(MissingOrMalformedContentDispositionName());
}

RuntimeError RuntimeError::pathUnset() {
    return RuntimeError(PathUnset());
}

RuntimeError RuntimeError::missingRequiredRequestBody() {
    return RuntimeError(MissingRequiredRequestBody());
}

RuntimeError RuntimeError::missingRequiredResponseBody() {
    return RuntimeError(MissingRequiredResponseBody());
}

RuntimeError RuntimeError::missingRequiredMultipartFormDataContentType() {
    return RuntimeError(MissingRequiredMultipartFormDataContentType());
}

RuntimeError RuntimeError::missingMultipartBoundaryContentTypeParameter() {
    return RuntimeError(MissingMultipartBoundaryContentTypeParameter());
}

void throwUnexpectedResponseStatus(std::string_view expectedStatus, platform::AnyValue response) {
    throw RuntimeError::unexpectedResponseStatus(expectedStatus, std::move(response));
}

void throwUnexpectedResponseBody(std::string_view expectedContent, platform::AnyValue body) {
    throw RuntimeError::unexpectedResponseBody(expectedContent, std::move(body));
}

} // namespace OpenAPIRuntime::inline v1
