#include "sandbox/Development.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Body.hpp"
#include "sandbox/Plan.hpp"
#include "sandbox/Problem.hpp"
#include "sandbox/Subscriptions.hpp"

#include <nlohmann/json.hpp>

#include <charconv>

namespace sandbox {

namespace {

Response createAccount(Session& database, const Request&) {
    const NewAccount account = addAccount(database, "first key");
    return Response::json(201, {{"account", account.id}, {"key", account.key}});
}

Response putLimits(Session& database, const Request& request, const Account& account) {
    const Body body(request);
    setLimits(
        database,
        account.id,
        {body.optionalInteger("linkLimit", 0),
         body.optionalInteger("clickLimit", 0),
         body.optionalInteger("customDomainLimit", 0)}
    );
    const Limits limits = limitsOf(database, account.id);
    return Response::json(
        200, {{"linkLimit", limits.links}, {"clickLimit", limits.clicks}, {"customDomainLimit", limits.customDomains}}
    );
}

} // namespace

void addDevelopmentRoutes(Router& router) {
    router.add("POST", "/sandbox/accounts", createAccount);
    router.add("PUT", "/sandbox/limits", withAccount(putLimits));
    router.add("PUT", "/sandbox/subscription", withAccount(putSubscription));
}

std::optional<Response> responseByHeader(const Request& request) {
    const auto wanted = request.header("x-sandbox-status");
    if (!wanted) return std::nullopt;
    int status = 0;
    const char* const end = wanted->data() + wanted->size();
    const auto [rest, error] = std::from_chars(wanted->data(), end, status);
    if (error != std::errc() || rest != end || status < 200 || status > 599) {
        throw Problem::badRequest("\"X-Sandbox-Status\" takes a status from 200 to 599.");
    }
    if (status < 400) return Response::empty(status);
    return Problem(status, "The request asked for status " + *wanted + ".").response();
}

} // namespace sandbox
