#pragma once

#include "platform/Ranges.hpp"

#include <concepts>
#include <optional>
#include <string>
#include <string_view>

namespace OpenAPIRuntime::inline v1 {

/// What the type of an operation's acceptable content types has to offer: a raw value, which is the content type in
/// lower case, and the list of its cases. `std::hash` is specialised for it where its lists are to be hashed.
template <class T>
concept AcceptableProtocol =
    std::copyable<T> && std::equality_comparable<T> && requires(const T& contentType, std::string_view rawValue) {
        { T::fromRawValue(rawValue) } -> std::same_as<std::optional<T>>;
        { contentType.rawValue() } -> std::convertible_to<std::string>;
        { T::allCases() } -> platform::InputRange;
    };

} // namespace OpenAPIRuntime::inline v1
