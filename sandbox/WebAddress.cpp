#include "sandbox/WebAddress.hpp"

#include "sandbox/Problem.hpp"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace sandbox {

namespace {

constexpr std::size_t longestAddress = 2048;

bool hasPrefix(std::string_view text, std::string_view lowerCasePrefix) {
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(), [](char expected, char actual) {
               return expected == std::tolower(static_cast<unsigned char>(actual));
           });
}

bool isWebAddress(std::string_view text) {
    if (text.size() > longestAddress) return false;
    if (std::any_of(text.begin(), text.end(), [](unsigned char c) { return c <= 0x20 || c == 0x7f; })) return false;
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (!hasPrefix(text, scheme)) continue;
        const std::string_view rest = text.substr(scheme.size());
        return !rest.empty() && std::string_view(":/?#").find(rest.front()) == std::string_view::npos;
    }
    return false;
}

} // namespace

void requireWebAddress(const char* key, const std::string& address) {
    if (isWebAddress(address)) return;
    throw Problem::badRequest("\"" + std::string(key) + "\" must be an http or https address.");
}

} // namespace sandbox
