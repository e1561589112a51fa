#include "sandbox/Subscriptions.hpp"

#include "sandbox/Body.hpp"
#include "sandbox/CountryCode.hpp"
#include "sandbox/DateTime.hpp"
#include "sandbox/Identifiers.hpp"
#include "sandbox/Packages.hpp"
#include "sandbox/Pages.hpp"
#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace sandbox {

namespace {

constexpr const char* checkoutKind = "checkout";
constexpr const char* portalKind = "portal";

// The store of what is bought on the checkout page; others manage their subscriptions themselves.
constexpr const char* ownStore = "stripe";

struct Return {
    std::string_view redirect;
    const char* address;
};

constexpr std::array returns{
    Return{"app", "quillbeam://subscription"},
    Return{"webOnboarding", "https://app.quillbeam.example/onboarding"},
    Return{"webManage", "https://app.quillbeam.example/manage"},
};

struct Subscription {
    std::string id;
    std::string store;
    std::string plan;
    std::optional<std::string> priceID;
    std::string expirationDate;
    std::string status;

    bool isActive() const { return status == "active"; }
};

std::optional<Subscription> subscriptionOf(Session& database, const std::string& account) {
    const auto row = database.first(
        "SELECT id, store, plan, price_id, expires_at, status FROM subscription_states WHERE account_id = ?", {account}
    );
    if (!row) return std::nullopt;
    return Subscription{row->text(0), row->text(1), row->text(2), row->optionalText(3), row->text(4), row->text(5)};
}

void setSubscription(
    Session& database,
    const std::string& account,
    const std::string& store,
    const std::string& plan,
    const std::optional<std::string>& priceID,
    const std::string& expirationDate
) {
    database.execute(
        "INSERT INTO subscriptions (account_id, id, store, plan, price_id, expires_at) VALUES (?, ?, ?, ?, ?, ?) "
        "ON CONFLICT (account_id) DO UPDATE SET store = excluded.store, plan = excluded.plan, "
        "price_id = excluded.price_id, expires_at = excluded.expires_at, is_canceled = 0",
        {account, makeIdentifier("sub"), store, plan, valueOf(priceID), expirationDate}
    );
}

// Begins a subscription, or changes the one there is.
void subscribe(Session& database, const std::string& account, const Package& package) {
    const auto current = subscriptionOf(database, account);
    if (current && current->isActive() && current->store != ownStore) {
        throw Problem::badRequest("The subscription is managed in the store where it was bought.");
    }
    const char* const after = package.interval == "year" ? "+1 year" : "+1 month";
    const auto expiration = database.first("SELECT strftime(" DATE_TIME_FORMAT ", 'now', ?)", {after});
    setSubscription(database, account, ownStore, package.plan, package.priceID(), expiration->text(0));
}

void requireOneOf(const char* key, const std::string& value, std::initializer_list<std::string_view> values) {
    if (std::find(values.begin(), values.end(), value) != values.end()) return;
    std::string list;
    for (const std::string_view allowed : values) {
        list += (list.empty() ? "" : ", ") + std::string(allowed);
    }
    throw Problem::badRequest("\"" + std::string(key) + "\" takes one of: " + list + ".");
}

void checkRedirect(const std::string& redirect) {
    requireOneOf("redirect", redirect, {returns[0].redirect, returns[1].redirect, returns[2].redirect});
}

std::string linkBack(const Page& page) {
    for (const Return& back : returns) {
        if (page.redirect == back.redirect) return std::string("<p><a href=\"") + back.address + "\">Back</a></p>\n";
    }
    return "";
}

std::string priceText(const Package& package) {
    std::string cents = std::to_string(package.amount % 100);
    cents.insert(0, 2 - cents.size(), '0');
    return std::to_string(package.amount / 100) + "." + cents + " " + package.currency + " a " + package.interval;
}

Response getPackages(Session&, const Request& request) {
    const std::string country = request.queryText("country_code").value_or("");
    if (!isCountryCode(country)) {
        throw Problem::badRequest("\"country_code\" must be two capital letters.");
    }
    Json bodies = Json::array();
    for (const Package& package : packagesOnSale(country, request.header("x-app-version"))) {
        bodies.push_back(
            {{"id", package.id},
             {"interval", package.interval},
             {"priceId", package.priceID()},
             {"productId", package.productID()},
             {"currency", package.currency},
             {"amount", package.amount}}
        );
    }
    return Response::json(200, {{"packages", std::move(bodies)}});
}

Response getSubscription(Session& database, const Request&, const Account& account) {
    Json body = Json::object();
    if (const auto subscription = subscriptionOf(database, account.id)) {
        body["subscription"] = {
            {"store", subscription->store},
            {"status", subscription->status},
            {"plan", subscription->plan},
            {"id", subscription->id},
            {"expirationDate", subscription->expirationDate}
        };
    }
    return Response::json(200, body);
}

Response beginCheckout(Session& database, const Request& request, const Account& account) {
    const Body body(request);
    const std::string redirect = body.text("redirect");
    checkRedirect(redirect);
    const std::string priceID = body.text("priceId");
    const auto package = packageOfPrice(priceID);
    if (!package) throw Problem::notFound("There is no price with the id \"" + priceID + "\".");

    const auto current = subscriptionOf(database, account.id);
    if (!current || !current->isActive()) {
        const std::string url = openPage(database, request, checkoutKind, account.id, redirect, priceID);
        return Response::json(201, {{"subscriptionUpdated", false}, {"checkoutPageURL", url}});
    }
    if (current->priceID == priceID) throw Problem::badRequest("The account has this package already.");
    subscribe(database, account.id, *package);
    return Response::json(201, {{"subscriptionUpdated", true}});
}

Response getPortal(Session& database, const Request& request, const Account& account) {
    const auto redirect = request.queryText("redirect");
    if (redirect) checkRedirect(*redirect);
    const auto subscription = subscriptionOf(database, account.id);
    if (!subscription || subscription->store != ownStore) {
        throw Problem::notFound("The account has no subscription that could be managed here.");
    }
    return Response::json(200, {{"url", openPage(database, request, portalKind, account.id, redirect)}});
}

Response showCheckout(Session& database, const Request& request) {
    const Page page = requirePage(database, request, checkoutKind);
    const auto package = packageOfPrice(page.priceID.value_or(""));
    if (!package) throw Problem::notFound("This package is no longer sold.");
    const std::string what = "<p>The " + package->plan + " plan, " + priceText(*package) + ".</p>\n";
    if (page.isDone) return htmlResponse("Thank you", what + linkBack(page));
    return htmlResponse(
        "Checkout", what + "<form method=\"post\"><button>Subscribe</button></form>\n" + linkBack(page)
    );
}

Response confirmCheckout(Session& database, const Request& request) {
    const Page page = requirePage(database, request, checkoutKind);
    const auto package = packageOfPrice(page.priceID.value_or(""));
    // Sent twice, it buys once.
    if (package && database.execute("UPDATE pages SET is_done = 1 WHERE token = ? AND NOT is_done", {page.token}) > 0) {
        subscribe(database, page.account, *package);
    }
    return seeSamePage(request);
}

Response showPortal(Session& database, const Request& request) {
    const Page page = requirePage(database, request, portalKind);
    const auto subscription = subscriptionOf(database, page.account);
    std::string body = "<p>There is none.</p>\n";
    if (subscription) {
        body = "<p>The " + subscription->plan + " plan, " + subscription->status + ", until " +
               subscription->expirationDate + ".</p>\n";
        if (subscription->isActive() && subscription->store == ownStore) {
            body += "<form method=\"post\"><button>Cancel the subscription</button></form>\n";
        }
    }
    return htmlResponse("Your subscription", body + linkBack(page));
}

Response cancelSubscription(Session& database, const Request& request) {
    const Page page = requirePage(database, request, portalKind);
    const auto subscription = subscriptionOf(database, page.account);
    if (subscription && subscription->isActive() && subscription->store == ownStore) {
        database.execute(
            "UPDATE subscriptions SET is_canceled = 1, expires_at = strftime(" DATE_TIME_FORMAT ") WHERE id = ?",
            {subscription->id}
        );
    }
    return seeSamePage(request);
}

} // namespace

void addSubscriptionRoutes(Router& router) {
    router.add("GET", "/subscriptions/packages", getPackages);
    router.add("GET", "/subscriptions", withAccount(getSubscription));
    router.add("GET", "/subscriptions/manage", withAccount(getPortal));
    router.add("POST", "/subscriptions/checkout", withAccount(beginCheckout));
    router.add("GET", "/checkout/{}", showCheckout);
    router.add("POST", "/checkout/{}", confirmCheckout);
    router.add("GET", "/portal/{}", showPortal);
    router.add("POST", "/portal/{}", cancelSubscription);
}

Response putSubscription(Session& database, const Request& request, const Account& account) {
    const Body body(request);
    const std::string plan = body.text("plan");
    requireOneOf("plan", plan, {"lite", "pro", "growth"});
    const std::string store = body.optionalText("store").value_or(ownStore);
    requireOneOf("store", store, {"appStore", "macAppStore", ownStore});
    const std::string date = checkedDateTime(database, "expirationDate", body.text("expirationDate"));
    setSubscription(database, account.id, store, plan, std::nullopt, date);
    return getSubscription(database, request, account);
}

} // namespace sandbox
