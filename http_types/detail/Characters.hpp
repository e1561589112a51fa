#pragma once

#include <string_view>

namespace HTTPTypes::inline v1::detail {

/// Lowercases the ASCII letters; every other byte stays.
[[nodiscard]] constexpr char asciiLowercased(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// True for the characters of a token (RFC 9110, section 5.6.2): the ASCII letters and digits and fifteen marks.
[[nodiscard]] constexpr bool isTokenCharacter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
}

/// True for a text of one or more token characters.
[[nodiscard]] constexpr bool isToken(std::string_view text) noexcept {
    for (const char c : text) {
        if (!isTokenCharacter(c)) return false;
    }
    return !text.empty();
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

} // namespace HTTPTypes::inline v1::detail
