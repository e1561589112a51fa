#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace platform::inline v1::detail {

/// The number that is nearest to a JSON number; false where it is too great. Too small gives zero.
/// @param isPlainInteger whether it has neither fraction nor exponent
[[nodiscard]] bool parseJSONNumber(std::string_view text, bool isPlainInteger, double& out);
[[nodiscard]] bool parseJSONNumber(std::string_view text, bool isPlainInteger, float& out);

/// The value of a JSON number that is integral (1.0 and 1e2 are) and in range of an integer type, as
/// 64 bits in two's complement.
/// @param bits the width of the type
[[nodiscard]] std::optional<std::uint64_t>
parseJSONInteger(std::string_view text, bool isPlainInteger, unsigned bits, bool isSigned);

} // namespace platform::inline v1::detail
