#pragma once

#include "platform/Export.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// Percent-encodes a UTF-8 text (RFC 3986, section 2.1): every byte of a character that may not stand as it is becomes
/// "%" and two upper-case hexadecimal digits.
///
/// Unicode's letters, marks and numbers pass as they are, ASCII's among them, and so do the characters of
/// `allowedSymbols`. Bytes that are not well-formed UTF-8 are percent-encoded, so no text loses anything.
///
/// @param allowedSymbols ASCII characters that pass beside the alphanumerics
/// Complexity: linear; ASCII takes a path of its own without a look at Unicode's tables.
[[nodiscard]] QUILLBEAM_EXPORT std::string percentEncoded(std::string_view text, std::string_view allowedSymbols);

/// `percentEncoded`, written at the end of `output`.
QUILLBEAM_EXPORT void appendPercentEncoded(std::string& output, std::string_view text, std::string_view allowedSymbols);

/// Writes one byte's percent-escape at the end of `output`.
QUILLBEAM_EXPORT void appendPercentEscape(std::string& output, char byte);

/// The text with every percent-escape replaced by its byte. Nothing where a "%" is not followed by two hexadecimal
/// digits, or where the bytes that result are not well-formed UTF-8.
[[nodiscard]] QUILLBEAM_EXPORT std::optional<std::string> removingPercentEncoding(std::string_view text);

} // namespace platform::inline v1
