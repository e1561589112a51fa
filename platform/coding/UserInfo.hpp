#pragma once

#include "platform/AnyValue.hpp"
#include "platform/Export.hpp"

#include <functional>
#include <map>
#include <string>

namespace platform::inline v1 {

/// What an application hands to its own codings through a coder: values by name. The library neither reads nor sets
/// any.
struct UserInfo {
    std::map<std::string, AnyValue, std::less<>> values{};

    /// The one without values; lives as long as the process.
    [[nodiscard]] QUILLBEAM_EXPORT static const UserInfo& none();
};

} // namespace platform::inline v1
