#pragma once

#include "platform/coding/CodingKey.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// The key of a member or the position of an element, as the URI coders stack them.
struct URICoderCodingKey {
    std::string stringValue{};
    std::optional<std::int64_t> intValue{}; ///< only of a position

    URICoderCodingKey() = default;

    /// The key of a member.
    explicit URICoderCodingKey(std::string stringValue_)
        : stringValue(std::move(stringValue_)) {}

    /// The position of an element; its text is the decimal number.
    explicit URICoderCodingKey(std::int64_t intValue_)
        : stringValue(std::to_string(intValue_))
        , intValue(intValue_) {}

    explicit URICoderCodingKey(const platform::CodingKey& key)
        : stringValue(key.stringValue())
        , intValue(key.intValue()) {}

    [[nodiscard]] platform::CodingKey codingKey() const {
        return intValue ? platform::CodingKey(*intValue) : platform::CodingKey(stringValue);
    }

    bool operator==(const URICoderCodingKey&) const = default;
};

} // namespace OpenAPIRuntime::inline v1
