#pragma once

#include <cstdint>
#include <string_view>

namespace platform::inline v1::detail {

/// What tells most keys of one object apart at the price of a comparison of numbers. Reads three bytes, as keys are
/// short and mostly differ there or in their lengths.
[[nodiscard]] constexpr std::uint32_t keyHash(std::string_view key) noexcept {
    if (key.empty()) return 0;
    const auto byte = [key](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(key[i])); };
    return byte(0) * 5 + byte(key.size() - 1) * 11 + byte(key.size() / 2) * 23 +
           static_cast<std::uint32_t>(key.size()) * 3;
}

/// How many classes hashes fall into, so that a set of classes is a word.
inline constexpr std::uint32_t keyHashClasses = 64;

/// The bit of a hash in a set of classes: a key whose bit is not in the set of an object is not in the object.
[[nodiscard]] constexpr std::uint64_t keyHashBit(std::uint32_t hash) noexcept {
    return std::uint64_t{1} << (hash % keyHashClasses);
}

} // namespace platform::inline v1::detail
