#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/domains".
void addDomainRoutes(Router& router);

/// Adds the domain that every account has.
void addBuiltInDomain(Session& database);

/// The name of the domain that every account has.
inline constexpr const char* builtInDomainName = "go.quillbeam.example";

/// The id of a domain, given by its id or its name, on which the account can make links; without an account, of the
/// built-in one.
/// @throws Problem with status 404 if there is none, and with 400 if it is not active yet.
std::string requireReadyDomain(Session& database, const std::string& account, const std::string& domain);

/// The service's record of a domain that exists.
Json domainBodyOf(Session& database, const std::string& id);

} // namespace sandbox
