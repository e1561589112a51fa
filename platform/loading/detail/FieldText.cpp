#include "platform/loading/detail/FieldText.hpp"

#include "platform/text/Latin1.hpp"
#include "platform/text/UTF8.hpp"

#include <algorithm>

namespace platform::inline v1::detail {

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

void appendWireBytes(std::string& out, std::string_view text) {
    if (isASCII(text)) {
        out.append(text);
        return;
    }
    const std::size_t start = out.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            out.push_back(text[i]);
        } else if (const auto byte = latin1ByteAt(text, i)) {
            out.push_back(*byte);
            ++i;
        } else {
            out.resize(start);
            out.append(text);
            return;
        }
    }
}

} // namespace platform::inline v1::detail
