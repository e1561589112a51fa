#pragma once

#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "http_types/HTTPRequest.hpp"

#include <optional>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// A request head and, where there is one, its body.
struct HTTPRequestAndBody {
    HTTPTypes::HTTPRequest request{};
    std::optional<HTTPBody> body{};

    HTTPRequestAndBody() = default;

    explicit HTTPRequestAndBody(HTTPTypes::HTTPRequest request_, std::optional<HTTPBody> body_ = std::nullopt)
        : request(std::move(request_))
        , body(std::move(body_)) {}

    friend bool operator==(const HTTPRequestAndBody&, const HTTPRequestAndBody&) = default;
};

} // namespace OpenAPIRuntime::inline v1
