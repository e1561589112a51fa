#pragma once

#include "platform/Export.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// The text, in UTF-8, that these bytes are in ISO 8859-1: one character for each byte. Linear time.
[[nodiscard]] QUILLBEAM_EXPORT std::string textFromLatin1(std::string_view bytes);

/// The byte that the two-byte character at `at` is in ISO 8859-1; nothing where none of U+0080 to U+00FF stands there.
/// What becomes of text with other characters is the caller's choice.
/// @param text UTF-8; `at` is one of its bytes
[[nodiscard]] constexpr std::optional<char> latin1ByteAt(std::string_view text, std::size_t at) noexcept {
    const auto lead = static_cast<unsigned char>(text[at]);
    const auto next = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : static_cast<unsigned char>(0);
    if ((lead != 0xC2 && lead != 0xC3) || (next & 0xC0U) != 0x80U) return std::nullopt;
    return static_cast<char>((lead & 0x03U) << 6U | (next & 0x3FU));
}

} // namespace platform::inline v1
