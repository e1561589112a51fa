#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/links".
void addLinkRoutes(Router& router);

} // namespace sandbox
