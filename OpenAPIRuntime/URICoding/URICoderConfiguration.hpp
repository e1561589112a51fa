#pragma once

#include "OpenAPIRuntime/Conversion/DateTranscoder.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// How values and URI text are turned into each other: OpenAPI's style and explode, the form of a space, and the dates.
///
/// Equality and hashing go by the first three; how dates are written is not compared.
struct URICoderConfiguration {
    /// The styles that have a text form here.
    enum class Style : std::uint8_t { simple, form };

    /// How a space is written; see `rawValue`.
    enum class SpaceEscapingCharacter : std::uint8_t { percentEncoded, plus };

    Style style = Style::form;

    /// OpenAPI's explode flag: lists and maps become one item for each element, not one item for all.
    bool explode = true;

    SpaceEscapingCharacter spaceEscapingCharacter = SpaceEscapingCharacter::percentEncoded;

    /// Never null where dates are coded.
    std::shared_ptr<const DateTranscoder> dateTranscoder{};

    URICoderConfiguration() = default;

    URICoderConfiguration(
        Style style_,
        bool explode_,
        SpaceEscapingCharacter spaceEscapingCharacter_,
        std::shared_ptr<const DateTranscoder> dateTranscoder_
    )
        : style(style_)
        , explode(explode_)
        , spaceEscapingCharacter(spaceEscapingCharacter_)
        , dateTranscoder(std::move(dateTranscoder_)) {}

    friend bool operator==(const URICoderConfiguration& left, const URICoderConfiguration& right) noexcept {
        return left.style == right.style && left.explode == right.explode &&
               left.spaceEscapingCharacter == right.spaceEscapingCharacter;
    }
};

/// What stands for a space: "%20" or "+".
[[nodiscard]] constexpr std::string_view rawValue(URICoderConfiguration::SpaceEscapingCharacter character) noexcept {
    return character == URICoderConfiguration::SpaceEscapingCharacter::plus ? "+" : "%20";
}

} // namespace OpenAPIRuntime::inline v1

template <>
struct std::hash<OpenAPIRuntime::URICoderConfiguration> {
    std::size_t operator()(const OpenAPIRuntime::URICoderConfiguration& configuration) const noexcept {
        return (static_cast<std::size_t>(configuration.style) * 2 + (configuration.explode ? 1U : 0U)) * 2 +
               static_cast<std::size_t>(configuration.spaceEscapingCharacter);
    }
};
