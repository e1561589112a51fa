#pragma once

#include "platform/coding/Coding.hpp"

#include <optional>

/// For types that are coded as the value they hold.
namespace OpenAPIRuntime::inline v1 {

template <class T>
[[nodiscard]] T decodeFromSingleValueContainer(platform::Decoder& decoder) {
    auto container = decoder.singleValueContainer();
    return container.template decode<T>();
}

template <class T>
void encodeToSingleValueContainer(platform::Encoder& encoder, const T& value) {
    auto container = encoder.singleValueContainer();
    container.encode(value);
}

/// Encodes the first value that is present; writes nothing where none is. A one-of or any-of of scalar schemas writes
/// its one filled case with it.
template <class... T>
void encodeFirstNonNilValueToSingleValueContainer(platform::Encoder& encoder, const std::optional<T>&... values) {
    const auto encodeIfPresent = [&encoder](const auto& value) {
        if (value) encodeToSingleValueContainer(encoder, *value);
        return value.has_value();
    };
    static_cast<void>((encodeIfPresent(values) || ...));
}

} // namespace OpenAPIRuntime::inline v1
