#pragma once

#include "platform/Export.hpp"

#include <string>
#include <string_view>

namespace platform::inline v1 {

/// True when every byte is below 0x80. Linear time, several bytes a step.
[[nodiscard]] QUILLBEAM_EXPORT bool isASCII(std::string_view text) noexcept;

/// True when the bytes are well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms, nothing above U+10FFFF).
[[nodiscard]] QUILLBEAM_EXPORT bool isValidUTF8(std::string_view text) noexcept;

/// The text with U+FFFD in place of each maximal subpart of an ill-formed sequence, as the Unicode standard recommends
/// (section 3.9); well-formed text comes back as it is.
[[nodiscard]] QUILLBEAM_EXPORT std::string repairedUTF8(std::string_view text);

} // namespace platform::inline v1
