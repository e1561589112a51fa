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

/// Calls `visit` with words of 8 bytes that together hold every byte of the text, some of them twice, and else only
/// spaces. No word for an empty text.
template <typename Visit>
[[gnu::always_inline]] constexpr void forEachWord(std::string_view text, Visit&& visit) noexcept {
    const char* const bytes = text.data();
    const std::size_t size = text.size();
    if (size >= 8) {
        for (std::size_t i = 0; i + 8 < size; i += 8) {
            visit(wordAt(bytes + i, 8));
        }
        visit(wordAt(bytes + size - 8, 8));
    } else if (size >= 4) {
        visit(wordAt(bytes, 4) | wordAt(bytes + size - 4, 4) << 32U);
    } else if (size > 0) {
        visit(
            wordAt(bytes, 1) | wordAt(bytes + size / 2, 1) << 8U | wordAt(bytes + size - 1, 1) << 16U |
            0x2020202020000000U
        );
    }
}

/// A hash that is the same for texts that differ in the case of ASCII letters only. Not stable across versions.
[[nodiscard]] constexpr std::uint32_t caselessHash(std::string_view text) noexcept {
    // Setting bit 5 makes one of upper and lower case; that it does so to some marks, too, costs a collision at most.
    constexpr std::uint64_t lowercasing = 0x2020202020202020U;
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U;
    std::uint64_t hash = text.size() * multiplier;
    forEachWord(text, [&hash](std::uint64_t word) {
        hash = (hash ^ (word | lowercasing)) * multiplier;
        hash ^= hash >> 32U;
    });
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
    std::uint64_t suspects = 0; // bit 7 of some byte is set when there is a byte below 0x20 or a 0x7F
    forEachWord(text, [&suspects](std::uint64_t word) {
        const std::uint64_t zeroFor7F = word ^ (ones * 0x7F);
        suspects |= ((word - ones * 0x20) & ~word) | ((zeroFor7F - ones) & ~zeroFor7F);
    });
    if ((suspects & (ones * 0x80)) == 0) return false;
    for (const char c : text) { // it may have been a tab
        if (isBarred(c)) return true;
    }
    return false;
}

/// True for the value of a ":status" field: three ASCII digits.
[[nodiscard]] constexpr bool isThreeDigits(std::string_view text) noexcept {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return text.size() == 3 && isDigit(text[0]) && isDigit(text[1]) && isDigit(text[2]);
}

} // namespace HTTPTypes::inline v1::detail
