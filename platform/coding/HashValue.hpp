#pragma once

#include "platform/Ranges.hpp"

#include <concepts>
#include <cstddef>
#include <iterator>
#include <optional> // and with it the declaration of std::hash
#include <type_traits>

namespace platform::inline v1 {

/// Joins two hashes into one that depends on their order.
[[nodiscard]] constexpr std::size_t combinedHash(std::size_t seed, std::size_t value) noexcept {
    constexpr auto golden = static_cast<std::size_t>(0x9E3779B97F4A7C15ULL);
    return seed ^ (value + golden + (seed << 6U) + (seed >> 2U));
}

/// The hash of a value by its contents: `std::hash` where there is one, else that of its elements: lists and ordered
/// maps in their order, unordered maps whatever their order, pairs, and a moment by its count. Equal values hash alike.
template <class T>
[[nodiscard]] std::size_t hashValue(const T& value) {
    if constexpr (requires { value.time_since_epoch().count(); }) {
        return hashValue(value.time_since_epoch().count());
    } else if constexpr (requires(T& optional) {
                             optional.has_value();
                             *optional;
                             optional.reset();
                         }) {
        return value.has_value() ? combinedHash(1, hashValue(*value)) : 0;
    } else if constexpr (requires {
                             { std::hash<T>{}(value) } -> std::convertible_to<std::size_t>;
                         }) {
        return std::hash<T>{}(value);
    } else if constexpr (requires {
                             value.first;
                             value.second;
                         }) {
        return combinedHash(hashValue(value.first), hashValue(value.second));
    } else {
        static_assert(InputRange<const T>, "std::hash is missing for a type");
        std::size_t hash = static_cast<std::size_t>(std::ranges::distance(value));
        for (const auto& element : value) {
            if constexpr (requires { typename T::hasher; }) {
                hash += combinedHash(0, hashValue(element));
            } else {
                hash = combinedHash(hash, hashValue(element));
            }
        }
        return hash;
    }
}

} // namespace platform::inline v1
