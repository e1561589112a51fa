#include "platform/text/Trimming.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace platform::inline v1 {

namespace {

/// Ill-formed bytes come as a negative number and are no whitespace.
bool isWhitespaceOrNewline(UChar32 c) noexcept {
    if (c < 0x80) return c == ' ' || (c >= 0x09 && c <= 0x0D);
    return c == 0x85 || c == 0x2028 || c == 0x2029 || u_charType(c) == U_SPACE_SEPARATOR;
}

} // namespace

std::string_view trimmingWhitespaceAndNewlines(std::string_view text) noexcept {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t start = 0;
    std::size_t end = text.size();
    UChar32 c = 0;
    for (std::size_t next = start; start < end; start = next) {
        U8_NEXT(bytes, next, end, c);
        if (!isWhitespaceOrNewline(c)) break;
    }
    while (end > start) {
        // The last four bytes hold the whole last character.
        const auto window = static_cast<std::int32_t>(std::min<std::size_t>(end - start, 4));
        std::int32_t index = window;
        U8_PREV(bytes + (end - static_cast<std::size_t>(window)), 0, index, c);
        if (!isWhitespaceOrNewline(c)) break;
        end -= static_cast<std::size_t>(window - index);
    }
    return text.substr(start, end - start);
}

} // namespace platform::inline v1
