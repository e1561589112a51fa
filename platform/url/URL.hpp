#pragma once

#include "platform/Export.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// An immutable URL: a URI reference of RFC 3986 with its components at hand. The text stays exactly as it was given;
/// nothing is decoded, resolved or normalised.
///
///     const std::optional<URL> url = URL::make("https://api.quillbeam.example/v1?limit=10");
///     url->host();  // "api.quillbeam.example"
///
/// Copies share the text, so they cost one atomic increment. What an accessor points into lives as long as any copy of
/// the URL. Equality and hashing go by the text, octet by octet.
///
/// Thread safety: distinct objects: safe, also where they share their text; shared objects: safe, since only assignment
/// changes one.
class QUILLBEAM_EXPORT URL {
public:
    /// The empty relative reference.
    URL();

    /// Nothing where `text` is not, as a whole, a URI reference by RFC 3986: a character that must be percent-encoded
    /// (every one beyond ASCII), a broken escape, a malformed authority. Relative references and the empty text are URI
    /// references. Linear time.
    [[nodiscard]] static std::optional<URL> make(std::string_view text);

    /// The whole URL as given.
    [[nodiscard]] const std::string& absoluteString() const noexcept;

    /// The scheme as written, without the ":"; absent in a relative reference.
    [[nodiscard]] std::optional<std::string_view> scheme() const noexcept;

    /// User name and password as written, without the "@".
    [[nodiscard]] std::optional<std::string_view> percentEncodedUserInfo() const noexcept;

    /// The host as written; an IP literal keeps its brackets. Absent where there is no authority, empty as in
    /// "file:///etc".
    [[nodiscard]] std::optional<std::string_view> host() const noexcept;

    /// The port's number; absent where no port or an empty one is written, or one above 65535.
    [[nodiscard]] std::optional<std::uint16_t> port() const noexcept;

    /// The port's digits as written, none of them in "http://host:/"; tells a port above 65535 from no port.
    [[nodiscard]] std::optional<std::string_view> portText() const noexcept;

    [[nodiscard]] std::string_view percentEncodedPath() const noexcept;

    /// The query as written, without the "?".
    [[nodiscard]] std::optional<std::string_view> percentEncodedQuery() const noexcept;

    /// The fragment as written, without the "#".
    [[nodiscard]] std::optional<std::string_view> fragment() const noexcept;

    friend bool operator==(const URL& left, const URL& right) noexcept {
        return left.storage_ == right.storage_ || left.absoluteString() == right.absoluteString();
    }

private:
    struct Storage;

    explicit URL(std::shared_ptr<const Storage> storage) noexcept;

    std::shared_ptr<const Storage> storage_; // never null, but in a moved-from URL
};

} // namespace platform::inline v1

template <>
struct std::hash<platform::URL> {
    std::size_t operator()(const platform::URL& url) const noexcept {
        return std::hash<std::string_view>()(url.absoluteString());
    }
};
