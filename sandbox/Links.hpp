#pragma once

#include "sandbox/Authentication.hpp"
#include "sandbox/Router.hpp"

#include <string>

namespace sandbox {

/// The resource below "/links".
void addLinkRoutes(Router& router);

/// The id of the link that the request's first parameter names.
/// @throws Problem with status 404 if the account has no such link.
const std::string& requireLink(Session& database, const Request& request, const Account& account);

} // namespace sandbox
