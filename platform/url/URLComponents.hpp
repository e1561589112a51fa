#pragma once

#include "platform/Export.hpp"
#include "platform/url/URL.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform::inline v1 {

/// A URI reference taken apart, to be changed and put together again. Components are kept as written, escapes
/// untouched; one that is there but empty ("?" with nothing behind it) differs from one that is not.
///
///     URLComponents components = *URLComponents::make("https://api.quillbeam.example/v1");
///     components.setPercentEncodedPath(components.percentEncodedPath() + "/links");
///     std::optional<URL> url = components.url();  // https://api.quillbeam.example/v1/links
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
class QUILLBEAM_EXPORT URLComponents {
public:
    /// The components of the empty reference: an empty path and nothing else.
    URLComponents() = default;

    /// Nothing where `text` is no URI reference by RFC 3986; relative references and the empty text are.
    ///
    /// Characters beyond ASCII are taken as the UTF-8 they are and percent-encoded (RFC 3987, section 3.1), so that a
    /// path with letters of any script forms a URL; ill-formed UTF-8 gives nothing. ASCII stays as written.
    [[nodiscard]] static std::optional<URLComponents> make(std::string_view text);

    [[nodiscard]] const std::optional<std::string>& scheme() const noexcept { return scheme_; }

    void setScheme(std::optional<std::string> scheme) noexcept { scheme_ = std::move(scheme); }

    [[nodiscard]] const std::optional<std::string>& percentEncodedUserInfo() const noexcept { return userInfo_; }

    /// Anything but absent gives the reference an authority.
    void setPercentEncodedUserInfo(std::optional<std::string> userInfo) noexcept { userInfo_ = std::move(userInfo); }

    /// As written; an IP literal has its brackets.
    [[nodiscard]] const std::optional<std::string>& host() const noexcept { return host_; }

    /// Anything but absent gives the reference an authority.
    void setHost(std::optional<std::string> host) noexcept { host_ = std::move(host); }

    /// Absent where no port or an empty one is written, or one above 65535.
    [[nodiscard]] std::optional<std::uint16_t> port() const noexcept;

    /// Anything but absent gives the reference an authority.
    void setPort(std::optional<std::uint16_t> port);

    [[nodiscard]] const std::string& percentEncodedPath() const noexcept { return path_; }

    void setPercentEncodedPath(std::string path) noexcept { path_ = std::move(path); }

    /// Without the "?".
    [[nodiscard]] const std::optional<std::string>& percentEncodedQuery() const noexcept { return query_; }

    /// Absent removes the query and its "?".
    void setPercentEncodedQuery(std::optional<std::string> query) noexcept { query_ = std::move(query); }

    /// Without the "#".
    [[nodiscard]] const std::optional<std::string>& fragment() const noexcept { return fragment_; }

    /// Absent removes the fragment and its "#".
    void setFragment(std::optional<std::string> fragment) noexcept { fragment_ = std::move(fragment); }

    /// The URL that the components form. Absent where their text would not be a URI reference or would be read as other
    /// components: an authority before a path that does not start with "/", a path that starts with "//" without an
    /// authority, a first segment with ":" without a scheme, a character that is not allowed where it was set.
    [[nodiscard]] std::optional<URL> url() const;

    bool operator==(const URLComponents&) const = default;

private:
    std::optional<std::string> scheme_{};
    std::optional<std::string> userInfo_{};
    std::optional<std::string> host_{};
    std::optional<std::string> port_{};
    std::string path_{};
    std::optional<std::string> query_{};
    std::optional<std::string> fragment_{};
};

} // namespace platform::inline v1
