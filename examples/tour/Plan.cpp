#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Subscriptions.hpp"
#include "QuillbeamAPI/Users.hpp"
#include "examples/tour/Chapters.hpp"
#include "platform/date/DateFormat.hpp"

#include <algorithm>
#include <stdexcept>

namespace examples {

namespace {

using platform::rawValue;
using Package = SubscriptionPackageDTO::idPayload;
using Redirect = CreateCheckoutDTO::redirectPayload;

std::string number(double value) {
    return std::to_string(static_cast<long long>(value));
}

std::string priceText(const SubscriptionPackageDTO& package) {
    const auto amount = static_cast<long long>(package.amount);
    std::string cents = std::to_string(amount % 100);
    cents.insert(0, 2 - cents.size(), '0');
    return std::to_string(amount / 100) + "." + cents + " " + package.currency + " a " +
           std::string(rawValue(package.interval));
}

const SubscriptionPackageDTO& find(const std::vector<SubscriptionPackageDTO>& packages, Package id) {
    const auto at =
        std::find_if(packages.begin(), packages.end(), [&](const auto& package) { return package.id == id; });
    if (at == packages.end()) throw std::runtime_error("a package is not on sale: " + std::string(rawValue(id)));
    return *at;
}

void showUsage(Report& report, const TierUsageDTO& usage) {
    report.detail("links this month", number(usage.linksCreated) + " of " + number(usage.linkLimit));
    report.detail("clicks this month", number(usage.clicksTracked) + " of " + number(usage.clickLimit));
}

Task<void> showSubscription(std::shared_ptr<Guide> guide, std::string expected) {
    auto output = co_await guide->client.getSubscription();
    guide->show(Operations::getSubscription::id, output, 200);
    std::string found = "none";
    if (const auto& subscription = output.ok().body.json().subscription) {
        found = std::string(rawValue(subscription->status)) + " " + std::string(rawValue(subscription->plan));
        const auto until = formatDate(subscription->expirationDate, platform::ISO8601Format::internetDateTime);
        guide->report.detail("subscription", found + ", until " + until);
    } else {
        guide->report.detail("subscription", found);
    }
    guide->report.expect(found == expected, "expected " + expected);
}

Task<TierUsageDTO> showTier(std::shared_ptr<Guide> guide) {
    auto output = co_await guide->client.getTierUsage();
    guide->show(Operations::getTierUsage::id, output, 200);
    showUsage(guide->report, output.ok().body.json());
    co_return output.ok().body.json();
}

} // namespace

Task<void> changeThePlan(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    report.chapter("The plan");

    report.step("See what the account may do, and has used");
    Task<TierUsageDTO> asking = showTier(guide);
    TierUsageDTO before = co_await std::move(asking);

    report.step("See what is on sale in Germany, which needs no key");
    const Operations::getSubscriptionPackages::Query germany("DE");
    auto sale = co_await guide->keyless.getSubscriptionPackages(germany);
    guide->show(Operations::getSubscriptionPackages::id, sale, 200);
    const std::vector<SubscriptionPackageDTO> packages = sale.ok().body.json().packages;
    for (const SubscriptionPackageDTO& package : packages) {
        report.detail(rawValue(package.id), priceText(package));
    }

    report.step("Buy one: a person confirms on the checkout page, and the limits hold at once");
    const CreateCheckoutDTO monthly(Redirect::webManage, find(packages, Package::pro_monthly).priceId);
    auto checkout = co_await guide->client.beginCheckout(monthly);
    guide->show(Operations::beginCheckout::id, checkout, 201);
    const std::string checkoutPage = checkout.created().body.json().checkoutPageURL.value_or("");
    report.detail("checkout page", checkoutPage);
    auto confirmed = co_await guide->browser.visit(HTTPRequest::Method::post, checkoutPage);
    report.visit("POST (checkout page)", confirmed.status, 303);
    Task<void> bought = showSubscription(guide, "active pro");
    co_await std::move(bought);
    Task<TierUsageDTO> askingAgain = showTier(guide);
    TierUsageDTO after = co_await std::move(askingAgain);
    report.expect(after.linkLimit > before.linkLimit, "the limit is what it was");

    report.step("Change to another package: nothing to confirm");
    const CreateCheckoutDTO annual(Redirect::app, find(packages, Package::growth_annual).priceId);
    auto changed = co_await guide->client.beginCheckout(annual);
    guide->show(Operations::beginCheckout::id, changed, 201);
    report.detail("updated", changed.created().body.json().subscriptionUpdated ? "at once" : "no");
    Task<void> grown = showSubscription(guide, "active growth");
    co_await std::move(grown);

    report.step("Ask for a price that does not exist");
    const CreateCheckoutDTO unknown(Redirect::app, "price_of_nothing");
    auto refused = co_await guide->client.beginCheckout(unknown);
    guide->show(Operations::beginCheckout::id, refused, 404);
    guide->showError(refused.notFound().body.json());

    report.step("Cancel it on the portal page");
    const Operations::getSubscriptionPortal::Query back(Operations::getSubscriptionPortal::Query::redirectPayload::app);
    auto portal = co_await guide->client.getSubscriptionPortal(back);
    guide->show(Operations::getSubscriptionPortal::id, portal, 200);
    const std::string portalPage = portal.ok().body.json().url;
    report.detail("portal page", portalPage);
    auto canceled = co_await guide->browser.visit(HTTPRequest::Method::post, portalPage);
    report.visit("POST (portal page)", canceled.status, 303);
    Task<void> ended = showSubscription(guide, "canceled growth");
    co_await std::move(ended);
}

} // namespace examples
