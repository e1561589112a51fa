#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/users", and the page on which a person changes the account.
void addUserRoutes(Router& router);

} // namespace sandbox
