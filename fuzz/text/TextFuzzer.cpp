#include "platform/text/ASCII.hpp"
#include "platform/text/Base64.hpp"
#include "platform/text/Comparison.hpp"
#include "platform/text/Numbers.hpp"
#include "platform/text/PercentEncoding.hpp"
#include "platform/text/Trimming.hpp"
#include "platform/text/UTF8.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

/// strtod in the "C" locale, which the process never leaves, is the referee.
void checkNumber(const std::string& text) {
    const std::optional<double> number = platform::parseDouble(text);
    if (!number) return;
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    require(end == text.c_str() + text.size());
    require(std::isnan(*number) ? std::isnan(expected) : *number == expected);
    require(std::isnan(*number) || platform::parseDouble(platform::shortestText(*number)) == number);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);

    const std::string repaired = platform::repairedUTF8(text);
    require(platform::isValidUTF8(repaired));
    require(platform::isValidUTF8(text) == (repaired == text));

    const std::string encoded = platform::percentEncoded(text, "-._~");
    require(encoded.find_first_of(" &=?#/{}") == std::string::npos);
    const std::optional<std::string> decoded = platform::removingPercentEncoding(encoded);
    require(platform::isValidUTF8(text) ? decoded == text : !decoded);
    if (const auto unescaped = platform::removingPercentEncoding(text)) require(platform::isValidUTF8(*unescaped));

    const std::string_view trimmed = platform::trimmingWhitespaceAndNewlines(text);
    require(platform::trimmingWhitespaceAndNewlines(trimmed) == trimmed);
    require(platform::isValidUTF8(trimmed) || !platform::isValidUTF8(text));
    require(platform::isValidUTF8(platform::lowercased(repaired)));

    const std::size_t half = size / 2;
    const std::string_view left = std::string_view(text).substr(0, half);
    const std::string_view right = std::string_view(text).substr(half);
    const auto order = platform::localizedCaseInsensitiveCompare(left, right);
    require((platform::localizedCaseInsensitiveCompare(right, left) <=> 0) == (0 <=> order));

    const std::span<const std::uint8_t> bytes(data, size);
    const auto restored = platform::base64Decoded(platform::base64Encoded(bytes));
    require(restored && std::equal(restored->begin(), restored->end(), bytes.begin(), bytes.end()));
    static_cast<void>(platform::base64Decoded(text, platform::UnknownBase64Characters::ignore));

    checkNumber(text);
    return 0;
}
