#include "platform/text/Numbers.hpp"

#include "platform/text/ASCII.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <iterator>
#include <locale.h>
#include <stdlib.h>

namespace platform::inline v1 {

namespace {

enum class ZeroFraction { shown, dropped };

/// The digits of a finite number, the point thought before the first one.
struct Decimal {
    std::array<char, 24> digits{};
    int count = 0;
    int exponent = 0;
    bool isNegative = false;
};

template <class Number>
Decimal shortestDecimal(Number number) {
    // Scientific form only gives the digits; the library's own choice between the two layouts differs from ours.
    std::array<char, 40> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific);
    Decimal decimal;
    const char* at = buffer.data();
    decimal.isNegative = *at == '-';
    if (decimal.isNegative) ++at;
    for (; *at != 'e'; ++at) {
        if (*at != '.') decimal.digits[static_cast<std::size_t>(decimal.count++)] = *at;
    }
    at += at[1] == '+' ? 2 : 1;
    std::from_chars(at, written.ptr, decimal.exponent);
    ++decimal.exponent;
    return decimal;
}

/// Appends a number that has at most six decimals and is not whole; false for others. Decimal numbers of up to 15
/// digits are all different as doubles, so the one that reads back as the number is the shortest.
bool appendFewDecimals(std::string& output, double number) {
    constexpr double scale = 1e6;
    const double scaled = std::round(std::fabs(number) * scale);
    if (!(scaled >= 1e3 && scaled < 1e15) || scaled / scale != std::fabs(number)) return false;
    auto digits = static_cast<std::uint64_t>(scaled);
    std::size_t decimals = 6;
    for (; decimals > 0 && digits % 10 == 0; --decimals)
        digits /= 10;
    if (decimals == 0) return false;
    char text[24];
    char* const end = std::end(text);
    char* at = end;
    for (std::size_t i = 0; i < decimals; ++i, digits /= 10)
        *--at = static_cast<char>('0' + digits % 10);
    *--at = '.';
    do {
        *--at = static_cast<char>('0' + digits % 10);
        digits /= 10;
    } while (digits != 0);
    if (number < 0) *--at = '-';
    output.append(at, static_cast<std::size_t>(end - at));
    return true;
}

template <class Number>
void appendFinite(std::string& output, Number number, ZeroFraction zeroFraction) {
    if constexpr (std::same_as<Number, double>) {
        if (appendFewDecimals(output, number)) return;
    }
    constexpr Number greatestPlain = Number(1ULL << 54U);
    const Decimal decimal = shortestDecimal(number);
    const char* const digits = decimal.digits.data();
    const auto count = static_cast<std::size_t>(decimal.count);
    if (decimal.isNegative) output += '-';
    if (decimal.exponent < -3 || std::fabs(number) > greatestPlain) {
        output += digits[0];
        if (count > 1) output.append(".").append(digits + 1, count - 1);
        const int exponent = decimal.exponent - 1;
        output += exponent < 0 ? "e-" : "e+";
        const std::string plain = std::to_string(std::abs(exponent));
        if (plain.size() < 2) output += '0';
        output += plain;
    } else if (decimal.exponent <= 0) {
        output.append("0.").append(static_cast<std::size_t>(-decimal.exponent), '0').append(digits, count);
    } else {
        const auto whole = static_cast<std::size_t>(decimal.exponent);
        if (count > whole) {
            output.append(digits, whole).append(".").append(digits + whole, count - whole);
        } else {
            output.append(digits, count).append(whole - count, '0');
            if (zeroFraction == ZeroFraction::shown) output += ".0";
        }
    }
}

/// The C library's reading in its "C" locale, for the numbers at the ends of the range.
double parseInCLocale(std::string_view text) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(std::string(text).c_str(), nullptr, cLocale);
}

} // namespace

std::string shortestText(double number) {
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
    std::string text;
    appendFinite(text, number, ZeroFraction::shown);
    return text;
}

std::string jsonNumberText(double number) {
    std::string text;
    appendJSONNumber(text, number);
    return text;
}

void appendJSONNumber(std::string& output, double number) {
    appendFinite(output, number, ZeroFraction::dropped);
}

void appendJSONNumber(std::string& output, float number) {
    appendFinite(output, number, ZeroFraction::dropped);
}

std::optional<double> parseDouble(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    if (text.starts_with("nan(") || text.starts_with("-nan(")) return std::nullopt;
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size()) return std::nullopt;
    if (error == std::errc()) return number;
    if (error != std::errc::result_out_of_range) return std::nullopt;
    // Too great and too small come as the same error here.
    number = parseInCLocale(text);
    if (std::isinf(number)) return std::nullopt;
    return number;
}

} // namespace platform::inline v1
