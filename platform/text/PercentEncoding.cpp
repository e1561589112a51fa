#include "platform/text/PercentEncoding.hpp"

#include "platform/text/ASCII.hpp"
#include "platform/text/UTF8.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>

namespace platform::inline v1 {

namespace {

/// For each byte, 1 where it is a character that passes, else 0: a byte is looked up at once, and adding up counts.
using PassingBytes = std::array<std::uint8_t, 256>;

constexpr PassingBytes passing(PassingBytes table, std::string_view symbols) noexcept {
    for (const char c : symbols) {
        if (static_cast<std::uint8_t>(c) < 0x80) table[static_cast<std::uint8_t>(c)] = 1;
    }
    return table;
}

constexpr PassingBytes alphanumerics = passing({}, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");

/// Writes three characters and gives the end behind them.
char* writeEscape(char* at, std::uint8_t byte) noexcept {
    constexpr std::string_view digits = "0123456789ABCDEF";
    *at++ = '%';
    *at++ = digits[byte >> 4U];
    *at++ = digits[byte & 0xFU];
    return at;
}

/// Ill-formed bytes come as a negative number.
bool isLetterMarkOrNumber(UChar32 c) noexcept {
    return c >= 0 && (U_GET_GC_MASK(c) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

} // namespace

void appendPercentEscape(std::string& output, char byte) {
    char escape[3];
    output.append(escape, writeEscape(escape, static_cast<std::uint8_t>(byte)));
}

void appendPercentEncoded(std::string& output, std::string_view text, std::string_view allowedSymbols) {
    const PassingBytes passes = passing(alphanumerics, allowedSymbols);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t passingCount = 0; // at least: some characters beyond ASCII pass too
    for (std::size_t i = 0; i < text.size(); ++i) {
        passingCount += passes[bytes[i]];
    }
    if (passingCount == text.size()) {
        output += text;
        return;
    }
    const std::size_t start = output.size();
    output.resize(start + passingCount + 3 * (text.size() - passingCount));
    char* at = output.data() + start;
    for (std::size_t next = 0; next < text.size();) {
        if (passes[bytes[next]] != 0) {
            *at++ = text[next++];
        } else if (bytes[next] < 0x80) {
            at = writeEscape(at, bytes[next++]);
        } else {
            const std::size_t first = next;
            UChar32 c = 0;
            U8_NEXT(bytes, next, text.size(), c);
            if (isLetterMarkOrNumber(c)) {
                at = std::copy(text.data() + first, text.data() + next, at);
            } else {
                at = std::accumulate(bytes + first, bytes + next, at, writeEscape);
            }
        }
    }
    output.resize(static_cast<std::size_t>(at - output.data()));
}

std::string percentEncoded(std::string_view text, std::string_view allowedSymbols) {
    std::string output;
    appendPercentEncoded(output, text, allowedSymbols);
    return output;
}

std::optional<std::string> removingPercentEncoding(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t escape = text.find('%'); escape != std::string_view::npos; escape = text.find('%')) {
        if (text.size() - escape < 3) return std::nullopt;
        const int high = hexDigitValue(text[escape + 1]);
        const int low = hexDigitValue(text[escape + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        decoded += text.substr(0, escape);
        decoded += static_cast<char>(high * 16 + low);
        text.remove_prefix(escape + 3);
    }
    decoded += text;
    if (!isValidUTF8(decoded)) return std::nullopt;
    return decoded;
}

} // namespace platform::inline v1
