#include "OpenAPIRuntime/Conversion/QualityValue.hpp"

#include "platform/text/Numbers.hpp"

namespace OpenAPIRuntime::inline v1 {

std::optional<QualityValue> QualityValue::fromRawValue(std::string_view rawValue) {
    const std::optional<double> value = platform::parseDouble(rawValue);
    if (!value || !(*value >= 0.0 && *value <= 1.0)) return std::nullopt;
    return QualityValue(*value);
}

std::string QualityValue::rawValue() const {
    std::string text = std::to_string(thousands_ + 10000); // "1" and the five digits of tens, ones and thousandths
    return text.substr(1, 1) + "." + text.substr(2);
}

} // namespace OpenAPIRuntime::inline v1
