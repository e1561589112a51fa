#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/api-keys".
void addAPIKeyRoutes(Router& router);

} // namespace sandbox
