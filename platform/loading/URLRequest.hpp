#pragma once

#include "platform/Export.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/url/URL.hpp"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform::inline v1 {

/// Orders field names without regard to ASCII case, so that a map keyed by them holds each name once.
struct QUILLBEAM_EXPORT FieldNameLess {
    using is_transparent = void;
    [[nodiscard]] bool operator()(std::string_view left, std::string_view right) const noexcept;
};

/// The fields of a request: name to value, each name once whatever its case.
///
/// Values are text in UTF-8. On the wire a value goes out as ISO Latin 1 where all its characters have a code there,
/// and as UTF-8 otherwise.
using HTTPHeaderFields = std::map<std::string, std::string, FieldNameLess>;

/// What to load: the URL, the method, the fields and the body.
///
/// Everything goes out as given and nothing is added for taste: there is no `Accept`, `User-Agent` or `Content-Type`
/// unless the caller sets one. `Content-Length`, `Transfer-Encoding` and `Connection` follow from the request and are
/// not taken from the fields. A request that cannot be put on the wire (a method or a field name that is no RFC 9110
/// token, a line break or a zero byte in a value, a head of more than 1 MB) ends its task with
/// `URLError::Kind::invalidRequest`; a URL that is not `http` or `https` with a host, with
/// `URLError::Kind::unsupportedURL`.
///
/// Without an `Accept-Encoding` of the caller's, a task that collects its body asks for compressed bytes and hands out
/// the decoded ones; with one, the body comes as the server sent it.
///
/// Thread safety: distinct objects: safe; shared objects: as long as nobody writes.
struct QUILLBEAM_EXPORT URLRequest {
    URL url;
    std::string httpMethod = "GET";
    HTTPHeaderFields allHTTPHeaderFields{};
    std::optional<ByteChunk> httpBody{};

    /// How long the transfer may go without any byte moving, from the moment it has a connection slot. Absent: the
    /// session's `timeoutIntervalForRequest`. Zero or less: no limit.
    std::optional<std::chrono::milliseconds> timeoutInterval{};

    /// A GET request.
    explicit URLRequest(URL requestURL)
        : url(std::move(requestURL)) {}
};

} // namespace platform::inline v1
