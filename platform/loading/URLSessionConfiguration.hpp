#pragma once

#include "platform/Export.hpp"

#include <chrono>
#include <optional>
#include <string>

namespace platform::inline v1 {

/// How a session loads. Every default is what a program wants that does not care.
///
/// Not configurable, because nobody should want it otherwise: certificates and host names are verified; only `http` and
/// `https` are loaded, also after a redirect; no cookies are kept; HTTP/2 is used over TLS where the server offers it.
struct QUILLBEAM_EXPORT URLSessionConfiguration {
    /// How long a transfer may go without any byte moving, unless its request says otherwise. Zero or less: no limit.
    std::chrono::milliseconds timeoutIntervalForRequest = std::chrono::seconds(60);

    /// Transfers under way at once to one origin (scheme, host and port); further ones wait in order of `resume()`.
    /// Over HTTP/2, where transfers share a connection, up to 100 are under way, or as many as the server takes on one.
    int httpMaximumConnectionsPerHost = 6;

    /// Redirects followed for one task; the next one is an error. 0: none is followed, and a redirecting response is
    /// handed out like any other.
    ///
    /// A redirect to another origin takes along no `Authorization`, `Cookie`, `Proxy-Authorization` or `Host`. After
    /// 303, and after 301 or 302 to a POST, the next request is a GET without body (RFC 9110 section 15.4).
    int maximumRedirects = 20;

    /// A file of trusted certificates in PEM form, in place of the system's store.
    std::optional<std::string> certificateAuthorityFile{};

    /// The proxy as a URL, or empty for none. Absent: what the environment says (`http_proxy`, `https_proxy`,
    /// `all_proxy`, `no_proxy`).
    std::optional<std::string> proxy{};

    URLSessionConfiguration() = default;
};

} // namespace platform::inline v1
