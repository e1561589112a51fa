#include "platform/json/detail/JSONNumber.hpp"

#include "platform/text/Numbers.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace platform::inline v1::detail {

namespace {

/// The value of at most 19 digits.
std::uint64_t magnitudeOf(std::string_view digits) noexcept {
    std::uint64_t value = 0;
    for (const char digit : digits)
        value = value * 10 + static_cast<std::uint64_t>(digit - '0');
    return value;
}

/// The magnitude of a number without its sign, where that is an integer below 2^64.
std::optional<std::uint64_t> integralMagnitude(std::string_view text, bool isPlainInteger) {
    std::uint64_t magnitude = 0;
    if (isPlainInteger) {
        if (text.size() <= 19) return magnitudeOf(text);
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude);
        if (error != std::errc()) return std::nullopt;
        return magnitude;
    }

    // The value is `digits` times ten to the `exponent`; digits may be many, so they are never all taken as a number.
    constexpr std::int64_t farOut = 1'000'000'000'000; // beyond what any text's length can make up for
    std::int64_t exponent = 0;
    if (const std::size_t e = text.find_first_of("eE"); e != std::string_view::npos) {
        std::string_view digits = text.substr(e + 1);
        const bool isNegative = digits.front() == '-';
        if (isNegative || digits.front() == '+') digits.remove_prefix(1);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        if (error != std::errc() || exponent > farOut) exponent = farOut;
        if (isNegative) exponent = -exponent;
        text = text.substr(0, e);
    }
    std::string digits(text);
    if (const std::size_t point = digits.find('.'); point != std::string::npos) {
        exponent -= static_cast<std::int64_t>(digits.size() - point - 1);
        digits.erase(point, 1);
    }
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string::npos) return 0;
    const std::size_t last = digits.find_last_not_of('0');
    exponent += static_cast<std::int64_t>(digits.size() - last - 1);
    digits = digits.substr(first, last - first + 1);
    if (exponent < 0 || exponent > 20 || digits.size() > 20) return std::nullopt;
    digits.append(static_cast<std::size_t>(exponent), '0');
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
    if (error != std::errc()) return std::nullopt;
    return magnitude;
}

} // namespace

bool parseJSONNumber(std::string_view text, bool isPlainInteger, double& out) {
    constexpr std::size_t exactDigits = 15; // every integer of so many digits is a double
    if (isPlainInteger && text.size() <= exactDigits) {
        const bool isNegative = text.front() == '-';
        const auto value = static_cast<double>(magnitudeOf(text.substr(isNegative ? 1 : 0)));
        out = isNegative ? -value : value;
        return true;
    }
    const auto value = parseDouble(text);
    if (value) out = *value;
    return value.has_value();
}

bool parseJSONNumber(std::string_view text, bool isPlainInteger, float& out) {
    float value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc()) {
        out = value;
        return true;
    }
    // Too great or too small: which of the two, the wider type can tell.
    double wide = 0;
    if (!parseJSONNumber(text, isPlainInteger, wide)) return false;
    if (std::fabs(wide) > static_cast<double>(std::numeric_limits<float>::max())) return false;
    out = static_cast<float>(wide);
    return true;
}

std::optional<std::uint64_t>
parseJSONInteger(std::string_view text, bool isPlainInteger, unsigned bits, bool isSigned) {
    const bool isNegative = text.front() == '-';
    if (isNegative) text.remove_prefix(1);
    const auto magnitude = integralMagnitude(text, isPlainInteger);
    if (!magnitude) return std::nullopt;
    const std::uint64_t all = ~std::uint64_t{0} >> (64U - bits);
    std::uint64_t limit = all;
    if (isSigned) limit = isNegative ? all / 2 + 1 : all / 2;
    if (!isSigned && isNegative) limit = 0;
    if (*magnitude > limit) return std::nullopt;
    return isNegative ? std::uint64_t{0} - *magnitude : *magnitude;
}

} // namespace platform::inline v1::detail
