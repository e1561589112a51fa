#include "platform/text/PercentEncoding.hpp"

#include "platform/text/ASCII.hpp"
#include "platform/text/UTF8.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace platform::inline v1 {

namespace {

/// A set of ASCII characters, one bit each.
class ASCIISet {
public:
    constexpr explicit ASCIISet(std::string_view symbols) noexcept {
        for (const char c : symbols) {
            insert(static_cast<std::uint8_t>(c));
        }
    }

    static constexpr ASCIISet alphanumerics() noexcept {
        return ASCIISet("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    }

    constexpr ASCIISet operator|(const ASCIISet& other) const noexcept {
        ASCIISet both = *this;
        both.words_[0] |= other.words_[0];
        both.words_[1] |= other.words_[1];
        return both;
    }

    /// False for every byte of 0x80 and above.
    constexpr bool contains(std::uint8_t c) const noexcept {
        return c < 0x80 && ((words_[c >> 6U] >> (c & 0x3FU)) & 1U) != 0;
    }

private:
    constexpr void insert(std::uint8_t c) noexcept {
        if (c < 0x80) words_[c >> 6U] |= std::uint64_t{1} << (c & 0x3FU);
    }

    std::uint64_t words_[2] = {0, 0};
};

/// Ill-formed bytes come as a negative number.
bool isLetterMarkOrNumber(UChar32 c) noexcept {
    return c >= 0 && (U_GET_GC_MASK(c) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

} // namespace

void appendPercentEscape(std::string& output, char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto value = static_cast<std::uint8_t>(byte);
    const char escape[] = {'%', digits[value >> 4U], digits[value & 0xFU]};
    output.append(escape, sizeof escape);
}

void appendPercentEncoded(std::string& output, std::string_view text, std::string_view allowedSymbols) {
    constexpr ASCIISet alphanumerics = ASCIISet::alphanumerics();
    const ASCIISet allowed = alphanumerics | ASCIISet(allowedSymbols);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t next = 0;
    while (next < text.size()) {
        std::size_t start = next;
        while (next < text.size() && allowed.contains(bytes[next])) {
            ++next;
        }
        output.append(text, start, next - start);
        if (next == text.size()) return;
        if (bytes[next] < 0x80) {
            appendPercentEscape(output, text[next++]);
            continue;
        }
        start = next;
        UChar32 c = 0;
        U8_NEXT(bytes, next, text.size(), c);
        if (isLetterMarkOrNumber(c)) {
            output.append(text, start, next - start);
        } else {
            for (; start < next; ++start) {
                appendPercentEscape(output, text[start]);
            }
        }
    }
}

std::string percentEncoded(std::string_view text, std::string_view allowedSymbols) {
    std::string output;
    output.reserve(text.size());
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
