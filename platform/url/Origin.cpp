#include "platform/url/Origin.hpp"

#include "platform/text/ASCII.hpp"

#include <charconv>

namespace platform::inline v1 {

std::optional<std::string> originOf(std::string_view url) {
    const auto colon = url.find("://");
    if (colon == std::string_view::npos) return std::nullopt;
    std::string origin = asciiLowercased(url.substr(0, colon));
    const bool secure = origin == "https";
    if (!secure && origin != "http") return std::nullopt;

    auto authority = url.substr(colon + 3);
    authority = authority.substr(0, authority.find_first_of("/?#"));
    if (const auto at = authority.rfind('@'); at != std::string_view::npos) authority.remove_prefix(at + 1);
    // The colons of an IP literal stand inside its brackets.
    const auto bracket = authority.rfind(']');
    const auto portColon = authority.find(':', bracket == std::string_view::npos ? 0 : bracket);
    const auto host = authority.substr(0, portColon);
    if (host.empty()) return std::nullopt;

    unsigned port = secure ? 443 : 80;
    if (portColon != std::string_view::npos && portColon + 1 < authority.size()) {
        const auto digits = authority.substr(portColon + 1);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
        if (error != std::errc() || end != digits.data() + digits.size() || port == 0 || port > 65535) {
            return std::nullopt;
        }
    }
    return origin.append("://").append(asciiLowercased(host)).append(":").append(std::to_string(port));
}

} // namespace platform::inline v1
