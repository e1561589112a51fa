#include "platform/url/URLComponents.hpp"

#include "platform/text/PercentEncoding.hpp"
#include "platform/text/UTF8.hpp"
#include "platform/url/detail/PortNumber.hpp"
#include "platform/url/detail/URLReference.hpp"

namespace platform::inline v1 {

namespace {

/// The text with every byte beyond ASCII percent-encoded.
std::string escapingNonASCII(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size() * 2);
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x80) {
            escaped += c;
        } else {
            appendPercentEscape(escaped, c);
        }
    }
    return escaped;
}

std::optional<std::string> copied(std::optional<std::string_view> component) {
    if (!component) return std::nullopt;
    return std::string(*component);
}

/// True when `component` is what `written` says, an absent one only where none is written.
bool matches(const std::optional<std::string>& component, std::optional<std::string_view> written) noexcept {
    return component.has_value() == written.has_value() && (!component || *component == *written);
}

} // namespace

std::optional<URLComponents> URLComponents::make(std::string_view text) {
    std::string escaped;
    if (!isASCII(text)) {
        if (!isValidUTF8(text)) return std::nullopt;
        escaped = escapingNonASCII(text);
        text = escaped;
    }
    const std::optional<detail::URLReference> reference = detail::URLReference::parse(text);
    if (!reference) return std::nullopt;
    URLComponents components;
    components.scheme_ = copied(reference->scheme);
    components.userInfo_ = copied(reference->userInfo);
    components.host_ = copied(reference->host);
    components.port_ = copied(reference->port);
    components.path_ = reference->path;
    components.query_ = copied(reference->query);
    components.fragment_ = copied(reference->fragment);
    return components;
}

std::optional<std::uint16_t> URLComponents::port() const noexcept {
    return port_ ? detail::portNumber(*port_) : std::nullopt;
}

void URLComponents::setPort(std::optional<std::uint16_t> port) {
    port_ = port ? std::optional(std::to_string(*port)) : std::nullopt;
}

std::optional<URL> URLComponents::url() const {
    std::string text;
    if (scheme_) text.append(*scheme_).append(":");
    const bool hasAuthority = userInfo_ || host_ || port_;
    if (hasAuthority) text += "//";
    if (userInfo_) text.append(*userInfo_).append("@");
    if (host_) text += *host_;
    if (port_) text.append(":").append(*port_);
    text += path_;
    if (query_) text.append("?").append(*query_);
    if (fragment_) text.append("#").append(*fragment_);

    std::optional<URL> made = URL::make(text);
    if (!made) return std::nullopt;
    const bool readsBack = matches(scheme_, made->scheme()) && matches(userInfo_, made->percentEncodedUserInfo()) &&
                           made->host().has_value() == hasAuthority &&
                           made->host().value_or("") == host_.value_or("") && matches(port_, made->portText()) &&
                           made->percentEncodedPath() == path_ && matches(query_, made->percentEncodedQuery()) &&
                           matches(fragment_, made->fragment());
    if (!readsBack) return std::nullopt;
    return made;
}

} // namespace platform::inline v1
