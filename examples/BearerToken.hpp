#pragma once

#include "OpenAPIRuntime/Interface/ClientMiddleware.hpp"

#include <optional>
#include <string>
#include <utility>

namespace examples {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using OpenAPIRuntime::ClientMiddleware;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::HTTPResponseAndBody;
using platform::Task;
using platform::URL;

/// Authentication: sends an API key with each request.
class BearerToken final : public ClientMiddleware {
public:
    explicit BearerToken(std::string key)
        : value_("Bearer " + std::move(key)) {}

    Task<HTTPResponseAndBody> intercept(
        HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, std::string /*operationID*/, Next next
    ) override {
        request.headerFields[HTTPField::Name::authorization] = value_;
        return next(std::move(request), std::move(body), std::move(baseURL));
    }

private:
    const std::string value_;
};

} // namespace examples
