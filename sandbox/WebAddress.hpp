#pragma once

#include <string_view>

namespace sandbox {

/// Whether a browser could be sent there: an absolute http or https address with a host and without blanks or control
/// characters, of at most 2048 bytes.
bool isWebAddress(std::string_view text);

} // namespace sandbox
