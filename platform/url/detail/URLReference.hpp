#pragma once

#include <optional>
#include <string_view>

namespace platform::inline v1::detail {

/// The components of a URI reference (RFC 3986, section 4.1), as written, pointing into the text they were read from.
/// A component that is there but empty ("http://h?") differs from one that is not.
struct URLReference {
    std::optional<std::string_view> scheme{};   ///< without the ":"
    std::optional<std::string_view> userInfo{}; ///< without the "@"
    std::optional<std::string_view> host{};     ///< there with every authority; an IP literal keeps its brackets
    std::optional<std::string_view> port{};     ///< digits or none
    std::string_view path{};
    std::optional<std::string_view> query{};    ///< without the "?"
    std::optional<std::string_view> fragment{}; ///< without the "#"

    bool operator==(const URLReference&) const = default;

    /// Nothing where `text` is not, as a whole, a URI reference by the grammar of RFC 3986.
    [[nodiscard]] static std::optional<URLReference> parse(std::string_view text) noexcept;
};

} // namespace platform::inline v1::detail
