#include "platform/url/detail/URLReference.hpp"

#include "platform/text/ASCII.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

namespace platform::inline v1::detail {

namespace {

constexpr std::string_view subDelimiters = "!$&'()*+,;=";

/// Where a character may stand unescaped; one bit each.
enum CharacterClass : std::uint8_t {
    inScheme = 1,
    inUserInfo = 2,
    inRegisteredName = 4,
    inPath = 8,
    inQueryOrFragment = 16,
    inFutureAddress = 32,
};

constexpr std::array<std::uint8_t, 256> characterClasses = [] {
    std::array<std::uint8_t, 256> table{};
    const auto allow = [&table](std::string_view characters, unsigned classes) {
        for (const char c : characters) {
            auto& entry = table[static_cast<std::uint8_t>(c)];
            entry = static_cast<std::uint8_t>(entry | classes);
        }
    };
    constexpr unsigned everywhere = inUserInfo | inRegisteredName | inPath | inQueryOrFragment | inFutureAddress;
    allow("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", everywhere | inScheme);
    allow("-.", everywhere | inScheme);
    allow("_~", everywhere);
    allow(subDelimiters, everywhere);
    allow("+", inScheme);
    allow(":", inUserInfo | inPath | inQueryOrFragment | inFutureAddress);
    allow("@", inPath | inQueryOrFragment);
    allow("/", inPath | inQueryOrFragment);
    allow("?", inQueryOrFragment);
    return table;
}();

bool isAllowed(char c, CharacterClass where) noexcept {
    return (characterClasses[static_cast<std::uint8_t>(c)] & where) != 0;
}

/// True when every character may stand here or belongs to a percent-escape.
bool isEncoded(std::string_view text, CharacterClass where) noexcept {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isAllowed(text[i], where)) continue;
        if (text[i] != '%' || text.size() - i < 3) return false;
        if (hexDigitValue(text[i + 1]) < 0 || hexDigitValue(text[i + 2]) < 0) return false;
        i += 2;
    }
    return true;
}

bool isScheme(std::string_view text) noexcept {
    return !text.empty() && isASCIILetter(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char c) { return isAllowed(c, inScheme); });
}

bool isIPv4Address(std::string_view text) noexcept {
    for (int octets = 1;; ++octets) {
        const std::size_t length = std::min(text.find('.'), text.size());
        if (length == 0 || length > 3 || (length > 1 && text.front() == '0')) return false;
        int value = 0;
        for (const char c : text.substr(0, length)) {
            if (!isASCIIDigit(c)) return false;
            value = value * 10 + (c - '0');
        }
        if (value > 255) return false;
        if (length == text.size()) return octets == 4;
        text.remove_prefix(length + 1);
    }
}

/// Eight groups of one to four hexadecimal digits, the last two of them perhaps as an IPv4 address; one "::" may stand
/// for one group or more.
bool isIPv6Address(std::string_view text) noexcept {
    int groups = 0;
    bool hasGap = text.starts_with("::");
    if (hasGap) {
        text.remove_prefix(2);
        if (text.empty()) return true;
    }
    while (true) {
        const std::size_t length = std::min(text.find(':'), text.size());
        const std::string_view group = text.substr(0, length);
        if (length == text.size() && group.find('.') != std::string_view::npos) {
            if (!isIPv4Address(group)) return false;
            groups += 2;
        } else {
            if (length == 0 || length > 4) return false;
            if (!std::all_of(group.begin(), group.end(), [](char c) { return hexDigitValue(c) >= 0; })) return false;
            groups += 1;
        }
        text.remove_prefix(length);
        if (text.empty()) break;
        if (text.starts_with("::")) {
            if (hasGap) return false;
            hasGap = true;
            text.remove_prefix(2);
            if (text.empty()) break;
        } else {
            text.remove_prefix(1);
        }
    }
    return hasGap ? groups < 8 : groups == 8;
}

/// The inside of the brackets.
bool isIPLiteral(std::string_view text) noexcept {
    if (text.empty() || (text.front() != 'v' && text.front() != 'V')) return isIPv6Address(text);
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos || dot < 2 || dot + 1 == text.size()) return false;
    const std::string_view version = text.substr(1, dot - 1);
    const std::string_view address = text.substr(dot + 1);
    return std::all_of(version.begin(), version.end(), [](char c) { return hexDigitValue(c) >= 0; }) &&
           std::all_of(address.begin(), address.end(), [](char c) { return isAllowed(c, inFutureAddress); });
}

/// Reads what stands between "//" and the path.
bool parseAuthority(std::string_view text, URLReference& reference) noexcept {
    if (const std::size_t at = text.find('@'); at != std::string_view::npos) {
        reference.userInfo = text.substr(0, at);
        if (!isEncoded(*reference.userInfo, inUserInfo)) return false;
        text.remove_prefix(at + 1);
    }
    std::size_t hostEnd = 0;
    if (text.starts_with('[')) {
        hostEnd = text.find(']');
        if (hostEnd == std::string_view::npos || !isIPLiteral(text.substr(1, hostEnd - 1))) return false;
        ++hostEnd;
    } else {
        hostEnd = std::min(text.find(':'), text.size());
        if (!isEncoded(text.substr(0, hostEnd), inRegisteredName)) return false;
    }
    reference.host = text.substr(0, hostEnd);
    text.remove_prefix(hostEnd);
    if (text.empty()) return true;
    if (text.front() != ':') return false;
    reference.port = text.substr(1);
    return std::all_of(reference.port->begin(), reference.port->end(), isASCIIDigit);
}

} // namespace

std::optional<URLReference> URLReference::parse(std::string_view text) noexcept {
    URLReference reference;
    if (const std::size_t hash = text.find('#'); hash != std::string_view::npos) {
        reference.fragment = text.substr(hash + 1);
        if (!isEncoded(*reference.fragment, inQueryOrFragment)) return std::nullopt;
        text = text.substr(0, hash);
    }
    if (const std::size_t mark = text.find('?'); mark != std::string_view::npos) {
        reference.query = text.substr(mark + 1);
        if (!isEncoded(*reference.query, inQueryOrFragment)) return std::nullopt;
        text = text.substr(0, mark);
    }
    // A colon in the first segment can only end a scheme.
    if (const std::size_t end = text.find_first_of(":/"); end != std::string_view::npos && text[end] == ':') {
        reference.scheme = text.substr(0, end);
        if (!isScheme(*reference.scheme)) return std::nullopt;
        text.remove_prefix(end + 1);
    }
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        const std::size_t end = std::min(text.find('/'), text.size());
        if (!parseAuthority(text.substr(0, end), reference)) return std::nullopt;
        text.remove_prefix(end);
    }
    reference.path = text;
    if (!isEncoded(reference.path, inPath)) return std::nullopt;
    return reference;
}

} // namespace platform::inline v1::detail
