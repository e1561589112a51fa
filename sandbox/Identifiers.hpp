#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sandbox {

/// A fresh, unguessable identifier: the prefix, an underscore and `bytes` random bytes in hexadecimal.
std::string makeIdentifier(std::string_view prefix, std::size_t bytes = 8);

/// A fresh slug for a short link: seven letters and digits.
std::string makeSlug();

} // namespace sandbox
