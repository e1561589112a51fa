#pragma once

#include "platform/Export.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform::inline v1 {

/// What a base64 decoder does with characters that are not of the alphabet, line breaks and spaces among them.
enum class UnknownBase64Characters : std::uint8_t { refuse, ignore };

/// The bytes in base64 (RFC 4648, section 4), padded, in one line.
[[nodiscard]] QUILLBEAM_EXPORT std::string base64Encoded(std::span<const std::uint8_t> bytes);

/// The bytes that a padded base64 text stands for. Nothing where the characters are not a whole number of groups of
/// four, where padding stands elsewhere than at the end, or where a character is unknown and these are refused. Bits of
/// the last group that stand for no byte are ignored.
[[nodiscard]] QUILLBEAM_EXPORT std::optional<std::vector<std::uint8_t>>
base64Decoded(std::string_view text, UnknownBase64Characters unknownCharacters = UnknownBase64Characters::refuse);

} // namespace platform::inline v1
