#pragma once

#include "sandbox/Authentication.hpp"
#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/subscriptions", and the pages on which a person buys, sees and cancels a subscription.
void addSubscriptionRoutes(Router& router);

/// "PUT /sandbox/subscription": puts the account on a plan without a checkout.
Response putSubscription(Session& database, const Request& request, const Account& account);

} // namespace sandbox
