#pragma once

#include "sandbox/Messages.hpp"
#include "sandbox/Router.hpp"

#include <optional>

namespace sandbox {

/// What only a stand-in offers, and the service does not: all of it below "/sandbox" or in fields named
/// "X-Sandbox-...".
void addDevelopmentRoutes(Router& router);

/// The answer that the field "X-Sandbox-Status" asks for, whatever the path: a way to see how a program takes a status.
/// @throws Problem if the field holds no status from 200 to 599.
std::optional<Response> responseByHeader(const Request& request);

} // namespace sandbox
