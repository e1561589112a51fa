#include "platform/loading/detail/FieldText.hpp"

#include <algorithm>

namespace platform::inline v1::detail {

namespace {

bool isASCIIByte(char byte) noexcept {
    return static_cast<unsigned char>(byte) < 0x80;
}

} // namespace

bool isToken(std::string_view text) noexcept {
    constexpr std::string_view symbols = "!#$%&'*+-.^_`|~";
    return !text.empty() && std::all_of(text.begin(), text.end(), [&](char c) {
        const char lower = foldedASCII(c);
        return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || symbols.find(c) != std::string_view::npos;
    });
}

std::string_view trimmingFieldWhitespace(std::string_view text) noexcept {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool equalFieldNames(std::string_view left, std::string_view right) noexcept {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return foldedASCII(a) == foldedASCII(b);
    });
}

std::string textFromLatin1(std::string_view bytes) {
    if (std::all_of(bytes.begin(), bytes.end(), isASCIIByte)) return std::string(bytes);
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            text.push_back(byte);
        } else {
            text.push_back(static_cast<char>(0xC0 | (code >> 6)));
            text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        }
    }
    return text;
}

void appendWireBytes(std::string& out, std::string_view text) {
    if (std::all_of(text.begin(), text.end(), isASCIIByte)) {
        out.append(text);
        return;
    }
    const std::size_t start = out.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            out.push_back(text[i]);
            continue;
        }
        const unsigned next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
        if ((lead != 0xC2 && lead != 0xC3) || (next & 0xC0U) != 0x80) {
            out.resize(start);
            out.append(text);
            return;
        }
        out.push_back(static_cast<char>(((lead & 0x03U) << 6U) | (next & 0x3FU)));
        ++i;
    }
}

} // namespace platform::inline v1::detail
