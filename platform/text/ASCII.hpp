#pragma once

#include "platform/Export.hpp"

#include <string>
#include <string_view>

namespace platform::inline v1 {

/// True for "A" to "Z", "a" to "z".
[[nodiscard]] constexpr bool isASCIILetter(char c) noexcept {
    const auto folded = static_cast<unsigned char>(static_cast<unsigned char>(c) | 0x20U);
    return folded >= 'a' && folded <= 'z';
}

/// True for "0" to "9".
[[nodiscard]] constexpr bool isASCIIDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// The value of a hexadecimal digit of either case, -1 for any other character.
[[nodiscard]] constexpr int hexDigitValue(char c) noexcept {
    if (isASCIIDigit(c)) return c - '0';
    const int folded = static_cast<unsigned char>(c) | 0x20;
    return folded >= 'a' && folded <= 'f' ? folded - 'a' + 10 : -1;
}

/// "A" to "Z" in lower case, every other character as it is.
[[nodiscard]] constexpr char asciiLowercased(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// The text with its ASCII letters in lower case; every other byte stays.
[[nodiscard]] QUILLBEAM_EXPORT std::string asciiLowercased(std::string_view text);

/// The text in lower case by the rules of Unicode that hold in every language (a sigma at a word's end becomes a final
/// one; no language's own rule applies). Ill-formed UTF-8 is repaired with U+FFFD where a letter beyond ASCII is there.
[[nodiscard]] QUILLBEAM_EXPORT std::string lowercased(std::string_view text);

} // namespace platform::inline v1
