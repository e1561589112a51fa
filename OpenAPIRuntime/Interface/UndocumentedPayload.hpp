#pragma once

#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "http_types/HTTPFields.hpp"

#include <cstddef>
#include <optional>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// What came with a response whose status the service does not document.
///
/// Two payloads are equal when their header fields are equal and they hold the same body object or none.
struct UndocumentedPayload {
    HTTPTypes::HTTPFields headerFields{};
    std::optional<HTTPBody> body{}; ///< unread; the receiver may read or drop it

    UndocumentedPayload() = default;

    explicit UndocumentedPayload(HTTPTypes::HTTPFields headerFields_, std::optional<HTTPBody> body_ = std::nullopt)
        : headerFields(std::move(headerFields_))
        , body(std::move(body_)) {}

    friend bool operator==(const UndocumentedPayload&, const UndocumentedPayload&) = default;
};

} // namespace OpenAPIRuntime::inline v1

template <>
struct std::hash<OpenAPIRuntime::UndocumentedPayload> {
    std::size_t operator()(const OpenAPIRuntime::UndocumentedPayload& payload) const noexcept {
        const std::size_t fields = std::hash<HTTPTypes::HTTPFields>()(payload.headerFields);
        return payload.body ? fields * 31 + std::hash<OpenAPIRuntime::HTTPBody>()(*payload.body) : fields;
    }
};
