#pragma once

#include "platform/Export.hpp"

#include <compare>
#include <string_view>

namespace platform::inline v1 {

/// Orders two texts in UTF-8 as a reader of the process's default locale would (Unicode's own order in the "C" locale),
/// without regard to case. Equivalent texts need not have the same bytes. The locale is looked up once, at first use.
///
/// Thread safety: safe from any thread.
[[nodiscard]] QUILLBEAM_EXPORT std::weak_ordering
localizedCaseInsensitiveCompare(std::string_view left, std::string_view right);

} // namespace platform::inline v1
