#include "OpenAPIRuntime/Interface/ClientError.hpp"

#include <utility>

namespace OpenAPIRuntime::inline v1 {

ClientError::ClientError(
    std::string operationID_,
    platform::AnyValue operationInput_,
    std::optional<HTTPTypes::HTTPRequest> request_,
    std::optional<HTTPBody> requestBody_,
    std::optional<platform::URL> baseURL_,
    std::optional<HTTPTypes::HTTPResponse> response_,
    std::optional<HTTPBody> responseBody_,
    std::string causeDescription_,
    std::exception_ptr underlyingError_
)
    : operationID(std::move(operationID_))
    , operationInput(std::move(operationInput_))
    , request(std::move(request_))
    , requestBody(std::move(requestBody_))
    , baseURL(std::move(baseURL_))
    , response(std::move(response_))
    , responseBody(std::move(responseBody_))
    , causeDescription(std::move(causeDescription_))
    , underlyingError(std::move(underlyingError_)) // NOLINT(bugprone-throw-keyword-missing): a member, not a throw
    , what_(std::make_shared<const std::string>(description())) {}

std::string ClientError::description() const {
    const auto textOf = [](const auto& value) { return value ? value->prettyDescription() : std::string("<nil>"); };
    return "Client error - cause description: '" + causeDescription +
           "', underlying error: " + platform::prettyDescription(underlyingError) + ", operationID: " + operationID +
           ", operationInput: " + operationInput.description() + ", request: " + textOf(request) +
           ", requestBody: " + textOf(requestBody) +
           ", baseURL: " + (baseURL ? std::string(baseURL->absoluteString()) : std::string("<nil>")) +
           ", response: " + textOf(response) + ", responseBody: " + textOf(responseBody);
}

} // namespace OpenAPIRuntime::inline v1
