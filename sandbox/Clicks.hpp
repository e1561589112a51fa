#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// "GET /s/{slug}", which follows a link and records the click.
void addClickRoutes(Router& router);

} // namespace sandbox
