#pragma once

#include "platform/Export.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// The origin of a URL that can be loaded, "scheme://host:port" in lower case with the port spelled out (RFC 6454
/// section 4): what connections and credentials belong to. Absent unless the scheme is http or https, there is a host,
/// and the port is from 1 to 65535.
///
/// Only scheme and authority are looked at, so that an address that a server sent may be asked about as it came. Linear
/// time.
[[nodiscard]] QUILLBEAM_EXPORT std::optional<std::string> originOf(std::string_view url);

} // namespace platform::inline v1
