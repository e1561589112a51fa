#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <type_traits>

namespace platform::inline v1 {

/// The texts of an enumeration whose cases stand for texts. Specialise it beside the enumeration, whose cases are
/// numbered from 0 in order; coding, hashing and diagnostic text follow from it.
///
///     enum class Status { ACTIVE, PENDING };
///     template <>
///     struct platform::RawValues<Status> {
///         static constexpr std::string_view values[] = {"ACTIVE", "PENDING"};
///     };
template <class E>
struct RawValues;

template <class E>
concept RawRepresentable = std::is_enum_v<E> && requires { std::size(RawValues<E>::values); };

/// The text that a case stands for; empty for a number that is no case.
template <RawRepresentable E>
[[nodiscard]] constexpr std::string_view rawValue(E value) noexcept {
    const auto index = static_cast<std::size_t>(value);
    return index < std::size(RawValues<E>::values) ? std::string_view(RawValues<E>::values[index]) : std::string_view();
}

/// The case that stands for `text`, if any.
template <RawRepresentable E>
[[nodiscard]] constexpr std::optional<E> fromRawValue(std::string_view text) noexcept {
    for (std::size_t index = 0; index < std::size(RawValues<E>::values); ++index) {
        if (RawValues<E>::values[index] == text) return static_cast<E>(index);
    }
    return std::nullopt;
}

/// Every case, in order.
template <RawRepresentable E>
[[nodiscard]] constexpr auto allCases() noexcept {
    std::array<E, std::size(RawValues<E>::values)> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        cases[i] = static_cast<E>(i);
    return cases;
}

} // namespace platform::inline v1
