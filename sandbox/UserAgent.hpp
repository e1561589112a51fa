#pragma once

#include <string_view>

namespace sandbox {

/// What a "User-Agent" field tells of who follows a link; "Other" where it tells nothing.
struct UserAgent {
    std::string_view device;
    std::string_view browser;
    std::string_view operatingSystem;

    /// @param text the field's value.
    static UserAgent read(std::string_view text);
};

} // namespace sandbox
