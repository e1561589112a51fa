#pragma once

#include <string>
#include <string_view>

namespace platform::inline v1::detail {

/// An ASCII letter in lower case; any other byte as it is.
[[nodiscard]] constexpr char foldedASCII(char symbol) noexcept {
    return symbol >= 'A' && symbol <= 'Z' ? static_cast<char>(symbol + ('a' - 'A')) : symbol;
}

/// True where `text` is a token of RFC 9110 section 5.6.2: what method and field names are made of.
[[nodiscard]] bool isToken(std::string_view text) noexcept;

/// Without the spaces and tabs around it.
[[nodiscard]] std::string_view trimmingFieldWhitespace(std::string_view text) noexcept;

/// Compares two names without regard to ASCII case.
[[nodiscard]] bool equalFieldNames(std::string_view left, std::string_view right) noexcept;

/// Appends the bytes that this UTF-8 text is in ISO Latin 1, or the text's own bytes where it has a character beyond.
void appendWireBytes(std::string& out, std::string_view text);

} // namespace platform::inline v1::detail
