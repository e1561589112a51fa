#pragma once

#include "OpenAPIRuntime/Interface/ClientTransport.hpp"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace testing_support {

/// Answers every request with the same response and keeps the last request it saw.
class RecordingTransport final : public OpenAPIRuntime::ClientTransport {
public:
    int status = 200;
    std::string contentType = "application/json"; ///< empty: no such field
    std::optional<std::string> answer = std::nullopt;

    std::optional<HTTPTypes::HTTPRequest> request{};
    std::optional<OpenAPIRuntime::HTTPBody> requestBody{};
    std::string baseURL{};
    std::string operationID{};

    platform::Task<OpenAPIRuntime::HTTPResponseAndBody> send(
        HTTPTypes::HTTPRequest sent, std::optional<OpenAPIRuntime::HTTPBody> body, platform::URL url, std::string id
    ) override {
        request = std::move(sent);
        requestBody = std::move(body);
        baseURL = url.absoluteString();
        operationID = std::move(id);
        HTTPTypes::HTTPResponse response{HTTPTypes::HTTPResponse::Status(status)};
        if (!contentType.empty()) response.headerFields[HTTPTypes::HTTPField::Name::contentType] = contentType;
        std::optional<OpenAPIRuntime::HTTPBody> responseBody;
        if (answer) responseBody = OpenAPIRuntime::HTTPBody(*answer);
        return platform::Task<OpenAPIRuntime::HTTPResponseAndBody>::ready(std::move(response), std::move(responseBody));
    }
};

} // namespace testing_support
