#pragma once

#include <string>

namespace sandbox {

/// Checks that a browser could be sent to an address: that it is an absolute http or https one with a host and without
/// blanks or control characters, of at most 2048 bytes.
/// @param key of the member, for the message.
/// @throws Problem with status 400 otherwise.
void requireWebAddress(const char* key, const std::string& address);

} // namespace sandbox
