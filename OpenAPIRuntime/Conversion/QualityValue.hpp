#pragma once

#include "platform/Export.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace OpenAPIRuntime::inline v1 {

/// The weight of a content type in an Accept header (RFC 9110, section 12.4.2): 0.0 to 1.0 in steps of a thousandth.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
class QualityValue {
public:
    /// 1.0, the quality of a content type that names none.
    constexpr QualityValue() noexcept = default;

    /// The quality, cut down to thousandths: 0.1239 becomes 0.123. Integers 0 and 1 do as well.
    /// @throws std::out_of_range unless `doubleValue` lies in 0.0 to 1.0; a constant expression then does not compile
    constexpr explicit QualityValue(double doubleValue)
        : thousands_(checkedThousands(doubleValue)) {}

    /// The quality that a text such as "0.5" tells; nothing where the whole text is no number from 0.0 to 1.0.
    [[nodiscard]] QUILLBEAM_EXPORT static std::optional<QualityValue> fromRawValue(std::string_view rawValue);

    /// The quality with three decimal places: "0.500".
    [[nodiscard]] QUILLBEAM_EXPORT std::string rawValue() const;

    [[nodiscard]] constexpr double doubleValue() const noexcept { return thousands_ / 1000.0; }

    /// Whether this is 1.0.
    [[nodiscard]] constexpr bool isDefault() const noexcept { return thousands_ == 1000; }

    friend constexpr bool operator==(const QualityValue&, const QualityValue&) = default;

private:
    static constexpr std::uint16_t checkedThousands(double value) {
        // Written so that a NaN fails as well.
        if (!(value >= 0.0 && value <= 1.0)) throw std::out_of_range("a quality value lies in 0.0 to 1.0");
        return static_cast<std::uint16_t>(value * 1000);
    }

    std::uint16_t thousands_ = 1000;
};

} // namespace OpenAPIRuntime::inline v1

template <>
struct std::hash<OpenAPIRuntime::QualityValue> {
    std::size_t operator()(const OpenAPIRuntime::QualityValue& quality) const noexcept {
        return std::hash<double>()(quality.doubleValue());
    }
};
