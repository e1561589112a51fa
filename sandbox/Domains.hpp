#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/domains".
void addDomainRoutes(Router& router);

/// Adds the domain that every account has.
void addBuiltInDomain(Session& database);

} // namespace sandbox
