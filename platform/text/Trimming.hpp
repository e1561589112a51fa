#pragma once

#include "platform/Export.hpp"

#include <string_view>

namespace platform::inline v1 {

/// The part of a UTF-8 text between its leading and trailing whitespace and line breaks: the tab, the line breaks
/// U+000A to U+000D, U+0085, U+2028 and U+2029, and Unicode's space separators. The result points into `text`.
[[nodiscard]] QUILLBEAM_EXPORT std::string_view trimmingWhitespaceAndNewlines(std::string_view text) noexcept;

} // namespace platform::inline v1
