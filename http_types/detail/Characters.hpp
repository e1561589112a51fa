#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace HTTPTypes::inline v1::detail {

/// Lowercases the ASCII letters; every other byte stays.
[[nodiscard]] constexpr char asciiLowercased(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// True for the characters of a token (RFC 9110, section 5.6.2): the ASCII letters and digits and fifteen marks.
inline constexpr std::array<bool, 256> isTokenCharacter = [] {
    std::array<bool, 256> table{};
    for (const char c :
         std::string_view("!#$%&'*+-.^_`|~0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

/// True for a text of one or more token characters.
[[nodiscard]] constexpr bool isToken(std::string_view text) noexcept {
    for (const char c : text) {
        if (!isTokenCharacter[static_cast<unsigned char>(c)]) return false;
    }
    return !text.empty();
}

/// `size` bytes, at most 8, as a number, the first one lowest. One load at run time where `size` is a constant.
[[nodiscard]] constexpr std::uint64_t wordAt(const char* bytes, std::size_t size) noexcept {
    std::uint64_t word = 0;
    if (std::is_constant_evaluated() || std::endian::native != std::endian::little) {
        for (std::size_t i = 0; i < size; ++i) {
            word |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
        }
    } else {
        std::memcpy(&word, bytes, size);
    }
    return word;
}

/// A hash that is the same for texts that differ in the case of ASCII letters only. Not stable across versions.
[[nodiscard]] constexpr std::uint32_t caselessHash(std::string_view text) noexcept {
    // Setting bit 5 makes one of upper and lower case; that it does so to some marks, too, costs a collision at most.
    constexpr std::uint64_t lowercasing = 0x2020202020202020U;
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U;
    const char* at = text.data();
    std::size_t left = text.size();
    std::uint64_t hash = left * multiplier;
    const auto mix = [&hash](std::uint64_t word) {
        hash = (hash ^ (word | lowercasing)) * multiplier;
        hash ^= hash >> 32U;
    };
    for (; left > 8; left -= 8, at += 8) {
        mix(wordAt(at, 8));
    }
    if (left == 8 || text.size() >= 8) {
        mix(wordAt(text.data() + text.size() - 8, 8)); // overlaps the word before
    } else if (left >= 4) {
        mix(wordAt(at, 4) | wordAt(at + left - 4, 4) << 32U);
    } else if (left > 0) {
        mix(wordAt(at, 1) | wordAt(at + left / 2, 1) << 8U | wordAt(at + left - 1, 1) << 16U);
    }
    return static_cast<std::uint32_t>(hash);
}

/// True for a space or a horizontal tab.
[[nodiscard]] constexpr bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

/// True for the control characters that neither a field value nor a reason phrase may hold: all but the tab.
[[nodiscard]] constexpr bool isBarred(char c) noexcept {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && byte != '\t') || byte == 0x7F;
}

/// True when any byte is barred.
[[nodiscard]] constexpr bool holdsBarred(std::string_view text) noexcept {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    constexpr std::uint64_t highs = 0x8080808080808080U;
    const auto anyBarred = [](std::string_view bytes) {
        for (const char c : bytes) {
            if (isBarred(c)) return true;
        }
        return false;
    };
    for (; text.size() >= 8; text.remove_prefix(8)) {
        const std::uint64_t word = wordAt(text.data(), 8);
        const std::uint64_t zeroWhere7F = word ^ (ones * 0x7F);
        const std::uint64_t suspects = ((word - ones * 0x20) & ~word) | ((zeroWhere7F - ones) & ~zeroWhere7F);
        if ((suspects & highs) != 0 && anyBarred(text.substr(0, 8))) return true; // it may be a tab
    }
    return anyBarred(text);
}

} // namespace HTTPTypes::inline v1::detail
