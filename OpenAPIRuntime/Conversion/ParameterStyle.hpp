#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace OpenAPIRuntime::inline v1 {

/// How a parameter's value is laid out as text: the styles of OpenAPI that this runtime writes.
enum class ParameterStyle : std::uint8_t { form, simple };

/// The name of the case: "form" or "simple".
[[nodiscard]] constexpr std::string_view rawValue(ParameterStyle style) noexcept {
    return style == ParameterStyle::form ? "form" : "simple";
}

/// All styles, in the order of their declaration.
inline constexpr std::array<ParameterStyle, 2> allParameterStyles{ParameterStyle::form, ParameterStyle::simple};

} // namespace OpenAPIRuntime::inline v1
