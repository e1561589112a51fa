#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace platform::inline v1::detail {

/// The number of a port written as `digits`; nothing for no digits or a number above 65535.
[[nodiscard]] inline std::optional<std::uint16_t> portNumber(std::string_view digits) noexcept {
    std::uint16_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return number;
}

} // namespace platform::inline v1::detail
