#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/analytics".
void addAnalyticsRoutes(Router& router);

} // namespace sandbox
